#pragma once
#include <cstdint>

#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

struct sqlite3;
struct sqlite3_stmt;

// One hive's settings in an SQLite database: keys as a tree whose names
// compare without regard to case, values with the Win32 types and bytes,
// each write one transaction, WAL so that several processes share it.
// Key paths are backslash-separated below the hive's root.
class LcUSysRegistryStore : public LcUDeletable {
public:
  struct KeyInfo {
    uint32_t subKeyCount = 0;
    uint32_t maxSubKeyLength = 0;
    uint32_t valueCount = 0;
    uint32_t maxValueNameLength = 0;
    uint32_t maxValueLength = 0;
    int64_t lastWriteTime = 0;
  };

  // The store in file `path`, shared by its users in this process until the
  // last releases it. A file that isn't a sound store of ours is reported
  // and left untouched; the answer is null.
  static LcUSysRegistryStore* Open(const char* path);
  void Release();

  bool CreateKey(const char16_t* key);
  bool KeyExists(const char16_t* key);
  bool DeleteKey(const char16_t* key, bool recursive);
  bool DeleteValue(const char16_t* key, const char16_t* name);
  bool GetKeyInfo(const char16_t* key, KeyInfo& info);
  bool GetSubKey(const char16_t* key, uint32_t index, LcUString* name, LcUString* className, int64_t* lastWriteTime);
  bool GetValueName(const char16_t* key, uint32_t index, LcUString* name, uint32_t* type);
  bool QueryValue(const char16_t* key, const char16_t* name, uint32_t* type, void* buffer, uint32_t* size);
  bool SetValue(const char16_t* key, const char16_t* name, uint32_t type, const void* data, uint32_t size);

  enum Statement {
    eFIND_CHILD,
    eINSERT_KEY,
    eTOUCH_KEY,
    eKEY_PARENT,
    eKEY_WRITTEN,
    eCHILD_AT,
    eCHILDREN,
    eHAS_CHILD,
    eVALUE_AT,
    eVALUES,
    eGET_VALUE,
    eSET_VALUE,
    eDELETE_VALUE,
    eDELETE_TREE_VALUES,
    eDELETE_TREE_KEYS,
    eBEGIN,
    eCOMMIT,
    eROLLBACK,
    eSTATEMENT_COUNT
  };

private:
  class Lock;
  class Transaction;

  explicit LcUSysRegistryStore(sqlite3* db) : db(db) {}
  static bool Prepare(sqlite3* db, const char* path);
  sqlite3_stmt* Get(Statement which);
  // The key's row id, 0 when it is missing; with create, missing keys are made.
  int64_t FindKey(const char16_t* key, bool create, int64_t now);
  // The file's version as of this connection's last transaction.
  int64_t DataVersion();
  // Forgets the ids found so far once another connection has committed;
  // false then.
  bool CheckKeyIds();
  // Runs a read, and runs it again with the ids forgotten if the file
  // changed under them.
  template <typename Read>
  bool Fresh(Read read);
  // The index-th row of an enumeration under key, handed to take.
  template <typename Take>
  bool EntryAt(Statement which, const char16_t* key, uint32_t index, Take take);
  bool Touch(int64_t id, int64_t now);

  sqlite3* db;
  int32_t uses = 1;
  sqlite3_stmt* statements[eSTATEMENT_COUNT] = {};
  LcUCriticalSection lock;
  // Ids of keys by their upper-cased path, good while no other connection
  // commits and this one neither deletes keys nor rolls back. The paths
  // stay allocated when forgotten: a hit allocates nothing.
  struct KnownKey {
    LcUString path;
    int64_t id = 0;
  };
  enum { eKNOWN_KEYS = 64 };
  void ForgetKeyIds();
  KnownKey knownKeys[eKNOWN_KEYS];
  int64_t dataVersion = -1;
};
