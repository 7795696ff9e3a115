// Settings through LcURegistry on the Linux store, against the same values
// in one SQLite table through plain prepared statements. Both files are in
// WAL mode with normal syncs, and every write is its own transaction.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <cstring>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "environment/LcURegistry.h"
#include "environment/LcUSysFile.h"
#include "environment/posix/LcUSysPath.h"
#include "foundation/LcUError.h"

namespace {
constexpr int kValues = 10000;
constexpr uint32_t kFlags = LcURegistry::eREG_USER | LcURegistry::eREG_QUIET;

class BenchLocations : public LcURegistryLocationProvider {
public:
  int32_t GetLocationCount() const override { return 1; }
  const char16_t* GetLocation(int32_t) const override { return u"Software\\Hollimar\\RegistryBench"; }
};

const std::vector<std::u16string>& Names() {
  static const std::vector<std::u16string> names = [] {
    std::vector<std::u16string> made;
    for (int i = 0; i < kValues; ++i) {
      std::string name = "value" + std::to_string(i);
      made.emplace_back(name.begin(), name.end());
    }
    return made;
  }();
  return names;
}

void OursWrite(benchmark::State& state) {
  int round = 0;
  for (auto _ : state) {
    ++round;
    for (int i = 0; i < kValues; ++i)
      if (!LcURegistry::RegSetI32(u"Settings", Names()[size_t(i)].c_str(), i + round, kFlags))
        state.SkipWithError("a write failed");
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

void OursRead(benchmark::State& state) {
  for (auto _ : state)
    for (int i = 0; i < kValues; ++i)
      benchmark::DoNotOptimize(LcURegistry::RegGetI32(u"Settings", Names()[size_t(i)].c_str(), -1, kFlags));
  state.SetItemsProcessed(state.iterations() * kValues);
}

// The peer: one table, statements prepared once.
struct Plain {
  sqlite3* db = nullptr;
  sqlite3_stmt* insert = nullptr;
  sqlite3_stmt* select = nullptr;
  sqlite3_stmt* begin = nullptr;
  sqlite3_stmt* commit = nullptr;

  explicit Plain(const std::string& path) {
    sqlite3_open(path.c_str(), &db);
    sqlite3_exec(db,
                 "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                 "CREATE TABLE IF NOT EXISTS value(name TEXT PRIMARY KEY, type INTEGER, data BLOB)",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(db, "INSERT OR REPLACE INTO value VALUES(?1, 4, ?2)", -1, &insert, nullptr);
    sqlite3_prepare_v2(db, "SELECT type, data FROM value WHERE name = ?1", -1, &select, nullptr);
    sqlite3_prepare_v2(db, "BEGIN IMMEDIATE", -1, &begin, nullptr);
    sqlite3_prepare_v2(db, "COMMIT", -1, &commit, nullptr);
  }
  ~Plain() {
    for (sqlite3_stmt* statement : {insert, select, begin, commit}) sqlite3_finalize(statement);
    sqlite3_close(db);
  }
  static bool Step(sqlite3_stmt* statement, int expected) {
    bool ok = sqlite3_step(statement) == expected;
    sqlite3_reset(statement);
    return ok;
  }
  bool Write(const std::u16string& name, int32_t value) {
    if (!Step(begin, SQLITE_DONE)) return false;
    sqlite3_bind_text16(insert, 1, name.data(), int(name.size() * 2), SQLITE_STATIC);
    sqlite3_bind_blob(insert, 2, &value, sizeof value, SQLITE_STATIC);
    bool ok = Step(insert, SQLITE_DONE);
    return Step(commit, SQLITE_DONE) && ok;
  }
  int32_t Read(const std::u16string& name) {
    int32_t value = -1;
    sqlite3_bind_text16(select, 1, name.data(), int(name.size() * 2), SQLITE_STATIC);
    if (sqlite3_step(select) == SQLITE_ROW && sqlite3_column_int(select, 0) == 4 &&
        sqlite3_column_bytes(select, 1) == sizeof value)
      std::memcpy(&value, sqlite3_column_blob(select, 1), sizeof value);
    sqlite3_reset(select);
    return value;
  }
};

std::string& PeerPath() {
  static std::string path;
  return path;
}

void PeerWrite(benchmark::State& state) {
  Plain plain(PeerPath());
  int round = 0;
  for (auto _ : state) {
    ++round;
    for (int i = 0; i < kValues; ++i)
      if (!plain.Write(Names()[size_t(i)], i + round)) state.SkipWithError("a write failed");
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

void PeerRead(benchmark::State& state) {
  Plain plain(PeerPath());
  for (auto _ : state)
    for (int i = 0; i < kValues; ++i) benchmark::DoNotOptimize(plain.Read(Names()[size_t(i)]));
  state.SetItemsProcessed(state.iterations() * kValues);
}
}  // namespace

int main(int argc, char** argv) {
  LcUString folder;
  LcUStringA narrow;
  if (!LcUSysFile::MakeTempFolder(folder) || !LcUSysPath::ToNative(folder.Get(), narrow)) return 1;
  setenv("TW_REGISTRY_DIR", narrow.Get(), 1);
  PeerPath() = std::string(narrow.Get()) + "/plain.db";
  LcURegistry::Initialize();
  BenchLocations locations;
  LcURegistry::SetRegistryLocationProvider(&locations);

  // Writes first: the reads find what they wrote.
  benchmark::RegisterBenchmark("ours/write", OursWrite)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("sqlite/write", PeerWrite)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("ours/read", OursRead)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("sqlite/read", PeerRead)->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("sqlite", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"write", "read"});
  benchmark::Shutdown();

  LcURegistry::SetRegistryLocationProvider(nullptr);
  LcURegistry::Terminate();
  LcUSysFile::Remove(folder.Get(), true, true);
  return 0;
}
