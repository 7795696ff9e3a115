#pragma once
#include "filestream/LcUHttpFileProtocol.h"
#include "filestream/LcUURL.h"

// What the protocol's opaque handles hold: the file, a worker's
// connection, one ranged request.
struct LcUHttpFileProtocol::Handle {
  LcUString text;
  LcUURL url;
};

struct LcUHttpFileProtocol::ThreadHandle {
  uint8_t secure;
  void* connection;
};

struct LcUHttpFileProtocol::Request {
  LcUString url;
  LcUString path;
  LcUString extraHeaders;
};

