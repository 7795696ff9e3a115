#include <cstdio>

#include "foundation/LcUSysError.h"
#include "foundation/LcUSysErrorPlatform.h"
#include "foundation/LcUSysErrorState.h"

bool LcUSysError::SetCrashOptions(const char16_t* dumpPath, bool logInDump, uint32_t dumpType,
                                  LcUDumpCallback preCallback, LcUDumpCallback postCallback,
                                  LcUDumpRangeCallback rangeCallback) {
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  if (!LcUSysErrorState::CopyText(s.dumpPath, eDUMP_PATH_SIZE, dumpPath)) return false;
  s.logInDump = logInDump;
  s.dumpType = dumpType;
  s.preCallback = preCallback;
  s.postCallback = postCallback;
  s.rangeCallback = rangeCallback;
  if (s.dumpPath[0])
    LcUSysErrorPlatform::InstallCrashHandlers();
  else
    LcUSysErrorPlatform::RemoveCrashHandlers();
  return true;
}

bool LcUSysError::WriteDump(const char16_t* path, bool logInDump, uint32_t dumpType) {
  if (!path || !path[0]) return false;
  return LcUSysErrorPlatform::WriteCrashRecord(path, logInDump, dumpType, nullptr, nullptr);
}

int LcUSysErrorState::DumpParts(Part parts[3]) const {
  Part all[3];
  Parts(all);
  int count = 0;
  parts[count++] = all[0].length ? all[0] : Part{"Empty Log\n", 10};
  for (int i = 1; i < 3; ++i)
    if (all[i].length) parts[count++] = all[i];
  return count;
}

void LcUSysErrorState::PrintLogParts(FindStream find, const void* record, LcULogWriter writer, void* context) {
  for (int part = 1; part <= 3; ++part) {
    const char* data = nullptr;
    uint32_t size = 0;
    if (!find(record, eLOG_STREAM + uint32_t(part) - 1, &data, &size)) return;
    char line[64];
    std::snprintf(line, sizeof(line), "\n\nLog Part %d\n", part);
    writer(line, context);
    if (size == 0) {
      writer("Empty log\n", context);
      continue;
    }
    if (data[size - 1] != 0) {
      std::snprintf(line, sizeof(line), "Log length %d is not nullptr terminated\n", int(size));
      writer(line, context);
      return;
    }
    writer(data, context);
  }
}
