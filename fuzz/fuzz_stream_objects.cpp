#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "serial/LcUStream.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamCopy.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamUnknownData.h"
#include "serial/LcUStreamWriter.h"

// Any bytes read as an object stream of a small format: a root class with
// two references (so shared objects and cycles), and a derived class. Every
// object made is freed, and a stream that reads is copied as well.
namespace {
struct Item {
  int32_t value = 0;
  Item* next = nullptr;
  Item* other = nullptr;
  double weight = 0;
  LcUStreamUnknownData* unknown = nullptr;
};

std::vector<Item*>* made;

Item* ReadRef(LcUStreamReader* r) {
  int32_t entry;
  LcUStreamUnknownData* unknown = nullptr;
  Item* item = static_cast<Item*>(r->ReadAnyObject(&entry, &unknown));
  if (item && unknown && !item->unknown)
    item->unknown = unknown;
  else
    delete unknown;
  return item;
}

int32_t Write(LcUStreamWriter* w, int32_t entry, void* object) {
  Item* item = static_cast<Item*>(object);
  w->WriteInt32(item->value);
  w->WriteObject(item->next, 0);
  w->WriteObject(item->other, 0);
  if (entry == 1) w->WriteDouble(item->weight);
  return 1;
}

void* Create(LcUStreamReader*, int32_t) {
  Item* item = new Item;
  made->push_back(item);
  return item;
}

int32_t Read(LcUStreamReader* r, int32_t entry, void* object) {
  Item* item = static_cast<Item*>(object);
  item->value = r->ReadInt32();
  item->next = ReadRef(r);
  item->other = ReadRef(r);
  if (entry == 1) item->weight = r->ReadDouble();
  return 1;
}

void FixUp(LcUStreamReader*, int32_t, void* object) {
  static_cast<Item*>(object)->value ^= 1;
}

const char* const kHeaders[] = {"#LcUStream-V1.1 binary double release utf8 Items\n",
                                "#LcUStream-V1.1 binary double debug utf8 Items\n",
                                "#LcUStream-V1.1 ascii double release utf8 Items\n",
                                "#LcUStream-V1.1 ascii single debug utf8 Items\n"};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  static bool started = LcUStream::Initialize();
  (void)started;
  static LcUStreamFormat format = [] {
    LcUStreamFormat f("Items", 3);
    f.writeDefinitions = 1;
    f.SetEntry(0, Write, Create, Read, "Item", -1);
    f.SetEntry(1, Write, Create, Read, "Weighted", 0);
    f.SetFixUp(0, FixUp);
    return f;
  }();
  std::vector<Item*> items;
  made = &items;
  std::string bytes = kHeaders[data[0] & 3];
  bytes.append(reinterpret_cast<const char*>(data + 1), size - 1);
  {
    LcUStreamBuffer buffer;
    buffer.SetData(bytes.data(), uint32_t(bytes.size()), 1);
    LcUStreamReader reader(&buffer);
    reader.OfferFormat(&format);
    if (reader.ReadBegin(true, (data[0] & 4) != 0)) {
      for (int i = 0; i < 8 && reader.GetError() == 0; ++i) ReadRef(&reader);
    }
    reader.ReadEnd(true);
  }
  if (bytes.find(" debug ") != std::string::npos) {
    LcUStreamBuffer source, target;
    source.SetData(bytes.data(), uint32_t(bytes.size()), 1);
    LcUStreamReader reader(&source);
    reader.OfferFormat(&format);
    LcUStreamWriter writer(&target);
    writer.debug = 1;
    writer.ascii = (data[0] & 8) != 0;
    writer.format = &format;
    if (reader.ReadBegin(true, (data[0] & 4) != 0) && writer.WriteBegin(true)) LcUStreamCopy::Copy(reader, writer);
    reader.ReadEnd(false);
    writer.WriteEnd();
  }
  for (Item* item : items) {
    delete item->unknown;
    delete item;
  }
  return 0;
}
