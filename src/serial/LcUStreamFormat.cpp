#include "serial/LcUStreamFormat.h"

LcUStreamFormat::LcUStreamFormat(const char* name, uint32_t version) : name(name), version(version) {}

bool LcUStreamFormat::SetEntry(int32_t index, LcUStreamWriteObjectFunction write, LcUStreamCreateObjectFunction create,
                               LcUStreamReadObjectFunction read, const char* entryName, int32_t base) {
  if (index < 0 || (base != LcUStreamFormatEntry::eROOT && (base < 0 || base >= index))) return false;
  if (size_t(index) >= entries.size()) entries.resize(size_t(index) + 1);
  LcUStreamFormatEntry& entry = entries[size_t(index)];
  entry.writeObject = write;
  entry.createObject = create;
  entry.readObject = read;
  entry.name.Assign(entryName);
  entry.baseEntry = base;
  entry.substitute = LcUStreamFormatEntry::eSELF;
  return true;
}

void LcUStreamFormat::SetFixUp(int32_t index, LcUStreamFixUpFunction fixUp) {
  if (IsEntry(index)) entries[size_t(index)].fixUp = fixUp;
}

int32_t LcUStreamFormat::FindEntry(const char* entryName) const {
  if (!entryName) return -1;
  for (size_t i = 0; i < entries.size(); ++i)
    if (entries[i].name.Get() && LcUStringA::Equal(entries[i].name.Get(), entryName)) return int32_t(i);
  return -1;
}
