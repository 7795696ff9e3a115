#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "BenchRatioReporter.h"
#include "environment/LcUResource.h"
#include "environment/LcUSession.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"

namespace {
constexpr int kPairs = 100000;

struct Table {
  LcUString path;
  std::vector<std::string> keys;
  // The keys as callers hold them, in an order unrelated to the file's.
  std::vector<const char*> lookups;
};

// 100,000 pairs, every tenth value holding a tag to an earlier key.
const Table& GetTable() {
  static Table table = [] {
    Table t;
    std::string text;
    char line[128];
    for (int i = 0; i < kPairs; ++i) {
      t.keys.push_back("app.section" + std::to_string(i % 50) + ".key" + std::to_string(i));
      if (i % 10 == 5)
        std::snprintf(line, sizeof line, "%s=Refers to ${%s} here\n", t.keys[i].c_str(), t.keys[i - 5].c_str());
      else
        std::snprintf(line, sizeof line, "%s=User text number %d, caf\xC3\xA9\n", t.keys[i].c_str(), i);
      text += line;
    }
    for (const std::string& key : t.keys) t.lookups.push_back(key.c_str());
    std::shuffle(t.lookups.begin(), t.lookups.end(), std::mt19937(1));
    LcUSysFile::MakeTempName(nullptr, u"bench", u"name", t.path);
    LcUSysFileHandle file;
    if (file.Open(t.path.Get(), LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                  LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, 384))
      std::fwrite(text.data(), 1, text.size(), file.GetStream());
    return t;
  }();
  return table;
}

std::unordered_map<std::string, std::u16string> PlainLoad(const LcUString& path) {
  std::unordered_map<std::string, std::u16string> map;
  LcUSysFileHandle file;
  if (!file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0, 0))
    return map;
  char line[5120];
  LcUString value;
  while (std::fgets(line, sizeof line, file.GetStream())) {
    size_t length = std::strcspn(line, "\r\n");
    const char* equals = static_cast<const char*>(std::memchr(line, '=', length));
    if (!equals) continue;
    LcUString::UTF8ToUTF16(equals + 1, int32_t(line + length - equals - 1), value);
    map[std::string(line, size_t(equals - line))] = std::u16string(value.Get(), size_t(value.Length()));
  }
  return map;
}

void OursLoad(benchmark::State& state) {
  const Table& table = GetTable();
  for (auto _ : state) {
    LcUResource::Initialize();
    if (!LcUResource::LoadNameFile(table.path.Get(), nullptr)) state.SkipWithError("the table didn't load");
    LcUResource::Terminate();
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}

void PeerLoad(benchmark::State& state) {
  const Table& table = GetTable();
  for (auto _ : state)
    if (PlainLoad(table.path).size() != size_t(kPairs)) state.SkipWithError("the table didn't load");
  state.SetItemsProcessed(state.iterations() * kPairs);
}

void OursFind(benchmark::State& state) {
  const Table& table = GetTable();
  LcUResource::Initialize();
  if (!LcUResource::LoadNameFile(table.path.Get(), nullptr) || !LcUResource::HasString(table.keys.back().c_str()))
    state.SkipWithError("the table didn't load");
  for (auto _ : state)
    for (const char* key : table.lookups) benchmark::DoNotOptimize(LcUResource::FindString(key, nullptr));
  LcUResource::Terminate();
  state.SetItemsProcessed(state.iterations() * kPairs);
}

// Given a caller's const char*, the map needs a std::string of it.
void PeerFind(benchmark::State& state) {
  const Table& table = GetTable();
  auto map = PlainLoad(table.path);
  if (map.size() != size_t(kPairs)) state.SkipWithError("the table didn't load");
  for (auto _ : state)
    for (const char* key : table.lookups) benchmark::DoNotOptimize(map.find(key));
  state.SetItemsProcessed(state.iterations() * kPairs);
}

// The strongest plain peer: keys viewed where the loaded map keeps them, so a
// look-up measures and hashes the caller's text and copies nothing.
void PeerViewFind(benchmark::State& state) {
  const Table& table = GetTable();
  auto owner = PlainLoad(table.path);
  std::unordered_map<std::string_view, const std::u16string*> map;
  for (const auto& [key, value] : owner) map.emplace(key, &value);
  if (map.size() != size_t(kPairs)) state.SkipWithError("the table didn't load");
  for (auto _ : state)
    for (const char* key : table.lookups) benchmark::DoNotOptimize(map.find(key));
  state.SetItemsProcessed(state.iterations() * kPairs);
}
}  // namespace

int main(int argc, char** argv) {
  // Held so that each load starts only the table.
  LcUError::Initialize();
  LcUSession::Initialize();
  benchmark::RegisterBenchmark("ours/load", OursLoad)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("unordered_map/load", PeerLoad)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("ours/find", OursFind)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("unordered_map/find", PeerFind)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("unordered_map_view/find", PeerViewFind)->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("unordered_map", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"load", "find"});
  reporter.PrintRatios("unordered_map_view", {"find"});
  benchmark::Shutdown();
  LcUSysFile::Delete(GetTable().path.Get(), true);
  LcUSession::Terminate();
  LcUError::Terminate();
  return 0;
}
