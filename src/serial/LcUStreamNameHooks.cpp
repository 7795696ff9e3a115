#include "serial/LcUStreamNameHooks.h"

#include "serial/LcUName.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

void LcUStreamNameHooks::Install() {
  LcUName::SetStreamHooks(Write, Read);
}

void LcUStreamNameHooks::Remove() {
  LcUName::SetStreamHooks(nullptr, nullptr);
}

bool LcUStreamNameHooks::Write(LcUStreamWriter& stream, const LcUName* name) {
  if (!name) {
    stream.WriteNat32(0);
    return stream.GetError() == 0;
  }
  bool added;
  uint32_t id = stream.objectIds.Insert(name, stream.nextId, added);
  if (!id) return stream.Fail(LcUStream::eWRITE_OBJECT_FAILED, "No memory for object ids");
  stream.WriteNat32(id);
  if (added) {
    ++stream.nextId;
    stream.WriteString(name->GetInternalName());
    stream.WriteWideString(name->GetUserName());
  }
  return stream.GetError() == 0;
}

LcUName* LcUStreamNameHooks::Read(LcUStreamReader& stream) {
  uint32_t id = stream.ReadNat32();
  if (stream.GetError() || id == 0) return nullptr;
  if (id >= 100 && id < stream.nextId) {
    const LcUStreamObjectList::Row& row = stream.objects[id - 100];
    if (row.entry == LcUStreamReader::eNAME_ROW && row.object) {
      LcUName* name = static_cast<LcUName*>(row.object);
      name->AddRef();
      return name;
    }
  }
  if (!stream.TakeNextId(id)) return nullptr;
  LcUStringA internal;
  LcUString user;
  stream.ReadString(internal);
  stream.ReadWideString(user);
  if (stream.GetError()) return nullptr;
  LcUName* name = stream.names ? stream.names->Intern(user.Get(), internal.Get()) : new LcUName(internal.Get(), user.Get());
  if (!name) {
    stream.Fail(LcUStream::eCREATE_FAILED, "No memory for name %u", id);
    return nullptr;
  }
  if (stream.names) name->AddRef();
  // The stream's table keeps a count of its own until the end.
  name->AddRef();
  if (!stream.AddObject(name, LcUStreamReader::eNAME_ROW)) {
    name->Release();
    name->Release();
    return nullptr;
  }
  return name;
}
