#include "VeerbackPlatform.h"

#include <windows.h>
#include <shellapi.h>

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

bool VeerbackPlatform::CallServerFunction(const char16_t* module, const char* function, HRESULT& result) {
  HMODULE handle = LoadLibraryW(Wide(module));
  if (!handle) return false;
  auto call = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(handle, function)));
  if (call) result = call();
  FreeLibrary(handle);
  return call != nullptr;
}

bool VeerbackPlatform::IsFolderWritable(const char16_t* folder) {
  wchar_t probe[MAX_PATH];
  if (!GetTempFileNameW(Wide(folder), L"vbk", 0, probe)) return false;
  DeleteFileW(probe);
  return true;
}
