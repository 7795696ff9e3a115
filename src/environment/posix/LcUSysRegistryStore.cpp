#include "environment/posix/LcUSysRegistryStore.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "environment/LcUSysRegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUTextBuffer.h"

namespace {
// "TWRG": marks a database as a registry store, so another program's file
// is never taken for one.
constexpr int32_t kApplicationId = 0x54575247;
constexpr int kBusyMilliseconds = 10000;
constexpr int64_t kRootId = 1;

const char* const kStatements[] = {
    "SELECT id FROM key WHERE parent = ?1 AND fold = ?2",
    "INSERT INTO key(parent, name, fold, written) VALUES(?1, ?2, ?3, ?4)",
    "UPDATE key SET written = ?2 WHERE id = ?1",
    "SELECT parent FROM key WHERE id = ?1",
    "SELECT written FROM key WHERE id = ?1",
    "SELECT name, class, written FROM key WHERE parent = ?1 ORDER BY fold LIMIT 1 OFFSET ?2",
    "SELECT name FROM key WHERE parent = ?1",
    "SELECT 1 FROM key WHERE parent = ?1 LIMIT 1",
    "SELECT name, type FROM value WHERE key = ?1 ORDER BY id LIMIT 1 OFFSET ?2",
    "SELECT name, length(data) FROM value WHERE key = ?1",
    "SELECT type, data FROM value WHERE key = ?1 AND fold = ?2",
    "INSERT INTO value(key, name, fold, type, data) VALUES(?1, ?2, ?3, ?4, ?5) "
    "ON CONFLICT(key, fold) DO UPDATE SET type = excluded.type, data = excluded.data",
    "DELETE FROM value WHERE key = ?1 AND fold = ?2",
    "WITH RECURSIVE tree(id) AS (VALUES(?1) UNION ALL SELECT key.id FROM key JOIN tree ON key.parent = tree.id) "
    "DELETE FROM value WHERE key IN tree",
    "WITH RECURSIVE tree(id) AS (VALUES(?1) UNION ALL SELECT key.id FROM key JOIN tree ON key.parent = tree.id) "
    "DELETE FROM key WHERE id IN tree",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
};

static_assert(sizeof kStatements / sizeof kStatements[0] == LcUSysRegistryStore::eSTATEMENT_COUNT,
              "one text per statement");

const char kSchema[] =
    "CREATE TABLE key(id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, name TEXT NOT NULL, fold TEXT NOT NULL,"
    " class TEXT, written INTEGER NOT NULL, UNIQUE(parent, fold));"
    "CREATE TABLE value(id INTEGER PRIMARY KEY, key INTEGER NOT NULL, name TEXT NOT NULL, fold TEXT NOT NULL,"
    " type INTEGER NOT NULL, data BLOB NOT NULL, UNIQUE(key, fold));";

// 100 ns steps since 1601, as the Windows registry keeps them.
int64_t Now() {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return int64_t(now.tv_sec) * 10000000 + now.tv_nsec / 100 + 116444736000000000LL;
}

using Folded = LcUTextBuffer<>;

// Names compare as the Windows registry compares them: upper-cased.
bool Fold(const char16_t* name, Folded& out) {
  if (!out.Append(name ? name : u"")) return false;
  char16_t* units = out.GetBuffer();
  for (int32_t i = 0; i < out.Length(); ++i) units[i] = LcUString::ToUpperUnit(units[i]);
  return true;
}

void BindText(sqlite3_stmt* statement, int index, const char16_t* text, int32_t length) {
  sqlite3_bind_text16(statement, index, text ? text : u"", int(length * sizeof(char16_t)), SQLITE_TRANSIENT);
}

void ColumnText(sqlite3_stmt* statement, int column, LcUString* out) {
  if (!out) return;
  const void* text = sqlite3_column_text16(statement, column);
  int bytes = sqlite3_column_bytes16(statement, column);
  if (text)
    out->Assign(static_cast<const char16_t*>(text), bytes / int(sizeof(char16_t)));
  else
    out->Clear();
}

// A statement in use, reset and cleared on every way out.
class Query {
public:
  explicit Query(sqlite3_stmt* statement) : statement(statement) {}
  ~Query() {
    if (!statement) return;
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
  }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  explicit operator bool() const { return statement != nullptr; }
  sqlite3_stmt* operator->() const { return statement; }
  operator sqlite3_stmt*() const { return statement; }
  bool Row() { return statement && sqlite3_step(statement) == SQLITE_ROW; }
  bool Done() { return statement && sqlite3_step(statement) == SQLITE_DONE; }

private:
  sqlite3_stmt* statement;
};

bool Execute(sqlite3* db, const char* sql) {
  return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

void Report(const char* path, const char* why) {
  LcUError::PostF(LcUError::eWARNING, &LcUSysRegistry::component,
                  "LcUSysRegistry- The registry store %s can't be used, it is left as it is: %s\n", path, why);
}

// Checked before SQLite sees the file, which would otherwise answer some
// foreign files only at the first write.
bool LooksLikeDatabase(const char* path, bool& fresh) {
  struct stat info;
  fresh = stat(path, &info) != 0 || info.st_size == 0;
  if (fresh) return true;
  int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  char header[16];
  bool ok = read(fd, header, sizeof header) == ssize_t(sizeof header) &&
            std::memcmp(header, "SQLite format 3", sizeof header) == 0;
  close(fd);
  return ok;
}

// One open store per file, for this process: a child of fork() opens its own.
// Stores live as long as the process; the connection is held here too, in
// memory that leak checkers scan, since the store itself is in the arenas.
struct OpenStore {
  LcUStringA path;
  pid_t owner = 0;
  LcUSysRegistryStore* store = nullptr;
  sqlite3* db = nullptr;
};
constexpr int kOpenStores = 8;
OpenStore openStores[kOpenStores];
LcUCriticalSection openLock;
}  // namespace

class LcUSysRegistryStore::Lock {
public:
  explicit Lock(LcUCriticalSection& section) : section(section) { section.Lock(); }
  ~Lock() { section.Unlock(); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

private:
  LcUCriticalSection& section;
};

// BEGIN IMMEDIATE takes the write lock at once, so a busy store waits at
// the start rather than failing half-way; rolls back unless committed.
class LcUSysRegistryStore::Transaction {
public:
  explicit Transaction(LcUSysRegistryStore& store) : store(store) {
    open = Query(store.Get(eBEGIN)).Done();
    if (open) store.CheckKeyIds();
  }
  ~Transaction() {
    if (!open) return;
    Query(store.Get(eROLLBACK)).Done();
    store.ForgetKeyIds();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  explicit operator bool() const { return open; }
  bool Commit() {
    if (!open || !Query(store.Get(eCOMMIT)).Done()) return false;
    open = false;
    // The ids known stay good across this connection's own commit.
    store.dataVersion = store.DataVersion();
    return true;
  }

private:
  LcUSysRegistryStore& store;
  bool open = false;
};

LcUSysRegistryStore* LcUSysRegistryStore::Open(const char* path) {
  Lock guard(openLock);
  pid_t self = getpid();
  OpenStore* slot = nullptr;
  for (OpenStore& entry : openStores) {
    // A parent's connection must not be used, nor closed, in a child.
    if (entry.store && entry.owner != self) entry = OpenStore();
    if (entry.store && std::strcmp(entry.path.Get(), path) == 0) {
      ++entry.store->uses;
      return entry.store;
    }
    if (!entry.store && !slot) slot = &entry;
  }
  bool fresh = false;
  if (!LooksLikeDatabase(path, fresh)) {
    Report(path, "not a database");
    return nullptr;
  }
  sqlite3* db = nullptr;
  int result = sqlite3_open_v2(path, &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
  if (result != SQLITE_OK || !Prepare(db, path)) {
    if (result != SQLITE_OK) Report(path, sqlite3_errstr(result));
    sqlite3_close_v2(db);
    return nullptr;
  }
  auto* store = new LcUSysRegistryStore(db);
  if (!store) {
    sqlite3_close_v2(db);
    return nullptr;
  }
  // Past the table's size the store is still served, only not shared.
  if (slot) {
    slot->path.Assign(path);
    slot->owner = self;
    slot->store = store;
    slot->db = db;
  }
  return store;
}

void LcUSysRegistryStore::Release() {
  Lock guard(openLock);
  if (--uses > 0) return;
  for (OpenStore& entry : openStores)
    if (entry.store == this) entry = OpenStore();
  for (sqlite3_stmt* statement : statements) sqlite3_finalize(statement);
  sqlite3_close_v2(db);
  delete this;
}

bool LcUSysRegistryStore::Prepare(sqlite3* db, const char* path) {
  sqlite3_busy_timeout(db, kBusyMilliseconds);
  sqlite3_stmt* probe = nullptr;
  int tables = -1;
  int32_t id = 0;
  int result = sqlite3_prepare_v2(
      db, "SELECT (SELECT count(*) FROM sqlite_schema), (SELECT application_id FROM pragma_application_id())", -1,
      &probe, nullptr);
  if (result == SQLITE_OK && sqlite3_step(probe) == SQLITE_ROW) {
    tables = sqlite3_column_int(probe, 0);
    id = sqlite3_column_int(probe, 1);
  } else {
    result = sqlite3_errcode(db);
  }
  sqlite3_finalize(probe);
  if (tables < 0) {
    Report(path, sqlite3_errstr(result));
    return false;
  }
  // A file another program has marked is theirs even before it has tables.
  if (id != kApplicationId && (tables > 0 || id != 0)) {
    Report(path, "another program's database");
    return false;
  }
  if (tables > 0) {
    // Only reads until the file has shown itself sound.
    sqlite3_stmt* check = nullptr;
    bool sound = sqlite3_prepare_v2(db, "PRAGMA quick_check", -1, &check, nullptr) == SQLITE_OK &&
                 sqlite3_step(check) == SQLITE_ROW &&
                 std::strcmp(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok") == 0;
    sqlite3_finalize(check);
    if (!sound) {
      Report(path, "damaged");
      return false;
    }
  } else {
    // A new file, or one another process is making now: the second to take
    // the write lock finds the tables made.
    if (!Execute(db, "BEGIN IMMEDIATE")) {
      Report(path, sqlite3_errmsg(db));
      return false;
    }
    sqlite3_stmt* count = nullptr;
    bool empty = sqlite3_prepare_v2(db, "SELECT count(*) FROM sqlite_schema", -1, &count, nullptr) == SQLITE_OK &&
                 sqlite3_step(count) == SQLITE_ROW && sqlite3_column_int(count, 0) == 0;
    sqlite3_finalize(count);
    char root[128];
    std::snprintf(root, sizeof root, "INSERT INTO key VALUES(%lld, 0, '', '', NULL, %lld);", (long long)kRootId,
                  (long long)Now());
    char mark[64];
    std::snprintf(mark, sizeof mark, "PRAGMA application_id = %d;", kApplicationId);
    bool made = !empty || (Execute(db, kSchema) && Execute(db, root) && Execute(db, mark));
    if (!made || !Execute(db, "COMMIT")) {
      Report(path, sqlite3_errmsg(db));
      Execute(db, "ROLLBACK");
      return false;
    }
  }
  // Committed writes survive a killed process in WAL mode without a sync
  // per transaction.
  return Execute(db, "PRAGMA journal_mode = WAL") && Execute(db, "PRAGMA synchronous = NORMAL");
}

sqlite3_stmt* LcUSysRegistryStore::Get(Statement which) {
  if (!statements[which] && sqlite3_prepare_v3(db, kStatements[which], -1, SQLITE_PREPARE_PERSISTENT,
                                               &statements[which], nullptr) != SQLITE_OK)
    statements[which] = nullptr;
  return statements[which];
}

void LcUSysRegistryStore::ForgetKeyIds() {
  for (KnownKey& known : knownKeys) known.id = 0;
}

int64_t LcUSysRegistryStore::DataVersion() {
  unsigned int version = 0;
  if (sqlite3_file_control(db, "main", SQLITE_FCNTL_DATA_VERSION, &version) != SQLITE_OK) return -1;
  return version;
}

bool LcUSysRegistryStore::CheckKeyIds() {
  int64_t now = DataVersion();
  if (now == dataVersion && now != -1) return true;
  ForgetKeyIds();
  dataVersion = now;
  return false;
}

template <typename Read>
bool LcUSysRegistryStore::Fresh(Read read) {
  bool result = read();
  // The read's own transaction brought the version up to date: when another
  // connection committed since the ids were found, read again without them.
  return CheckKeyIds() ? result : read();
}

int64_t LcUSysRegistryStore::FindKey(const char16_t* key, bool create, int64_t now) {
  const char16_t* path = key ? key : u"";
  Folded folded;
  if (!Fold(path, folded)) return 0;
  KnownKey& known = knownKeys[LcUString::Hash(folded.Get()) % eKNOWN_KEYS];
  if (known.id && LcUString::Equal(known.path.Get(), folded.Get())) return known.id;
  int64_t id = kRootId;
  const int32_t length = folded.Length();
  for (int32_t start = 0; start < length;) {
    int32_t end = start;
    while (end < length && path[end] != u'\\') ++end;
    int32_t size = end - start;
    if (size > 0) {
      int64_t child = 0;
      {
        Query find(Get(eFIND_CHILD));
        if (!find) return 0;
        sqlite3_bind_int64(find, 1, id);
        BindText(find, 2, folded.Get() + start, size);
        if (find.Row()) child = sqlite3_column_int64(find, 0);
      }
      if (!child) {
        if (!create) return 0;
        Query insert(Get(eINSERT_KEY));
        if (!insert) return 0;
        sqlite3_bind_int64(insert, 1, id);
        BindText(insert, 2, path + start, size);
        BindText(insert, 3, folded.Get() + start, size);
        sqlite3_bind_int64(insert, 4, now);
        if (!insert.Done() || !Touch(id, now)) return 0;
        child = sqlite3_last_insert_rowid(db);
      }
      id = child;
    }
    start = end + 1;
  }
  known.path.Assign(folded.Get(), folded.Length());
  known.id = id;
  return id;
}

bool LcUSysRegistryStore::Touch(int64_t id, int64_t now) {
  Query touch(Get(eTOUCH_KEY));
  if (!touch) return false;
  sqlite3_bind_int64(touch, 1, id);
  sqlite3_bind_int64(touch, 2, now);
  return touch.Done();
}

bool LcUSysRegistryStore::CreateKey(const char16_t* key) {
  Lock guard(lock);
  Transaction transaction(*this);
  return transaction && FindKey(key, true, Now()) && transaction.Commit();
}

bool LcUSysRegistryStore::KeyExists(const char16_t* key) {
  Lock guard(lock);
  // Asked of the file even when the id is known, so that Fresh sees news.
  return Fresh([&] {
    int64_t id = FindKey(key, false, 0);
    Query written(Get(eKEY_WRITTEN));
    if (!id || !written) return false;
    sqlite3_bind_int64(written, 1, id);
    return written.Row();
  });
}

bool LcUSysRegistryStore::DeleteKey(const char16_t* key, bool recursive) {
  Lock guard(lock);
  Transaction transaction(*this);
  if (!transaction) return false;
  int64_t id = FindKey(key, false, 0);
  // The hive's root is not a key that can go.
  if (id == 0 || id == kRootId) return false;
  int64_t parent = 0;
  {
    Query find(Get(eKEY_PARENT));
    if (!find) return false;
    sqlite3_bind_int64(find, 1, id);
    if (find.Row()) parent = sqlite3_column_int64(find, 0);
  }
  if (!recursive) {
    Query children(Get(eHAS_CHILD));
    if (!children) return false;
    sqlite3_bind_int64(children, 1, id);
    if (children.Row()) return false;
  }
  for (Statement which : {eDELETE_TREE_VALUES, eDELETE_TREE_KEYS}) {
    Query remove(Get(which));
    if (!remove) return false;
    sqlite3_bind_int64(remove, 1, id);
    if (!remove.Done()) return false;
  }
  ForgetKeyIds();
  return Touch(parent, Now()) && transaction.Commit();
}

bool LcUSysRegistryStore::DeleteValue(const char16_t* key, const char16_t* name) {
  Lock guard(lock);
  Transaction transaction(*this);
  if (!transaction) return false;
  int64_t id = FindKey(key, false, 0);
  if (!id) return false;
  Query remove(Get(eDELETE_VALUE));
  if (!remove) return false;
  Folded fold;
  if (!Fold(name, fold)) return false;
  sqlite3_bind_int64(remove, 1, id);
  BindText(remove, 2, fold.Get(), fold.Length());
  return remove.Done() && sqlite3_changes(db) == 1 && Touch(id, Now()) && transaction.Commit();
}

bool LcUSysRegistryStore::GetKeyInfo(const char16_t* key, KeyInfo& info) {
  Lock guard(lock);
  return Fresh([&] {
    int64_t id = FindKey(key, false, 0);
    if (!id) return false;
    info = KeyInfo();
    {
      Query written(Get(eKEY_WRITTEN));
      if (!written) return false;
      sqlite3_bind_int64(written, 1, id);
      if (written.Row()) info.lastWriteTime = sqlite3_column_int64(written, 0);
    }
    Query children(Get(eCHILDREN));
    if (!children) return false;
    sqlite3_bind_int64(children, 1, id);
    while (children.Row()) {
      ++info.subKeyCount;
      uint32_t units = uint32_t(sqlite3_column_bytes16(children, 0)) / sizeof(char16_t);
      if (units > info.maxSubKeyLength) info.maxSubKeyLength = units;
    }
    Query values(Get(eVALUES));
    if (!values) return false;
    sqlite3_bind_int64(values, 1, id);
    while (values.Row()) {
      ++info.valueCount;
      uint32_t units = uint32_t(sqlite3_column_bytes16(values, 0)) / sizeof(char16_t);
      uint32_t bytes = uint32_t(sqlite3_column_int64(values, 1));
      if (units > info.maxValueNameLength) info.maxValueNameLength = units;
      if (bytes > info.maxValueLength) info.maxValueLength = bytes;
    }
    return true;
  });
}

template <typename Take>
bool LcUSysRegistryStore::EntryAt(Statement which, const char16_t* key, uint32_t index, Take take) {
  Lock guard(lock);
  return Fresh([&] {
    int64_t id = FindKey(key, false, 0);
    Query entry(Get(which));
    if (!id || !entry) return false;
    sqlite3_bind_int64(entry, 1, id);
    sqlite3_bind_int64(entry, 2, index);
    // A name the enumeration buffer can't hold ends the listing there.
    if (!entry.Row() ||
        uint32_t(sqlite3_column_bytes16(entry, 0)) / sizeof(char16_t) >= LcUSysRegistry::eMAX_NAME_UNITS)
      return false;
    take(static_cast<sqlite3_stmt*>(entry));
    return true;
  });
}

bool LcUSysRegistryStore::GetSubKey(const char16_t* key, uint32_t index, LcUString* name, LcUString* className,
                                    int64_t* lastWriteTime) {
  return EntryAt(eCHILD_AT, key, index, [&](sqlite3_stmt* child) {
    ColumnText(child, 0, name);
    ColumnText(child, 1, className);
    if (lastWriteTime) *lastWriteTime = sqlite3_column_int64(child, 2);
  });
}

bool LcUSysRegistryStore::GetValueName(const char16_t* key, uint32_t index, LcUString* name, uint32_t* type) {
  return EntryAt(eVALUE_AT, key, index, [&](sqlite3_stmt* value) {
    ColumnText(value, 0, name);
    if (type) *type = uint32_t(sqlite3_column_int64(value, 1));
  });
}

bool LcUSysRegistryStore::QueryValue(const char16_t* key, const char16_t* name, uint32_t* type, void* buffer,
                                     uint32_t* size) {
  Lock guard(lock);
  const uint32_t capacity = size ? *size : 0;
  return Fresh([&] {
    int64_t id = FindKey(key, false, 0);
    if (!id) return false;
    Query value(Get(eGET_VALUE));
    if (!value) return false;
    Folded fold;
    if (!Fold(name, fold)) return false;
    sqlite3_bind_int64(value, 1, id);
    BindText(value, 2, fold.Get(), fold.Length());
    if (!value.Row()) return false;
    if (type) *type = uint32_t(sqlite3_column_int64(value, 0));
    const void* data = sqlite3_column_blob(value, 1);
    uint32_t bytes = uint32_t(sqlite3_column_bytes(value, 1));
    // As the Windows call: a short buffer is left alone and the size told.
    bool fits = !buffer || capacity >= bytes;
    if (buffer && fits && bytes) std::memcpy(buffer, data, bytes);
    if (size) *size = bytes;
    return fits;
  });
}

bool LcUSysRegistryStore::SetValue(const char16_t* key, const char16_t* name, uint32_t type, const void* data,
                                   uint32_t size) {
  if (!data && size) return false;
  Lock guard(lock);
  Transaction transaction(*this);
  if (!transaction) return false;
  int64_t now = Now();
  int64_t id = FindKey(key, true, now);
  if (!id) return false;
  {
    Query set(Get(eSET_VALUE));
    if (!set) return false;
    Folded fold;
    if (!Fold(name, fold)) return false;
    sqlite3_bind_int64(set, 1, id);
    BindText(set, 2, name, fold.Length());
    BindText(set, 3, fold.Get(), fold.Length());
    sqlite3_bind_int64(set, 4, type);
    sqlite3_bind_blob(set, 5, size ? data : "", int(size), SQLITE_TRANSIENT);
    if (!set.Done()) return false;
  }
  return Touch(id, now) && transaction.Commit();
}
