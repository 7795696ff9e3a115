#pragma once
#include "foundation/LcUString.h"
#include "serial/LcUStreamFileHandle.h"

// A file sink that opens its path at each begin and closes it at each end:
// in text mode for ascii streams, in binary mode otherwise.
class LcUStreamFile : public LcUStreamFileHandle {
public:
  explicit LcUStreamFile(const char16_t* path);
  ~LcUStreamFile() override;

  bool WriteBegin(LcUStream* stream) override;
  bool WriteEnd() override;
  bool ReadBegin(LcUStream* stream) override;
  bool ReadEnd() override;

private:
  bool Open(LcUStream* stream, bool write);
  bool Close();

  LcUString path;
};
