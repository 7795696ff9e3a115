#include "environment/LcUResource.h"
#include "environment/LcUResourceTable.h"
#include "foundation/LcUError.h"

namespace {
const LcUString* Lookup(const char* key) {
  return LcUResource::IsInitialised() ? LcUResourceTable::Find(key) : nullptr;
}
}  // namespace

const char16_t* LcUResource::FindString(const char* key, const char16_t* fallback) {
  const LcUString* text = Lookup(key);
  return text ? text->Get() : fallback;
}

bool LcUResource::FindString(const char* key, LcUString& out) {
  if (const LcUString* text = Lookup(key)) {
    out = *text;
    return true;
  }
  // Callers always have something to show.
  LcUString::MultiByteToWide(key ? key : "", out);
  return false;
}

const char16_t* LcUResource::FindStringRequired(const char* key) {
  if (const LcUString* text = Lookup(key)) return text->Get();
  LcUError::LogF("LcUResource::FindStringRequired: Cannot find string \"%s\n", key ? key : "");
  return u"missing text";
}

bool LcUResource::HasString(const char* key) {
  return Lookup(key) != nullptr;
}

bool LcUResource::DefineString(const char* key, const char16_t* text) {
  if (!IsInitialised() || !key) return false;
  bool added = LcUResourceTable::Add(key, text, nullptr, nullptr);
  LcUResourceTable::RunPendingPass();
  return added;
}

bool LcUResource::DefineSourceString(const char* sourceFile, int32_t line, const char16_t* text) {
  LcUStringA key;
  key.Format("%s:%d", sourceFile ? sourceFile : "", line);
  return DefineString(key.Get(), text);
}

void LcUResource::SetFallback(LcUResourceFallback fallback, void* context) {
  LcUResourceTable::SetFallback(fallback, context);
}
