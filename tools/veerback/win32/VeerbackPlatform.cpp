#include "VeerbackPlatform.h"

#include <windows.h>
#include <shellapi.h>

#include <cstdio>

#include "VeerbackOutput.h"

namespace {
const wchar_t* Wide(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
}  // namespace

void VeerbackPlatform::GetArguments(int, char**, std::vector<LcUString>& arguments) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; wide && i < count; ++i) arguments.emplace_back(reinterpret_cast<const char16_t*>(wide[i]));
  LocalFree(wide);
}

VeerbackPlatform::Call VeerbackPlatform::CallServerFunction(const char16_t* module, const char* function,
                                                            HRESULT& result, std::string& error) {
  HMODULE handle = LoadLibraryW(Wide(module));
  if (!handle) {
    DWORD code = GetLastError();
    char text[512] = {};
    if (!FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                        sizeof(text), nullptr))
      std::snprintf(text, sizeof(text), "error %lu", static_cast<unsigned long>(code));
    error = text;
    while (!error.empty() && (error.back() == '\n' || error.back() == '\r' || error.back() == ' ')) error.pop_back();
    return eNOT_LOADED;
  }
  auto call = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(handle, function)));
  if (call) result = call();
  FreeLibrary(handle);
  return call ? eCALLED : eNO_FUNCTION;
}

bool VeerbackPlatform::IsFolderWritable(const char16_t* folder) {
  wchar_t probe[MAX_PATH];
  if (!GetTempFileNameW(Wide(folder), L"vbk", 0, probe)) return false;
  DeleteFileW(probe);
  return true;
}
