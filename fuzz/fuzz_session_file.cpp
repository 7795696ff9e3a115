#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "environment/LcUSessionInfo.h"
#include "environment/LcUSessionRecord.h"
#include "environment/LcUSessionRegistryLocationProvider.h"
#include "foundation/LcUString.h"

// A session file of any bytes: the reader must fail cleanly or give records
// whose signed bytes are the file's own, and a record must be safe to take
// as the session's.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1 << 20)) return 0;
  LcUString::Initialize();
  {
    const char* text = reinterpret_cast<const char*>(data);
    LcUSessionRecordList records;
    LcUStringA error;
    bool ok = LcUSessionRecord::Read(text, size, records, error);
    if (!ok && !error.Get()) __builtin_trap();
    // Each record's signed bytes stand in the file, in order.
    const uint8_t* from = data;
    const uint8_t* end = data + size;
    for (const LcUSessionRecord& record : records) {
      const LcUSessionRecord::Bytes& bytes = record.GetSignedBytes();
      if (record.GetPairs().empty() || record.GetSignature().empty() || bytes.empty()) __builtin_trap();
      const uint8_t* found = std::search(from, end, bytes.begin(), bytes.end());
      if (found == end) __builtin_trap();
      from = found + bytes.size();
    }
    if (!records.empty()) {
      LcUSessionInfo info;
      info.Apply(records.front());
      LcUSessionRegistryLocationProvider locations(info, &records.front());
      for (int32_t i = 0; i < locations.GetLocationCount(); ++i)
        if (!locations.GetLocation(i)) __builtin_trap();
    }
  }
  LcUString::Terminate();
  return 0;
}
