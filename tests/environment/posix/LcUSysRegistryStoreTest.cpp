// The Linux registry store under the faults a shared file meets: several
// processes at once, a writer killed half-way, files that are not a store.
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "RegistrySandbox.h"
#include "environment/LcURegistry.h"
#include "environment/LcUSysRegistry.h"

using namespace EnvironmentTesting;

namespace {
constexpr int kUser = LcUSysRegistry::eHIVE_CURRENT_USER;

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

bool Exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

// Runs SQL on the file itself, past the store; answers the first column of
// each row, joined by '|', or "error: ..." on failure.
std::string Sql(const std::string& path, const char* sql) {
  sqlite3* db = nullptr;
  std::string out;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
    out = std::string("error: ") + sqlite3_errmsg(db);
  } else {
    char* error = nullptr;
    int result = sqlite3_exec(
        db, sql,
        [](void* target, int, char** values, char**) {
          auto* text = static_cast<std::string*>(target);
          *text += (text->empty() ? "" : "|") + std::string(values[0] ? values[0] : "NULL");
          return 0;
        },
        &out, &error);
    if (result != SQLITE_OK) out = std::string("error: ") + (error ? error : "?");
    sqlite3_free(error);
  }
  sqlite3_close(db);
  return out;
}

// A forked child running `body`; its exit code is body's answer.
pid_t Child(const std::function<int()>& body) {
  pid_t pid = fork();
  if (pid == 0) _exit(body());
  return pid;
}

int Wait(pid_t pid) {
  int status = 0;
  if (waitpid(pid, &status, 0) != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::u16string U(const std::string& text) { return std::u16string(text.begin(), text.end()); }

class LcUSysRegistryStoreFile : public TempFolderTest {
protected:
  void SetUp() override {
    TempFolderTest::SetUp();
    LcUSysRegistry::Initialize();
    sandbox = new RegistrySandbox(folder);
    reports().clear();
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::SetHandler(severity, &LcUSysRegistry::component, -1, Record);
  }
  void TearDown() override {
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::RemoveHandler(severity, &LcUSysRegistry::component, -1);
    delete sandbox;
    LcUSysRegistry::Terminate();
    TempFolderTest::TearDown();
  }

  // As Linux names it: the file layer's separators are its own.
  std::string File(const char16_t* name) const {
    std::string path = Narrow(In(name));
    for (char& c : path)
      if (c == '\\') c = '/';
    return path;
  }

  static std::vector<std::string>& reports() {
    static std::vector<std::string> list;
    return list;
  }

public:
  // A sound store with enough in it to span many pages, made by another
  // process and then closed cleanly, so no write-ahead log is left.
  void MakeSoundStore() {
    ASSERT_EQ(Wait(Child([] {
                for (int i = 0; i < 300; ++i) {
                  std::u16string name = U("value " + std::to_string(i));
                  std::u16string text(100, u'a' + char16_t(i % 26));
                  if (!LcUSysRegistry::SetTextValue(kUser, u"Software\\Filled", name.c_str(), text.c_str())) return 1;
                }
                return 0;
              })),
              0);
    EXPECT_EQ(Sql(File(u"user.db"), "PRAGMA wal_checkpoint(TRUNCATE)"), "0");
    EXPECT_FALSE(Exists(File(u"user.db-wal")) && ReadBytes(File(u"user.db-wal")).size() > 0);
  }

protected:
  RegistrySandbox* sandbox = nullptr;

private:
  static int Record(int, LcUComponent*, int32_t, void*, const char16_t* message) {
    reports().push_back(Narrow(LcUString(message)));
    return 1;
  }
};

// Two writers at once, on a store that exists and on one that neither
// finds yet: each keeps its own names, shared names end with one of the
// writers' last values, and nothing that was committed is missing.
class LcUSysRegistryStoreRace : public LcUSysRegistryStoreFile, public ::testing::WithParamInterface<bool> {};

TEST_P(LcUSysRegistryStoreRace, TwoWritersLoseNothing) {
  constexpr int kWrites = 300, kShared = 10;
  if (GetParam()) {
    ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Race", u"made first", 1));
  }
  int go[2];
  ASSERT_EQ(pipe(go), 0);
  pid_t writers[2];
  int results[2][2];
  for (int c = 0; c < 2; ++c) {
    ASSERT_EQ(pipe(results[c]), 0);
    writers[c] = Child([&, c] {
      close(go[1]);
      char byte;
      // Both start when the parent lets go.
      if (read(go[0], &byte, 1) != 0) return 2;
      for (int i = 0; i < kWrites; ++i) {
        std::u16string shared = U("shared " + std::to_string(i % kShared));
        std::u16string own = U("own " + std::to_string(c) + " " + std::to_string(i));
        char ok[2] = {char(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Race", shared.c_str(), c * 100000 + i)),
                      char(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Race", own.c_str(), i))};
        if (write(results[c][1], ok, 2) != 2) return 3;
      }
      return 0;
    });
    close(results[c][1]);
  }
  close(go[0]);
  close(go[1]);

  std::string done[2];
  for (int c = 0; c < 2; ++c) {
    char buffer[4096];
    ssize_t got;
    while ((got = read(results[c][0], buffer, sizeof buffer)) > 0) done[c].append(buffer, size_t(got));
    close(results[c][0]);
    EXPECT_EQ(Wait(writers[c]), 0);
    ASSERT_EQ(done[c].size(), size_t(2 * kWrites));
  }

  EXPECT_EQ(Sql(File(u"user.db"), "PRAGMA integrity_check"), "ok");
  int failed = 0;
  // The value each writer last wrote, with success, to each shared name.
  std::map<int, std::set<int32_t>> possible;
  for (int c = 0; c < 2; ++c) {
    std::map<int, int32_t> last;
    for (int i = 0; i < kWrites; ++i) {
      if (done[c][size_t(2 * i)])
        last[i % kShared] = c * 100000 + i;
      else
        ++failed;
      if (!done[c][size_t(2 * i + 1)]) {
        ++failed;
        continue;
      }
      std::u16string own = U("own " + std::to_string(c) + " " + std::to_string(i));
      int32_t value = -1;
      EXPECT_TRUE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Race", own.c_str(), value)) << c << " " << i;
      EXPECT_EQ(value, i);
    }
    for (const auto& entry : last) possible[entry.first].insert(entry.second);
  }
  EXPECT_EQ(failed, 0) << "a busy store waits rather than refusing";
  for (int s = 0; s < kShared; ++s) {
    std::u16string shared = U("shared " + std::to_string(s));
    int32_t value = -1;
    ASSERT_TRUE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Race", shared.c_str(), value));
    EXPECT_EQ(possible[s].count(value), 1u) << "shared " << s << " holds " << value;
  }
  EXPECT_EQ(LcUSysRegistry::CountValues(kUser, u"Software\\Race"), uint32_t(2 * kWrites + kShared + GetParam()));
  EXPECT_TRUE(reports().empty()) << reports().front();
}

INSTANTIATE_TEST_SUITE_P(Store, LcUSysRegistryStoreRace, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return std::string(info.param ? "ExistingStore" : "FreshStore");
                         });

TEST_F(LcUSysRegistryStoreFile, KilledWriterLeavesASoundStoreWithEveryCommit) {
  int reported[2];
  ASSERT_EQ(pipe(reported), 0);
  pid_t writer = Child([&] {
    close(reported[0]);
    for (int32_t i = 0; i < 1000000; ++i) {
      std::u16string name = U("entry " + std::to_string(i));
      std::u16string text = U(std::to_string(i) + std::string(200, '.'));
      std::u16string key = U("Software\\Killed\\Group " + std::to_string(i % 17));
      if (LcUSysRegistry::SetTextValue(kUser, key.c_str(), name.c_str(), text.c_str()) &&
          write(reported[1], &i, sizeof i) != sizeof i)
        return 3;
    }
    return 0;
  });
  close(reported[1]);
  std::vector<int32_t> committed;
  int32_t index;
  while (committed.size() < 3000 && read(reported[0], &index, sizeof index) == sizeof index) committed.push_back(index);
  kill(writer, SIGKILL);
  EXPECT_EQ(Wait(writer), 128 + SIGKILL);
  while (read(reported[0], &index, sizeof index) == sizeof index) committed.push_back(index);
  close(reported[0]);
  ASSERT_GE(committed.size(), 3000u);

  EXPECT_EQ(Sql(File(u"user.db"), "PRAGMA integrity_check"), "ok");
  size_t missing = 0;
  for (int32_t i : committed) {
    std::u16string name = U("entry " + std::to_string(i));
    std::u16string key = U("Software\\Killed\\Group " + std::to_string(i % 17));
    LcUString text;
    if (!LcUSysRegistry::GetTextValue(kUser, key.c_str(), name.c_str(), text) ||
        Narrow(text) != std::to_string(i) + std::string(200, '.'))
      ++missing;
  }
  EXPECT_EQ(missing, 0u) << "of " << committed.size();
  // And the store takes writes again.
  EXPECT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Killed", u"after", 1));
  EXPECT_TRUE(reports().empty()) << reports().front();
}

// Files that are no store of ours: each is reported and left as it was.
struct BadFile {
  const char* name;
  std::function<void(LcUSysRegistryStoreFile& test, const std::string& path)> make;
};

void PrintTo(const BadFile& c, std::ostream* out) { *out << c.name; }

std::string Garbage(size_t size, const std::string& start = "") {
  std::string bytes = start;
  uint32_t state = 12345;
  while (bytes.size() < size) {
    state = state * 1103515245u + 12345u;
    bytes += char(state >> 24);
  }
  return bytes;
}

class LcUSysRegistryStoreBadFile : public LcUSysRegistryStoreFile, public ::testing::WithParamInterface<BadFile> {};

const BadFile kBadFiles[] = {
    {"TruncatedToOneAndAHalfPages",
     [](LcUSysRegistryStoreFile& test, const std::string& path) {
       test.MakeSoundStore();
       std::string bytes = ReadBytes(path);
       ASSERT_GT(bytes.size(), 4 * 4096u);
       WriteBytes(path, bytes.substr(0, 4096 + 2048));
     }},
    {"Garbage", [](LcUSysRegistryStoreFile&, const std::string& path) { WriteBytes(path, Garbage(10000)); }},
    {"GarbageBehindTheHeader",
     [](LcUSysRegistryStoreFile&, const std::string& path) {
       WriteBytes(path, Garbage(8192, std::string("SQLite format 3\0", 16)));
     }},
    {"AnotherProgramsDatabase",
     [](LcUSysRegistryStoreFile&, const std::string& path) {
       ASSERT_EQ(Sql(path, "CREATE TABLE notes(text); INSERT INTO notes VALUES('mine')"), "");
     }},
    {"AnotherProgramsEmptyDatabase",
     [](LcUSysRegistryStoreFile&, const std::string& path) {
       ASSERT_EQ(Sql(path, "PRAGMA application_id = 1234"), "");
       ASSERT_GT(ReadBytes(path).size(), 0u);
     }},
};

TEST_P(LcUSysRegistryStoreBadFile, ReportedAndLeftAsItWas) {
  std::string path = File(u"user.db");
  GetParam().make(*this, path);
  if (HasFatalFailure()) return;
  std::string before = ReadBytes(path);
  reports().clear();

  int32_t value = 0;
  EXPECT_FALSE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Test", u"n", 1));
  EXPECT_FALSE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Test", u"n", value));
  EXPECT_FALSE(LcUSysRegistry::CreateKey(kUser, u"Software\\Test"));
  ASSERT_FALSE(reports().empty());
  for (const std::string& report : reports()) EXPECT_NE(report.find("can't be used"), std::string::npos) << report;
  EXPECT_NE(reports().front().find(path), std::string::npos) << reports().front();
  EXPECT_TRUE(ReadBytes(path) == before) << "the file was changed";
  // The other hives' files are not touched by it.
  EXPECT_TRUE(LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_LOCAL_MACHINE, u"Software\\Test", u"n", 1));
}

INSTANTIATE_TEST_SUITE_P(Store, LcUSysRegistryStoreBadFile, ::testing::ValuesIn(kBadFiles),
                         [](const ::testing::TestParamInfo<BadFile>& info) { return std::string(info.param.name); });

TEST_F(LcUSysRegistryStoreFile, FreshStoreIsMadeAtTheFirstWriteAndShared) {
  std::string path = File(u"user.db");
  ASSERT_FALSE(Exists(path));
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Fresh", u"n", 42));
  ASSERT_TRUE(Exists(path));
  EXPECT_EQ(Sql(path, "PRAGMA application_id"), std::to_string(0x54575247));
  EXPECT_EQ(Sql(path, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(Sql(path, "PRAGMA integrity_check"), "ok");
  EXPECT_FALSE(Exists(File(u"machine.db"))) << "each hive has its own file";
  EXPECT_EQ(Wait(Child([] {
              int32_t value = 0;
              return LcUSysRegistry::GetInt32Value(kUser, u"Software\\Fresh", u"n", value) && value == 42 ? 0 : 1;
            })),
            0);
  EXPECT_TRUE(reports().empty()) << reports().front();
}

TEST_F(LcUSysRegistryStoreFile, HiveBranchesLandInTheirFiles) {
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_CLASSES_ROOT, u"TwClass\\Sub", u"n", 5));
  int32_t value = 0;
  EXPECT_TRUE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Classes\\TwClass\\Sub", u"n", value));
  EXPECT_EQ(value, 5);
  EXPECT_TRUE(LcUSysRegistry::KeyExists(LcUSysRegistry::eHIVE_CLASSES_ROOT, u""));
  EXPECT_FALSE(LcUSysRegistry::DeleteKey(LcUSysRegistry::eHIVE_CLASSES_ROOT, u"", true)) << "the branch stays";
  EXPECT_FALSE(Exists(File(u"machine.db")));

  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_CURRENT_CONFIG, u"Display", u"n", 6));
  EXPECT_TRUE(LcUSysRegistry::GetInt32Value(LcUSysRegistry::eHIVE_LOCAL_MACHINE,
                                            u"System\\CurrentControlSet\\Hardware Profiles\\Current\\Display", u"n",
                                            value));
  EXPECT_EQ(value, 6);
  EXPECT_FALSE(LcUSysRegistry::SetInt32Value(5, u"Software", u"n", 1));
  EXPECT_FALSE(LcUSysRegistry::KeyExists(-1, u"Software"));
}

// A key another process deleted and made again takes this process's next
// writes, and what it deleted is gone here too.
TEST_F(LcUSysRegistryStoreFile, KeyRemadeByAnotherProcessTakesLaterWrites) {
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Shared\\Sub", u"before", 1));
  int32_t value = 0;
  ASSERT_TRUE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Shared\\Sub", u"before", value));
  ASSERT_EQ(Wait(Child([] {
              return LcUSysRegistry::DeleteKey(kUser, u"Software\\Shared", true) &&
                             LcUSysRegistry::SetInt32Value(kUser, u"Software\\Shared\\Sub", u"child", 2)
                         ? 0
                         : 1;
            })),
            0);
  EXPECT_FALSE(LcUSysRegistry::HasValue(kUser, u"Software\\Shared\\Sub", u"before"));
  EXPECT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Shared\\Sub", u"after", 3));
  EXPECT_EQ(LcUSysRegistry::CountValues(kUser, u"Software\\Shared\\Sub"), 2u);
  EXPECT_EQ(Wait(Child([] {
              int32_t seen = 0;
              return LcUSysRegistry::GetInt32Value(kUser, u"Software\\Shared\\Sub", u"after", seen) && seen == 3 ? 0
                                                                                                                 : 1;
            })),
            0)
      << "the write reached the key in the file";
  EXPECT_EQ(Sql(File(u"user.db"), "SELECT count(*) FROM value WHERE key NOT IN (SELECT id FROM key)"), "0");
}

// The same within one process: a deleted key, written again, is a new key.
TEST_F(LcUSysRegistryStoreFile, DeletedKeyWrittenAgainIsMadeAgain) {
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\Gone\\Sub", u"n", 1));
  ASSERT_TRUE(LcUSysRegistry::DeleteKey(kUser, u"Software\\Gone", true));
  EXPECT_FALSE(LcUSysRegistry::KeyExists(kUser, u"Software\\Gone\\Sub"));
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, u"Software\\GONE\\sub", u"n", 2));
  int32_t value = 0;
  EXPECT_TRUE(LcUSysRegistry::GetInt32Value(kUser, u"Software\\Gone\\Sub", u"n", value));
  EXPECT_EQ(value, 2);
  EXPECT_TRUE(LcUSysRegistry::KeyExists(kUser, u"Software\\Gone"));
  EXPECT_EQ(LcUSysRegistry::CountSubKeys(kUser, u"Software\\Gone"), 1u);
  EXPECT_EQ(Sql(File(u"user.db"), "SELECT count(*) FROM value WHERE key NOT IN (SELECT id FROM key)"), "0");
}

// Sub-key names the Windows enumeration buffer can't hold end the listing;
// only this store can make them, Windows keys stop at 255 units.
TEST_F(LcUSysRegistryStoreFile, SubKeyNamesPastTheEnumerationBufferEndIt) {
  std::u16string fits(4095, u'f'), over(4096, u'o');
  ASSERT_TRUE(LcUSysRegistry::CreateKey(kUser, (u"Software\\Long\\" + fits).c_str()));
  ASSERT_TRUE(LcUSysRegistry::CreateKey(kUser, (u"Software\\Long\\" + over).c_str()));
  LcUString name;
  EXPECT_TRUE(LcUSysRegistry::GetSubKey(kUser, u"Software\\Long", 0, &name, nullptr, nullptr));
  EXPECT_EQ(name.Length(), 4095);
  EXPECT_FALSE(LcUSysRegistry::GetSubKey(kUser, u"Software\\Long", 1, &name, nullptr, nullptr));
  EXPECT_EQ(LcUSysRegistry::CountSubKeys(kUser, u"Software\\Long"), 1u);
}

// A store that can't be written tells the user through the registry layer.
TEST_F(LcUSysRegistryStoreFile, UnusableStoreTellsTheWriteError) {
  WriteBytes(File(u"user.db"), Garbage(5000));
  LcURegistry::Initialize();
  LcUBasicRegistryLocationProvider locations(u"Test");
  LcURegistryLocationProvider* previous = LcURegistry::SetRegistryLocationProvider(&locations);
  LcUError::LogF("=== unusable store ===\n");
  EXPECT_FALSE(LcURegistry::RegSetI32("k", "n", 1, LcURegistry::eREG_USER));
  std::string logged = LogText();
  logged = logged.substr(logged.rfind("=== unusable store ===\n"));
  LcURegistry::SetRegistryLocationProvider(previous);
  LcURegistry::Terminate();
  EXPECT_NE(logged.find("Error writing to registry entry: HKEY_CURRENT_USER\\Software\\Hollimar\\Test\\k\\n -- please "
                        "ask your administrator to provide your user account with sufficient permissions for the key "
                        "HKEY_CURRENT_USER\\Software\\Hollimar\\Test\\k."),
            std::string::npos)
      << logged;
}
}  // namespace
