#include "serial/LcUName.h"

#include <cstdio>

#include "environment/LcUResource.h"
#include "foundation/LcUChecksum.h"
#include "foundation/LcUSysError.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

LcUComponent LcUName::component;

namespace {
LcUName::WriteHook writeHook = nullptr;
LcUName::ReadHook readHook = nullptr;

bool KnownText(const char* key, LcUString& text) {
  return key && LcUResource::IsInitialised() && LcUResource::FindString(key, text);
}
}  // namespace

bool LcUName::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUName") != 1) return true;
  LcUString::Initialize();
  LcUResource::Initialize();
  return true;
}

void LcUName::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUResource::Terminate();
  LcUString::Terminate();
}

LcUName::LcUName(const char* internal, const char16_t* user) {
  Resolve(internal, user);
}

LcUName::LcUName(const char16_t* user) : userName(user) {}

LcUName::LcUName(const char* internal, int32_t index, const char16_t* user) {
  LcUStringA key;
  FormatIndexedName(internal, index, key);
  Resolve(internal ? key.Get() : nullptr, user);
}

void LcUName::Resolve(const char* internal, const char16_t* user) {
  internalName.Assign(internal);
  userName.Assign(user);
  LcUString text;
  if (KnownText(internal, text)) userName = text;
  if (userName.IsNull() && internal) LcUString::AsciiToWide(internal, userName);
}

void LcUName::Release() {
  if (refCount < 2)
    delete this;
  else
    --refCount;
}

void LcUName::SetInternalName(const char* internal) {
  internalName.Assign(internal);
  LcUString text;
  if (KnownText(internal, text)) userName = text;
  if (userName.IsNull() && internal) LcUString::AsciiToWide(internal, userName);
}

void LcUName::SetUserName(const char16_t* text) {
  LcUString known;
  if (KnownText(internalName.Get(), known)) return;
  userName.Assign(text);
}

void LcUName::Relocalise() {
  LcUString text;
  if (KnownText(internalName.Get(), text)) userName = text;
}

bool LcUName::Equal(const LcUName* a, const LcUName* b) {
  if (a == b) return true;
  if (!a || !b) return false;
  return LcUStringA::Equal(a->internalName.Get(), b->internalName.Get()) &&
         LcUString::Equal(a->userName.Get(), b->userName.Get());
}

uint32_t LcUName::Hash(const char16_t* user, const char* internal) {
  uint32_t h = 0;
  if (user)
    for (const char16_t* c = user; *c; ++c) h = h * 5 + uint32_t(*c);
  if (internal)
    for (const char* c = internal; *c; ++c) h = h * 5 + uint32_t(int32_t(static_cast<signed char>(*c)));
  return h;
}

bool LcUName::ParseIndexedName(const char* internal, int32_t& index, LcUStringA& base) {
  if (!internal) return false;
  int32_t length = LcUStringA::Len(internal);
  int32_t i = length;
  while (i > 0 && internal[i - 1] >= '0' && internal[i - 1] <= '9') --i;
  // At least one character before the colon, at least one digit after it.
  if (i == length || i < 2 || internal[i - 1] != ':') return false;
  int64_t value = 0;
  for (int32_t k = i; k < length && value <= 0x7FFFFFFF; ++k) value = value * 10 + (internal[k] - '0');
  if (value > 0x7FFFFFFF) return false;
  index = int32_t(value);
  base.Assign(internal, i - 1);
  return true;
}

void LcUName::GetBaseName(LcUStringA& out) const {
  int32_t index;
  if (!ParseIndexedName(internalName.Get(), index, out)) out = internalName;
}

int32_t LcUName::GetIndex() const {
  int32_t index = 0;
  LcUStringA base;
  return ParseIndexedName(internalName.Get(), index, base) ? index : 0;
}

void LcUName::FormatIndexedName(const char* base, int32_t index, LcUStringA& out) {
  char digits[16];
  std::snprintf(digits, sizeof digits, ":%d", index);
  out.Assign(base ? base : "");
  out.Append(digits);
}

LcUName* LcUName::MakeIndexedName(const char* base, int32_t index) {
  LcUStringA key;
  FormatIndexedName(base, index, key);
  return new LcUName(key.Get(), static_cast<const char16_t*>(nullptr));
}

const char* LcUName::PredefinedKey(int32_t value) {
  static const char* const keys[ePREDEFINED_COUNT] = {
      "LcOaSceneBaseUserName", "LcOaSceneBaseClassUserName", "LcOaSceneBaseClassName", "LcOaNode",
      "LcOaMaterial", "LcOaTransform", "LcOaURLAttribute", "LcOaXRefAttribute", "LcOaTextAttributeText",
      "LcOaPartitionFilename", "LcOaUnit", "LcOaURLCategoryHyperlink", "LcOaURLCategoryTag",
      "LcOaURLCategoryUserDefined", "LcOaNodeHidden", "LcOaNodeRequired", "LcOaPartitionSourceFilename",
      "LcOaNodeLayer", "LcOaNodeMaterial", "LcOaNodeSourceFile", "LcOaNodeIcon", "LcOaXRefAttributePath",
      "LcOaNodeGuid"};
  return value >= 0 && value < ePREDEFINED_COUNT ? keys[value] : nullptr;
}

LcUName* LcUName::FindPredefined(int32_t value, LcUNameTable* table) {
  const char* key = PredefinedKey(value);
  return key ? LcUNameTable::MakeName(nullptr, key, table) : nullptr;
}

void LcUName::GetPredefinedText(int32_t value, LcUString& out) {
  LcUString text;
  if (KnownText(PredefinedKey(value), text))
    out = text;
  else
    out.Free();
}

void LcUName::AddToChecksum(LcUChecksum& checksum) const {
  checksum.AddWideString(userName.Get());
  checksum.AddString(internalName.Get());
}

void LcUName::SetStreamHooks(WriteHook write, ReadHook read) {
  writeHook = write;
  readHook = read;
}

bool LcUName::WriteToStream(LcUStreamWriter& stream, const LcUName* name) {
  if (writeHook) return writeHook(stream, name);
  stream.FailMismatch("Name", "Name hook!");
  return false;
}

LcUName* LcUName::ReadFromStream(LcUStreamReader& stream) {
  if (readHook) return readHook(stream);
  stream.FailMismatch("Name", "Name hook!");
  return nullptr;
}
