#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"

namespace {
const char* Home() {
  const char* home = std::getenv("HOME");
  if (home && *home) return home;
  const passwd* entry = getpwuid(getuid());
  return entry ? entry->pw_dir : nullptr;
}

// The XDG base directories stand in for the Windows shell folders.
bool FolderPath(int kind, LcUStringA& path) {
  struct Xdg {
    const char* variable;
    const char* fallbackUnderHome;
  };
  static const Xdg kXdg[] = {{nullptr, ""}, {"XDG_CONFIG_HOME", "/.config"}, {"XDG_DATA_HOME", "/.local/share"}};
  if (kind == LcUSysFile::eFOLDER_COMMON_APPDATA) {
    path.Assign("/var/lib");
    return true;
  }
  if (kind < 0 || kind > 2) return false;
  const char* value = kXdg[kind].variable ? std::getenv(kXdg[kind].variable) : nullptr;
  if (value && *value == '/') {
    path.Assign(value);
    return true;
  }
  const char* home = Home();
  if (!home || !*home) return false;
  path.Assign(home);
  path.Append(kXdg[kind].fallbackUnderHome);
  return true;
}
}  // namespace

bool LcUSysFile::GetShellFolder(int kind, LcUString& out) {
  LcUStringA path;
  if (!FolderPath(kind, path) || !LcUString::UTF8ToUTF16(path.Get(), -1, out)) {
    LcUError::LogF("SHGetFolderPathW  %d failed\n", kind);
    out.Clear();
    return false;
  }
  return true;
}
