#include <cstddef>
#include <cstdint>

#include "foundation/LcUString.h"
#include "serial/LcUData.h"
#include "serial/LcUName.h"

// Any text through every text reader of variant data: a value read must
// give the same value when its own text is read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 || size > 4096) return 0;
  static bool started = LcUData::Initialize();
  (void)started;
  LcUString text;
  LcUString::UTF8ToUTF16(reinterpret_cast<const char*>(data + 1), int32_t(size - 1), text);
  const char16_t* wide = text.Get() ? text.Get() : u"";
  LcUData value, fallback;
  fallback.SetInt32(1);
  value.FromRegistryText(wide, (data[0] & 1) ? &fallback : nullptr);
  if (value.FromTaggedText(wide)) {
    LcUString again;
    value.ToTaggedText(again);
    LcUData twice;
    if (value.GetTag() != LcUData::eNAME && !twice.FromTaggedText(again.Get())) __builtin_trap();
  }
  int32_t tag = data[0] % LcUData::eTAG_COUNT;
  value.FromText(tag, wide);
  int32_t end = -1;
  if (value.Parse(wide, tag, (data[0] & 16) != 0, &end) && (end < 0 || end > text.Length())) __builtin_trap();
  LcUString shown;
  value.ToDebugText(shown);
  LcUName* name = nullptr;
  if (LcUData::ParseNameText(wide, name) && name) name->Release();
  return 0;
}
