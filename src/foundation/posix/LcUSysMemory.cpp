#include "foundation/LcUSysMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Reservations are PROT_NONE mappings and commit is read-write protection.
// munmap needs the size that VirtualFree finds by itself, so the sizes of
// live reservations are kept here.
namespace {
constexpr uint64_t eGRANULARITY = 65536;
// The x86-64 user address space.
constexpr uint64_t eUSER_SPACE_END = 0x7FFFFFFFF000ull;

std::mutex reservationsLock;
std::map<uintptr_t, uint64_t> reservations;

void* MapAt(void* address, uint64_t size) {
  int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | (address ? MAP_FIXED_NOREPLACE : 0);
  void* result = mmap(address, size_t(size), PROT_NONE, flags, -1, 0);
  if (result == MAP_FAILED) return nullptr;
  // Kernels before 4.17 take the address as a hint only.
  if (address && result != address) {
    munmap(result, size_t(size));
    return nullptr;
  }
  return result;
}

// Like the Windows granularity: over-reserve, then trim to the boundary.
void* MapAligned(uint64_t size) {
  uint64_t padded = size + eGRANULARITY;
  if (padded < size) return nullptr;
  char* raw = static_cast<char*>(MapAt(nullptr, padded));
  if (!raw) return nullptr;
  uintptr_t start = (reinterpret_cast<uintptr_t>(raw) + eGRANULARITY - 1) & ~uintptr_t(eGRANULARITY - 1);
  char* aligned = reinterpret_cast<char*>(start);
  if (aligned > raw) munmap(raw, size_t(aligned - raw));
  char* end = raw + padded;
  if (aligned + size < end) munmap(aligned + size, size_t(end - (aligned + size)));
  return aligned;
}

bool ReadFile(const char* path, std::string& text) {
  int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  char buffer[65536];
  ssize_t n;
  while ((n = read(fd, buffer, sizeof(buffer))) > 0) text.append(buffer, size_t(n));
  close(fd);
  return n == 0;
}

struct Mapping {
  uint64_t start, end;
  char perms[5];
  uint64_t inode;
  std::pair<uint64_t, uint64_t> file;
  bool pseudo;
};

LcUSysMemory::RegionKind Classify(const Mapping& m, const std::set<std::pair<uint64_t, uint64_t>>& executables) {
  bool executable = m.perms[2] == 'x';
  if (m.perms[0] == '-' && m.perms[1] == '-' && !executable) return LcUSysMemory::eRESERVED;
  if (executable || (m.inode && executables.count(m.file))) return LcUSysMemory::eIMAGE;
  if (m.inode || m.perms[3] == 's' || m.pseudo) return LcUSysMemory::eMAPPED;
  return LcUSysMemory::ePRIVATE;
}
}  // namespace

LcUSysMemory::SystemInfo LcUSysMemory::ReadSystemInfo() {
  SystemInfo info;
  info.pageSize = uint32_t(sysconf(_SC_PAGESIZE));
  info.granularity = uint32_t(eGRANULARITY);
  info.totalPhysical = uint64_t(sysconf(_SC_PHYS_PAGES)) * info.pageSize;
  info.totalVirtual = eUSER_SPACE_END;
  rlimit limit;
  if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && limit.rlim_cur < eUSER_SPACE_END)
    info.totalVirtual = limit.rlim_cur;
  return info;
}

void* LcUSysMemory::Reserve(void* address, uint64_t size, int32_t flags) {
  void* result = size == 0 ? nullptr : address ? MapAt(address, size) : MapAligned(size);
  if (!result) {
    DebugOutput("LcUSysMemory::Reserve: Failed to reserve size %d\n", int(size));
    return nullptr;
  }
  std::lock_guard<std::mutex> guard(reservationsLock);
  reservations[reinterpret_cast<uintptr_t>(result)] = size;
  return result;
}

void* LcUSysMemory::ReserveCommitted(uint64_t size) {
  void* region = Reserve(nullptr, size, 0);
  if (region && !Commit(region, size)) {
    Free(region);
    return nullptr;
  }
  return region;
}

bool LcUSysMemory::Commit(void* address, uint64_t size) {
  return mprotect(address, size_t(size), PROT_READ | PROT_WRITE) == 0;
}

bool LcUSysMemory::Decommit(void* address, uint64_t size) {
  return madvise(address, size_t(size), MADV_DONTNEED) == 0 && mprotect(address, size_t(size), PROT_NONE) == 0;
}

bool LcUSysMemory::Free(void* address) {
  uint64_t size;
  {
    std::lock_guard<std::mutex> guard(reservationsLock);
    auto it = reservations.find(reinterpret_cast<uintptr_t>(address));
    if (it == reservations.end()) return false;
    size = it->second;
    reservations.erase(it);
  }
  return munmap(address, size_t(size)) == 0;
}

// VmData: private writable memory, what the commit charge counts.
uint64_t LcUSysMemory::GetProcessPrivateMemoryUsage() {
  std::string status;
  const char* line = nullptr;
  if (ReadFile("/proc/self/status", status)) line = std::strstr(status.c_str(), "\nVmData:");
  unsigned long long kilobytes = 0;
  if (!line || std::sscanf(line, "\nVmData: %llu", &kilobytes) != 1) {
    DebugOutput("LcUSysMemory::GetProcessPrivateMemoryUsage failed, last error is %d\n", errno);
    return 0;
  }
  return uint64_t(kilobytes) * 1024;
}

// The process's own memory map. Gaps are free; PROT_NONE is reserved; files
// with code in them are images, other files and shared memory are mapped,
// the rest is private.
void LcUSysMemory::WalkAddressSpace(uint64_t end, AddressUsage& usage) {
  std::string text;
  if (!ReadFile("/proc/self/maps", text)) return;
  std::vector<Mapping> mappings;
  std::set<std::pair<uint64_t, uint64_t>> executables;
  const char* p = text.c_str();
  while (*p) {
    Mapping m = {};
    unsigned long long start, stop, offset, inode;
    unsigned major, minor;
    int pathAt = 0;
    if (std::sscanf(p, "%llx-%llx %4s %llx %x:%x %llu %n", &start, &stop, m.perms, &offset, &major, &minor, &inode,
                    &pathAt) < 7)
      break;
    m.start = start;
    m.end = stop;
    m.inode = inode;
    m.file = {(uint64_t(major) << 32) | minor, inode};
    m.pseudo = p[pathAt] == '[' && std::strncmp(p + pathAt, "[heap]", 6) != 0 &&
               std::strncmp(p + pathAt, "[stack]", 7) != 0;
    if (inode && m.perms[2] == 'x') executables.insert(m.file);
    mappings.push_back(m);
    const char* next = std::strchr(p, '\n');
    if (!next) break;
    p = next + 1;
  }
  uint64_t at = 0;
  for (const Mapping& m : mappings) {
    if (m.start >= end) break;
    if (m.start > at) usage.Add(eFREE, m.start - at);
    uint64_t stop = m.end < end ? m.end : end;
    usage.Add(Classify(m, executables), stop - m.start);
    at = stop;
  }
  if (at < end) usage.Add(eFREE, end - at);
}

// Linux has no GDI.
uint32_t LcUSysMemory::GetGDIObjects() {
  return 0;
}
