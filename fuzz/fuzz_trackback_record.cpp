// Arbitrary bytes as the TrackBack record file, through the receiver's reader
// and a recording receiver: a whole record reaches it, anything shorter is
// reported and dropped, and nothing reads beyond the record.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "addin/LcOmWin32TrackBackReceiver.h"
#include "environment/LcUResource.h"
#include "foundation/LcUSysError.h"

namespace {
class CountingReceiver : public LcOmWin32TrackBackReceiver {
public:
  int onTrackBack(const LcOmTrackBackRecord& record) override {
    // Touch every byte, as a handler reading the texts unbounded would not.
    unsigned sum = 0;
    for (char16_t unit : record.documentPath) sum += unit;
    sink += sum + unsigned(record.hasItem);
    ++calls;
    return 0;
  }
  int calls = 0;
  unsigned sink = 0;
};

int Quiet(int, LcUComponent*, int32_t, void*, const char16_t*) {
  return 1;
}

std::string folder;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  folder = "/tmp/fuzz-trackback-" + std::to_string(getpid());
  std::string trackback = folder + "/trackback";
  std::string command = "mkdir -p '" + trackback + "'";
  if (std::system(command.c_str()) != 0) std::abort();
  LcUResource::Initialize();
  LcUSysError::SetHandler(1, nullptr, -1, &Quiet);
  LcUString shared;
  LcUString::UTF8ToUTF16(folder.c_str(), -1, shared);
  LcUResource::SetSearchDir(LcUResource::eDIR_USER_APP_SHARED, shared.Get());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = folder + "/trackback/LcGlfPlugin";
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) std::abort();
  if (size) std::fwrite(data, 1, size, file);
  std::fclose(file);
  CountingReceiver receiver;
  receiver.Receive();
  if (receiver.calls != (size >= sizeof(LcOmTrackBackRecord) ? 1 : 0)) std::abort();
  return 0;
}
