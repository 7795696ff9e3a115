#include "foundation/LcUSysCodePage.h"

#include <windows.h>

uint32_t LcUSysCodePage::GetACP() {
  return ::GetACP();
}

int32_t LcUSysCodePage::WideToMultiByte(uint32_t codePage, const char16_t* source, int32_t count, char* target,
                                        int32_t targetSize) {
  // Composite check and separate characters, no default character.
  return ::WideCharToMultiByte(codePage, 0x220, reinterpret_cast<const wchar_t*>(source), count, target,
                               target ? targetSize : 0, nullptr, nullptr);
}

int32_t LcUSysCodePage::MultiByteToWide(uint32_t codePage, const char* source, int32_t count, char16_t* target,
                                        int32_t targetSize) {
  return ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, source, count,
                               reinterpret_cast<wchar_t*>(target), target ? targetSize : 0);
}
