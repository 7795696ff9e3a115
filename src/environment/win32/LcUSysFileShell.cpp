#include <windows.h>
#include <shlobj.h>

#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"

bool LcUSysFile::GetShellFolder(int kind, LcUString& out) {
  static const int kFolders[] = {CSIDL_PROFILE, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA};
  int folder = kind >= 0 && kind < 4 ? kFolders[kind] : -1;
  wchar_t path[MAX_PATH];
  if (folder < 0 || FAILED(SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path))) {
    LcUError::LogF("SHGetFolderPathW  %d failed\n", folder);
    out.Clear();
    return false;
  }
  out.Assign(reinterpret_cast<const char16_t*>(path));
  return true;
}
