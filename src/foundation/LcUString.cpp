#include "foundation/LcUString.h"

#include <cstring>

#include "foundation/LcUMemory.h"
#include "foundation/LcUSysCodePage.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUUtf8.h"

LcUComponent LcUString::component;

namespace {
bool available = false;

// Leaves `target` holding room for `units` units plus the terminator.
template <typename S>
bool Prepare(S& target, int32_t units) {
  return target.Reserve(units) != 0;
}

template <typename S, typename Unit>
bool Fail(S& target, const Unit* text) {
  target.Assign(text);
  return false;
}

struct NoSink {
  void PutAscii(const unsigned char*, int64_t) {}
  void Put(uint32_t) {}
};
}  // namespace

bool LcUString::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUString") != 1) return true;
  LcUSysError::InitSysError();
  LcUMemory::Initialize();
  available = true;
  return true;
}

void LcUString::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  available = false;
  LcUMemory::Terminate();
  LcUSysError::TermSysError();
}

bool LcUString::IsAvailable() {
  return available;
}

bool LcUString::AsciiToWide(const char* source, LcUString& target) {
  if (!source) {
    target.Free();
    return true;
  }
  // The measuring pass only counts; a byte beyond ASCII shows in the store.
  int32_t n = int32_t(std::strlen(source));
  if (!Prepare(target, n)) return Fail(target, u"ASCIITOWCS INTERNAL FAILURE!");
  char16_t* out = target.GetBuffer();
  for (int32_t i = 0; i < n; ++i) {
    auto byte = static_cast<unsigned char>(source[i]);
    if (byte >= 0x80) return Fail(target, u"ASCIITOWCS INTERNAL FAILURE!");
    out[i] = byte;
  }
  target.SetLength(n);
  return true;
}

bool LcUString::WideToAscii(const char16_t* source, LcUStringA& target) {
  if (!source) {
    target.Free();
    return true;
  }
  int32_t n = Len(source);
  if (!Prepare(target, n)) return Fail(target, "NOT AN ASCII STRING");
  char* out = target.GetBuffer();
  for (int32_t i = 0; i < n; ++i) {
    if (source[i] > 127) return Fail(target, "NOT AN ASCII STRING");
    out[i] = char(source[i]);
  }
  target.SetLength(n);
  return true;
}

bool LcUString::WideToMultiByte(const char16_t* source, LcUStringA& target) {
  if (!source) {
    target.Free();
    return true;
  }
  int32_t n = Len(source);
  if (n == 0) {
    target.Clear();
    return true;
  }
  uint32_t codePage = LcUSysCodePage::GetACP();
  int32_t size = LcUSysCodePage::WideToMultiByte(codePage, source, n, nullptr, 0);
  if (size <= 0) return Fail(target, "WCSTOMBS CONVERSION FAILED!");
  if (!Prepare(target, size)) return Fail(target, "WCSTOMBS INTERNAL FAILURE!");
  int32_t written = LcUSysCodePage::WideToMultiByte(codePage, source, n, target.GetBuffer(), target.Capacity());
  if (written <= 0) return Fail(target, "WCSTOMBS INTERNAL FAILURE!");
  target.SetLength(written);
  return true;
}

bool LcUString::MultiByteToWide(const char* source, LcUString& target, uint32_t codePage) {
  if (!source) {
    target.Free();
    return true;
  }
  int32_t n = int32_t(std::strlen(source));
  if (n == 0) {
    target.Clear();
    return true;
  }
  if (codePage == 0) codePage = LcUSysCodePage::GetACP();
  int32_t size = LcUSysCodePage::MultiByteToWide(codePage, source, n, nullptr, 0);
  if (size <= 0) return Fail(target, u"MBSTOWCS CONVERSION FAILED!");
  if (!Prepare(target, size)) return Fail(target, u"MBSTOWCS INTERNAL FAILURE!");
  int32_t written = LcUSysCodePage::MultiByteToWide(codePage, source, n, target.GetBuffer(), target.Capacity());
  if (written <= 0) return Fail(target, u"MBSTOWCS INTERNAL FAILURE!");
  target.SetLength(written);
  return true;
}

bool LcUString::UTF16ToUTF8(const char16_t* source, LcUStringA& target, bool combineSurrogates) {
  if (!source) {
    target.Free();
    return true;
  }
  int32_t n = Len(source);
  int64_t worst = int64_t(n) * 3;
  if (worst > INT32_MAX - 1 || !Prepare(target, int32_t(worst))) {
    target.Free();
    return false;
  }
  bool unpaired = false;
  int64_t written = LcUUtf8::EncodeFromUTF16(source, n, target.GetBuffer(), combineSurrogates, unpaired);
  target.SetLength(int32_t(written));
  return true;
}

bool LcUString::UTF8ToUTF16(const char* source, int32_t length, LcUString& target) {
  if (!source) {
    target.Free();
    return true;
  }
  int64_t n = length < 0 ? int64_t(std::strlen(source)) : length;
  if (n > INT32_MAX - 1 || !Prepare(target, int32_t(n))) {
    target.Free();
    return false;
  }
  bool valid = true;
  int64_t units = LcUUtf8::DecodeToUTF16(source, n, target.GetBuffer(), valid);
  target.SetLength(int32_t(units));
  return valid;
}

bool LcUString::IsValidUTF8(const char* text) {
  if (!text) return true;
  auto bytes = reinterpret_cast<const unsigned char*>(text);
  int64_t n = int64_t(std::strlen(text));
  if (LcUUtf8::AsciiPrefix(bytes, n) == n) return true;
  NoSink sink;
  return LcUUtf8::Decode(bytes, n, sink);
}
