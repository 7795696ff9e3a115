#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "environment/LcUSysFileHandle.h"
#include "environment/posix/LcUSysPath.h"
#include "environment/posix/LcUSysTextStream.h"

bool LcUSysFileHandle::Open(const char16_t* path, int access, int creation, int mode, int sharing, int hints,
                            int permission) {
  Close();
  if (!path || access < 0 || access > 3 || creation < 0 || creation > 4 || sharing < 0 || sharing > 3) return false;
  LcUStringA native;
  if (!LcUSysPath::ToNative(path, native)) return false;
  static const int kAccess[] = {O_RDONLY, O_WRONLY, O_WRONLY | O_APPEND, O_RDWR};
  static const int kCreation[] = {O_CREAT | O_EXCL, O_CREAT | O_TRUNC, O_CREAT, 0, O_TRUNC};
  static const char* const kStream[] = {"r", "w", "a", "r+"};
  // Windows' read-only attribute becomes the owner's, group's and others' bits.
  mode_t bits = ((permission & ePERMISSION_READ) ? 0444 : 0) | ((permission & ePERMISSION_WRITE) ? 0222 : 0);
  int fd = open(native.Get(), kAccess[access] | kCreation[creation] | O_CLOEXEC, bits);
  if (fd < 0) return false;
  if (sharing != eDENY_NONE && flock(fd, (access == eACCESS_READ ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
    close(fd);
    return false;
  }
  if (hints & eHINT_TEMPORARY) unlink(native.Get());  // gone once closed, as with delete-on-close
  if (hints & eHINT_SEQUENTIAL) posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
  if (hints & eHINT_RANDOM) posix_fadvise(fd, 0, 0, POSIX_FADV_RANDOM);
  // Text read as Windows reads it; writes go out as they are.
  stream = mode == eMODE_TEXT && access == eACCESS_READ ? LcUSysTextStream::Open(fd) : fdopen(fd, kStream[access]);
  if (!stream) close(fd);
  return stream != nullptr;
}
