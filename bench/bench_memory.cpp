// LcUMemory against glibc's malloc, mimalloc and jemalloc on the same
// workloads, in one run: churn of small blocks (also at a steady state that
// gives nothing back) and of medium blocks, strings grown
// by appending, small churn on two threads at once, and the peak resident
// memory of a fragmenting workload. Prints each case's ratio at the end.
//
// Debian's libmimalloc and libjemalloc both export plain malloc and free:
// linked in, either would become the malloc of the whole process, glibc's
// peer included. So both are dlopen'ed RTLD_LOCAL | RTLD_DEEPBIND and called
// through dlsym, leaving glibc the process's malloc. jemalloc's initial-exec
// TLS needs more static TLS than glibc keeps spare for dlopen, so the program
// first restarts itself once with that spare raised.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "foundation/LcUMemory.h"

namespace {
struct Ours {
  static void* Alloc(size_t n) { return LcUMemory::Alloc(n, 8, 0); }
  static void Free(void* p, size_t n) { LcUMemory::Free(p, n, 8); }
  static void* Realloc(void* p, size_t from, size_t to) { return LcUMemory::Realloc(p, from, to, 8); }
};

struct Glibc {
  static void* Alloc(size_t n) { return std::malloc(n); }
  static void Free(void* p, size_t) { std::free(p); }
  static void* Realloc(void* p, size_t, size_t to) { return std::realloc(p, to); }
};

struct Library {
  void* (*alloc)(size_t);
  void (*free)(void*);
  void* (*realloc)(void*, size_t);
};
Library mimalloc, jemalloc;

template <const Library& L>
struct Loaded {
  static void* Alloc(size_t n) { return L.alloc(n); }
  static void Free(void* p, size_t) { L.free(p); }
  static void* Realloc(void* p, size_t, size_t to) { return L.realloc(p, to); }
};

bool Load(Library& library, const char* file, const char* allocName, const char* freeName, const char* reallocName) {
  void* handle = dlopen(file, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
  if (!handle) {
    std::fprintf(stderr, "%s: %s; left out\n", file, dlerror());
    return false;
  }
  library.alloc = reinterpret_cast<void* (*)(size_t)>(dlsym(handle, allocName));
  library.free = reinterpret_cast<void (*)(void*)>(dlsym(handle, freeName));
  library.realloc = reinterpret_cast<void* (*)(void*, size_t)>(dlsym(handle, reallocName));
  return library.alloc && library.free && library.realloc;
}

void EnsureStaticTlsRoom(char** argv) {
  const char* tunables = std::getenv("GLIBC_TUNABLES");
  if (tunables && std::strstr(tunables, "glibc.rtld.optional_static_tls")) return;
  std::string value = tunables ? std::string(tunables) + ":" : std::string();
  value += "glibc.rtld.optional_static_tls=16384";
  setenv("GLIBC_TUNABLES", value.c_str(), 1);
  execv("/proc/self/exe", argv);  // on failure jemalloc's dlopen says why
}

// One step frees the block in a random slot and allocates a new one there.
struct Churn {
  std::vector<uint32_t> sizes, slots;
  uint32_t live;
};

Churn MakeChurn(uint32_t low, uint32_t high, uint32_t live, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<uint32_t> size(low, high), slot(0, live - 1);
  Churn churn{{}, {}, live};
  for (int i = 0; i < 65536; ++i) {
    churn.sizes.push_back(size(random));
    churn.slots.push_back(slot(random));
  }
  return churn;
}

const Churn smallChurn = MakeChurn(8, 512, 4096, 1);
const Churn mediumChurn = MakeChurn(513, 16256, 1024, 2);

template <class A>
void RunChurn(benchmark::State& state, const Churn& churn) {
  std::vector<void*> blocks(churn.live, nullptr);
  std::vector<uint32_t> sizes(churn.live, 0);
  for (auto _ : state)
    for (size_t i = 0; i < churn.sizes.size(); ++i) {
      uint32_t slot = churn.slots[i];
      A::Free(blocks[slot], sizes[slot]);
      char* block = static_cast<char*>(A::Alloc(churn.sizes[i]));
      block[0] = char(i);
      blocks[slot] = block;
      sizes[slot] = churn.sizes[i];
    }
  for (uint32_t slot = 0; slot < churn.live; ++slot) A::Free(blocks[slot], sizes[slot]);
  state.SetItemsProcessed(int64_t(state.iterations() * churn.sizes.size()));
}

template <class A>
void SmallChurn(benchmark::State& state) {
  RunChurn<A>(state, smallChurn);
}

// Churn at a steady state: a ballast holds every arena's pages, and each
// slot is replaced by a block of its own size, so no page ever empties and
// only the path itself is timed, without giving memory back.
template <class A>
void SmallSteady(benchmark::State& state) {
  std::vector<void*> ballast;
  for (uint32_t size : smallChurn.sizes) ballast.push_back(A::Alloc(size));
  std::vector<void*> blocks(smallChurn.live);
  for (uint32_t slot = 0; slot < smallChurn.live; ++slot) blocks[slot] = A::Alloc(smallChurn.sizes[slot]);
  for (auto _ : state)
    for (uint32_t slot : smallChurn.slots) {
      uint32_t size = smallChurn.sizes[slot];
      A::Free(blocks[slot], size);
      char* block = static_cast<char*>(A::Alloc(size));
      block[0] = char(slot);
      blocks[slot] = block;
    }
  for (uint32_t slot = 0; slot < smallChurn.live; ++slot) A::Free(blocks[slot], smallChurn.sizes[slot]);
  for (size_t i = 0; i < ballast.size(); ++i) A::Free(ballast[i], smallChurn.sizes[i]);
  state.SetItemsProcessed(int64_t(state.iterations() * smallChurn.slots.size()));
}

template <class A>
void MediumChurn(benchmark::State& state) {
  RunChurn<A>(state, mediumChurn);
}

// Sixteen strings grow side by side, each append a realloc to the exact new
// length; a string that reaches its target length is freed and restarted.
struct Appends {
  std::vector<uint32_t> lengths, targets;
};

const Appends appends = [] {
  std::mt19937 random(3);
  std::uniform_int_distribution<uint32_t> length(1, 64), target(32, 8192);
  Appends a;
  for (int i = 0; i < 65536; ++i) a.lengths.push_back(length(random));
  for (int i = 0; i < 4096; ++i) a.targets.push_back(target(random));
  return a;
}();

template <class A>
void BuildStrings(benchmark::State& state) {
  constexpr int kStrings = 16;
  char* text[kStrings] = {};
  size_t length[kStrings] = {}, target[kStrings];
  size_t nextTarget = 0;
  for (size_t& t : target) t = appends.targets[nextTarget++];
  static const char kWords[65] = "assembly camera select document view part gear shaft tooth bolt";
  for (auto _ : state)
    for (size_t i = 0; i < appends.lengths.size(); ++i) {
      int k = int(i % kStrings);
      size_t grown = length[k] + appends.lengths[i];
      char* s = static_cast<char*>(A::Realloc(text[k], length[k], grown));
      std::memcpy(s + length[k], kWords, appends.lengths[i]);
      text[k] = s;
      length[k] = grown;
      if (grown >= target[k]) {
        benchmark::DoNotOptimize(s[grown / 2]);
        A::Free(s, grown);
        text[k] = nullptr;
        length[k] = 0;
        target[k] = appends.targets[nextTarget++ % appends.targets.size()];
      }
    }
  for (int k = 0; k < kStrings; ++k) A::Free(text[k], length[k]);
  state.SetItemsProcessed(int64_t(state.iterations() * appends.lengths.size()));
}

// Small blocks filled to 64 MB, three quarters of them freed at random,
// medium blocks up to 64 MB again, half of all freed, small ones up to
// 64 MB once more. Every block is written whole, as a program would.
template <class A>
void Fragment() {
  struct Block {
    void* p;
    uint32_t size;
  };
  constexpr uint64_t kTarget = uint64_t(64) << 20;
  std::mt19937 random(4);
  std::vector<Block> live;
  uint64_t liveBytes = 0;
  auto fill = [&](uint32_t low, uint32_t high) {
    std::uniform_int_distribution<uint32_t> size(low, high);
    while (liveBytes < kTarget) {
      uint32_t n = size(random);
      void* p = A::Alloc(n);
      std::memset(p, 1, n);
      live.push_back({p, n});
      liveBytes += n;
    }
  };
  auto thin = [&](size_t keepOneIn, size_t outOf) {
    std::shuffle(live.begin(), live.end(), random);
    size_t keep = live.size() * keepOneIn / outOf;
    for (size_t i = keep; i < live.size(); ++i) {
      A::Free(live[i].p, live[i].size);
      liveBytes -= live[i].size;
    }
    live.resize(keep);
  };
  fill(8, 512);
  thin(1, 4);
  fill(513, 16256);
  thin(1, 2);
  fill(8, 512);
  benchmark::DoNotOptimize(live.data());
}

long ResidentKilobytes() {
  long pages = 0, resident = 0;
  if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(statm);
  }
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// The workload runs in a child forked before any benchmark, so that every
// allocator starts from the same process; the peak is its rise above the
// child's resident memory at the start. Negative on failure.
double PeakRiseMegabytes(void (*workload)()) {
  int fds[2];
  if (pipe(fds) != 0) return -1;
  pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    long start = ResidentKilobytes();
    workload();
    ssize_t written = write(fds[1], &start, sizeof start);
    _exit(written == sizeof start ? 0 : 1);
  }
  close(fds[1]);
  long start = -1;
  bool got = child > 0 && read(fds[0], &start, sizeof start) == sizeof start;
  close(fds[0]);
  int status = 0;
  rusage usage{};
  if (child <= 0 || wait4(child, &status, 0, &usage) != child || !got || status != 0) return -1;
  return double(usage.ru_maxrss - start) / 1024;
}

struct Contender {
  const char* name;
  bool present;
  void (*small)(benchmark::State&);
  void (*smallSteady)(benchmark::State&);
  void (*medium)(benchmark::State&);
  void (*strings)(benchmark::State&);
  void (*fragment)();
};

template <class A>
Contender Make(const char* name, bool present) {
  return {name, present, &SmallChurn<A>, &SmallSteady<A>, &MediumChurn<A>, &BuildStrings<A>, &Fragment<A>};
}
}  // namespace

int main(int argc, char** argv) {
  EnsureStaticTlsRoom(argv);
  bool haveMimalloc = Load(mimalloc, "libmimalloc.so.2", "mi_malloc", "mi_free", "mi_realloc");
  bool haveJemalloc = Load(jemalloc, "libjemalloc.so.2", "malloc", "free", "realloc");
  LcUMemory::Initialize();
  benchmark::Initialize(&argc, argv);

  const Contender contenders[] = {Make<Ours>("ours", true), Make<Loaded<mimalloc>>("mimalloc", haveMimalloc),
                                  Make<Glibc>("glibc", true), Make<Loaded<jemalloc>>("jemalloc", haveJemalloc)};

  double peak[4];
  for (int i = 0; i < 4; ++i) peak[i] = contenders[i].present ? PeakRiseMegabytes(contenders[i].fragment) : -1;

  for (const Contender& c : contenders)
    if (c.present) benchmark::RegisterBenchmark((std::string(c.name) + "/small").c_str(), c.small);
  for (const Contender& c : contenders)
    if (c.present) benchmark::RegisterBenchmark((std::string(c.name) + "/small_steady").c_str(), c.smallSteady);
  for (const Contender& c : contenders)
    if (c.present) benchmark::RegisterBenchmark((std::string(c.name) + "/medium").c_str(), c.medium);
  for (const Contender& c : contenders)
    if (c.present) benchmark::RegisterBenchmark((std::string(c.name) + "/strings").c_str(), c.strings);
  for (const Contender& c : contenders)
    if (c.present)
      benchmark::RegisterBenchmark((std::string(c.name) + "/small_two_threads").c_str(), c.small)
          ->Threads(2)
          ->UseRealTime();

  BenchRatioReporter reporter("mimalloc", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const std::vector<std::string> cases = {"small", "small_steady", "medium", "strings", "small_two_threads/real_time/threads:2"};
  for (const char* peer : {"mimalloc", "glibc", "jemalloc"}) reporter.PrintRatios(peer, cases);

  std::printf("\npeak resident memory of the fragmenting workload, rise above the start (lower is better):\n");
  for (int i = 0; i < 4; ++i)
    if (peak[i] >= 0) std::printf("  %-10s %8.1f MB\n", contenders[i].name, peak[i]);
  std::printf("\nratio (ours / peer, peak resident memory, lower is better):\n");
  for (int i = 1; i < 4; ++i)
    if (peak[0] > 0 && peak[i] > 0) std::printf("  %-10s %6.2fx\n", contenders[i].name, peak[0] / peak[i]);
  benchmark::Shutdown();
  return 0;
}
