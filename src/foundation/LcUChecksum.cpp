#include "foundation/LcUChecksum.h"

#include "foundation/LcUSysError.h"

LcUComponent LcUChecksum::component;

bool LcUChecksum::Initialize() {
  LcUSysError::RegisterComponent(&component, "LcUChecksum");
  return true;
}

void LcUChecksum::Terminate() {
  LcUSysError::UnregisterComponent(&component);
}

void LcUChecksum::Init() {
  a = 1;
  b = 0;
  countdown = eRUN;
}

void LcUChecksum::Reduce() {
  a %= eMODULUS;
  b %= eMODULUS;
  countdown = eRUN;
}

void LcUChecksum::Add(const void* bytes, uint32_t count) {
  const uint8_t* p = static_cast<const uint8_t*>(bytes);
  while (count > 0) {
    uint32_t run = count < uint32_t(countdown) ? count : uint32_t(countdown);
    for (uint32_t i = 0; i < run; ++i) {
      a += p[i];
      b += a;
    }
    p += run;
    count -= run;
    countdown -= int32_t(run);
    if (countdown == 0) Reduce();
  }
}

uint32_t LcUChecksum::GetResult() {
  if (countdown != int32_t(eRUN)) Reduce();
  return b << 16 | a;
}

void LcUChecksum::AddString(const char* text) {
  static const char zero = 0;
  if (!text) return Add(&zero, 1);
  uint32_t n = 0;
  while (text[n]) ++n;
  Add(text, n);
}

void LcUChecksum::AddWideString(const char16_t* text) {
  static const char zero = 0;
  if (!text) return Add(&zero, 1);
  uint32_t n = 0;
  while (text[n]) ++n;
  Add(text, n * 2u);
}
