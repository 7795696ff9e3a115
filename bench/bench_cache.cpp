#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "environment/LcUAppInfo.h"
#include "environment/LcUAppInfoProvider.h"
#include "environment/LcUSysFile.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLImpl.h"
#include "http/TestHttpServer.h"

// Warm reads of a 256 MiB file served by nginx and already whole in the
// local cache, through the streamed file, against cat of the cache's data
// file to /dev/null. Also told: the requests that reach nginx on a warm run.
namespace {
constexpr uint64_t kSize = 256ull << 20;
constexpr uint32_t kRead = 1 << 20;

std::u16string url;
std::string dataPath;

// Reads the whole file once; false if any read failed.
bool ReadAll(LcUFileURLImpl* engine, std::vector<uint8_t>& buffer, uint64_t& sum) {
  LcUFileURLFile* file = engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_READ, 0);
  if (!file) return false;
  if (dataPath.empty())
    for (const char16_t* c = file->localPath.Get(); *c; ++c) dataPath += *c == u'\\' ? '/' : char(*c);
  engine->PrepareRead(file, 0, kSize);
  bool read = true;
  for (uint64_t offset = 0; offset < kSize && read; offset += kRead) {
    read = engine->Read(file, LcUFileURLImpl::eBLOCKING, offset, buffer.data(), kRead) == 0;
    sum += buffer[kRead - 1];
  }
  engine->Close(file);
  return read;
}

void Ours(benchmark::State& state) {
  LcUFileURLImpl* engine = LcUFileURL::GetInstance();
  std::vector<uint8_t> buffer(kRead);
  uint64_t sum = 0;
  for (auto _ : state)
    if (!ReadAll(engine, buffer, sum)) state.SkipWithError("read failed");
  benchmark::DoNotOptimize(sum);
  state.SetBytesProcessed(int64_t(state.iterations() * kSize));
}

void Cat(benchmark::State& state) {
  std::string command = "cat '" + dataPath + "' > /dev/null";
  for (auto _ : state)
    if (std::system(command.c_str()) != 0) state.SkipWithError("cat failed");
  state.SetBytesProcessed(int64_t(state.iterations() * kSize));
}
}  // namespace

int main(int argc, char** argv) {
  LcUFileURL::Initialize();
  LcUTempAppInfoProvider* appData = new LcUTempAppInfoProvider;
  LcUAppInfoProvider* previous = LcUAppInfo::SetProvider(appData);
  int result = 1;
  {
    TestHttpServer server;
    if (!server.Failure().empty()) {
      std::fprintf(stderr, "%s\n", server.Failure().c_str());
    } else {
      server.Serve("big.bin", TestHttpServer::Pattern(kSize));
      url = server.Url("big.bin");
      std::vector<uint8_t> buffer(kRead);
      uint64_t sum = 0;
      // The first run fills the cache; the second asks nginx for no block.
      bool filled = ReadAll(LcUFileURL::GetInstance(), buffer, sum);
      size_t before = server.AccessLog().size();
      bool warm = filled && ReadAll(LcUFileURL::GetInstance(), buffer, sum);
      size_t gets = 0, requests = 0;
      std::vector<TestHttpServer::Access> log = server.AccessLog();
      for (size_t i = before; i < log.size(); ++i, ++requests) gets += log[i].method == "GET";
      if (warm) {
        benchmark::RegisterBenchmark("ours/warm_read", Ours)->Iterations(5)->UseRealTime();
        benchmark::RegisterBenchmark("cat/warm_read", Cat)->Iterations(5)->UseRealTime();
        benchmark::Initialize(&argc, argv);
        BenchRatioReporter reporter("cat", "bytes_per_second");
        benchmark::RunSpecifiedBenchmarks(&reporter);
        reporter.PrintRatios({"warm_read/iterations:5/real_time"});
        std::printf("requests to nginx on the second run: %zu, of them GET: %zu\n", requests, gets);
        result = 0;
      } else {
        std::fprintf(stderr, "the file could not be read through the cache\n");
      }
    }
  }
  LcUAppInfo::SetProvider(previous);
  LcUString folder;
  if (appData->GetDirectory(0, folder)) LcUSysFile::Remove(folder.Get(), true, true);
  delete appData;
  LcUFileURL::Terminate();
  return result;
}
