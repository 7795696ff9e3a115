#pragma once
#include <cstdio>

#include "environment/LcUSessionRecord.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

// Decides whether a session record is trusted. The scheme is a licence
// matter of the build; with none installed every record is refused and
// the session runs on its defaults.
typedef bool (*LcUSessionVerifier)(void* context, const LcUSessionRecord& record);

// The source of the session records.
class LcUSessionProvider : public LcUDeletable {
public:
  virtual ~LcUSessionProvider() = default;
  virtual const char16_t* GetPath() = 0;
  virtual bool Load(LcUSessionRecordList& records) = 0;
  virtual bool Verify(const LcUSessionRecord& record) = 0;
  virtual bool IsOEM() = 0;
};

// Records read from a file; where the file is, is the subclass's.
class LcUSessionFileProvider : public LcUSessionProvider {
public:
  enum : long { eMAX_FILE_BYTES = 1 << 20 };
  bool Load(LcUSessionRecordList& records) override;
  bool Verify(const LcUSessionRecord& record) override;
  virtual FILE* Open() = 0;
  virtual void Close(FILE* file) = 0;

  static void SetVerifier(LcUSessionVerifier verifier, void* context);
};

// "session.twlic" in a folder.
class LcUSessionDefaultFileProvider : public LcUSessionFileProvider {
public:
  explicit LcUSessionDefaultFileProvider(const char16_t* folder) : folder(folder) {}
  const char16_t* GetPath() override { return folder.Get(); }
  bool IsOEM() override { return false; }
  FILE* Open() override;
  void Close(FILE* file) override;

private:
  LcUString folder;
};
