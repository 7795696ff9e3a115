#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "environment/LcUSysNativeFile.h"
#include "environment/posix/LcUSysPath.h"

bool LcUSysNativeFile::Open(const char16_t* path, int access, int creation, int sharing, int hints, int64_t size) {
  Close();
  LcUStringA native;
  if (!path || access < 0 || access > 3 || creation < 0 || creation > 4 || !LcUSysPath::ToNative(path, native))
    return false;
  static const int kAccess[] = {O_RDONLY, O_WRONLY, O_WRONLY | O_APPEND, O_RDWR};
  static const int kCreation[] = {O_CREAT | O_EXCL, O_CREAT | O_TRUNC, O_CREAT, 0, O_TRUNC};
  int fd = open(native.Get(), kAccess[access] | kCreation[creation] | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  handle = fd;
  struct stat info;
  if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    Close();
    return false;
  }
  // Others may read alongside a reader only; anything else is exclusive.
  const int bothShared = eSHARE_READ | eSHARE_WRITE;
  if ((sharing & bothShared) != bothShared &&
      flock(fd, ((sharing & eSHARE_READ) && access == 0 ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
    Close();
    return false;
  }
  if (size != 0 && ftruncate(fd, off_t(size)) != 0) {
    Close();
    return false;
  }
  if (hints & eHINT_DELETE_ON_CLOSE) unlink(native.Get());
  if (hints & eHINT_SEQUENTIAL) posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
  if (hints & eHINT_RANDOM) posix_fadvise(fd, 0, 0, POSIX_FADV_RANDOM);
  return true;
}

bool LcUSysNativeFile::Close() {
  if (!IsOpen()) return true;
  int closing = handle;
  handle = kClosed;
  return close(closing) == 0;
}

bool LcUSysNativeFile::Sync() {
  return IsOpen() && fsync(handle) == 0;
}
