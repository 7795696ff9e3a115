#include "environment/LcUResourceLibrary.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "environment/posix/LcUSysPath.h"

const char16_t* const LcUResourceLibrary::kExtension = u"so";

// Mapped read-only, as Windows maps a data file: the library's code never
// runs, so a bad one can do no harm. Only ELF files are libraries.
void* LcUResourceLibrary::LoadAsData(const char16_t* path) {
  LcUStringA native;
  if (!LcUSysPath::ToNative(path, native)) return nullptr;
  int fd = open(native.Get(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  struct stat info;
  char magic[4] = {};
  void* mapped = nullptr;
  if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && pread(fd, magic, 4, 0) == 4 &&
      std::memcmp(magic, "\x7F" "ELF", 4) == 0) {
    mapped = mmap(nullptr, size_t(info.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
    if (mapped == MAP_FAILED) mapped = nullptr;
  }
  close(fd);
  return mapped;
}
