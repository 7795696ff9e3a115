#include "addin/posix/LcOmTrackBackSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/LcUStringBase.h"

uint32_t LcOmTrackBackSocket::RegisterMessage(const char* name) {
  return 0xC000u | (LcUStringBase<char>::Hash(name) & 0x3FFFu);
}

namespace {
// A folder of our own only: made 0700 when missing, refused if another user owns it.
bool PrivateFolder(char* folder, size_t size) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime && *runtime == '/') {
    std::snprintf(folder, size, "%s", runtime);
    return true;
  }
  std::snprintf(folder, size, "/tmp/twveerbackglf-%u", unsigned(getuid()));
  mkdir(folder, 0700);
  struct stat info;
  return lstat(folder, &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == getuid() &&
         (info.st_mode & 077) == 0;
}
}  // namespace

bool LcOmTrackBackSocket::GetAddress(const char* title, sockaddr_un& address, socklen_t& length) {
  char folder[sizeof(address.sun_path)];
  if (!PrivateFolder(folder, sizeof(folder))) return false;
  std::memset(&address, 0, sizeof(address));
  address.sun_family = AF_UNIX;
  int n = std::snprintf(address.sun_path, sizeof(address.sun_path), "%s/%s", folder, title);
  if (n < 0 || size_t(n) >= sizeof(address.sun_path)) return false;
  length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(n) + 1);
  return true;
}
