#include "foundation/LcUFileLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/posix/LcUSysErrorPath.h"

namespace {
constexpr int32_t ePATH_CAPACITY = 3 * 2048 + 1;
}

bool LcUFileLock::Exists() const {
  char name[ePATH_CAPACITY];
  struct stat info;
  return LcUSysErrorPath::ToSystem(path.Get(), name, sizeof(name)) && stat(name, &info) == 0;
}

// O_EXCL makes the creation itself the test, so two processes racing past
// Exists cannot both win.
bool LcUFileLock::CreateExclusive() {
  char name[ePATH_CAPACITY];
  if (!LcUSysErrorPath::ToSystem(path.Get(), name, sizeof(name))) return false;
  int fd = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  handle = fd;
  return true;
}

void LcUFileLock::CloseAndDelete() {
  close(int(handle));
  char name[ePATH_CAPACITY];
  if (LcUSysErrorPath::ToSystem(path.Get(), name, sizeof(name))) unlink(name);
}
