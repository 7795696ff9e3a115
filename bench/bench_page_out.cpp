#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "environment/LcUSysFile.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLImpl.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUPage.h"

// A 256 MiB local file streamed through the block cache with its own
// caching on, under an allocation limit of 32 MiB against none. The peer is
// the same stream without a limit; the figure that matters is the ratio,
// with the peak allocator total beside it.
namespace {
constexpr uint64_t kSize = 256ull << 20;
constexpr uint32_t kRead = 1 << 20;

std::u16string FileURL() {
  static const std::u16string url = [] {
    LcUString path;
    LcUSysFile::MakeTempName(nullptr, u"bench", u"stream", path);
    std::string native;
    for (const char16_t* c = path.Get(); *c; ++c) native += *c == u'\\' ? '/' : char(*c);
    if (FILE* file = std::fopen(native.c_str(), "wb")) {
      std::vector<char> chunk(kRead);
      for (uint64_t done = 0; done < kSize; done += kRead) {
        for (uint32_t i = 0; i < kRead; i += 4096) chunk[i] = char(done / kRead + i);
        std::fwrite(chunk.data(), 1, chunk.size(), file);
      }
      std::fclose(file);
    }
    return u"file://" + std::u16string(native.begin(), native.end());
  }();
  return url;
}

uint64_t peak = 0;

void Stream(benchmark::State& state, uint64_t limit) {
  LcUFileURLImpl* engine = LcUFileURL::GetInstance();
  std::vector<uint8_t> buffer(kRead);
  LcUPage::SetAllocLimit(limit);
  uint64_t sum = 0;
  for (auto _ : state) {
    LcUFileURLFile* file = engine->Open(FileURL().c_str(), nullptr, LcUFileURLFile::eOPEN_READ, 0);
    if (!file) {
      state.SkipWithError("open failed");
      break;
    }
    engine->PrepareRead(file, 0, kSize);
    for (uint64_t offset = 0; offset < kSize; offset += kRead) {
      engine->Read(file, LcUFileURLImpl::eBLOCKING, offset, buffer.data(), kRead);
      sum += buffer[0];
      if (limit) peak = std::max(peak, LcUMemory::GetTotalBytes());
    }
    engine->Close(file);
  }
  LcUPage::SetAllocLimit(0);
  benchmark::DoNotOptimize(sum);
  state.SetBytesProcessed(int64_t(state.iterations() * kSize));
}
}  // namespace

int main(int argc, char** argv) {
  LcUFileURL::Initialize();
  benchmark::RegisterBenchmark("unlimited/stream", [](benchmark::State& s) { Stream(s, 0); })->Iterations(3)->UseRealTime();
  benchmark::RegisterBenchmark("ours/stream", [](benchmark::State& s) { Stream(s, 32ull << 20); })->Iterations(3)->UseRealTime();
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("unlimited", "bytes_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"stream/iterations:3/real_time"});
  std::printf("peak allocator total under the 32 MiB limit: %.1f MiB, out of memory: %d\n",
              double(peak) / (1 << 20), int(LcUPage::IsOutOfMemory()));
  LcUFileURL::Terminate();
  return 0;
}
