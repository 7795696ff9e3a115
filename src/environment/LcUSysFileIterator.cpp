#include "environment/LcUSysFileIterator.h"

#include <new>

#include "environment/LcUSysFile.h"

LcUSysFileIterator::LcUSysFileIterator(const char16_t* folder) : folder(folder ? folder : u"") {
  done = this->folder.IsEmpty();
  Next();
}

LcUSysFileIterator::~LcUSysFileIterator() {
  if (entry) entry->Release();
  CloseFind();
}

bool LcUSysFileIterator::Next() {
  if (entry) entry->Release();
  entry = nullptr;
  LcUString name;
  uint32_t attributes = 0;
  while (!done) {
    if (!Step(name, attributes)) {
      done = true;
      CloseFind();
      break;
    }
    if (LcUString::Equal(name.Get(), u".") || LcUString::Equal(name.Get(), u"..")) continue;
    entry = new (std::nothrow) LcUSysFileEntry(folder, name, attributes);
    done = entry == nullptr;
    break;
  }
  return entry != nullptr;
}

LcUSysFileEntry* LcUSysFileIterator::GetEntry() {
  if (entry) entry->AddRef();
  return entry;
}

void LcUSysFileIterator::GetName(LcUString& out) const {
  out.Assign(entry ? entry->GetName().Get() : u"");
}

void LcUSysFileIterator::GetPath(LcUString& out) const {
  if (!entry) {
    out.Clear();
    return;
  }
  LcUSysFile::Join(folder.Get(), entry->GetName().Get(), out);
}
