#pragma once
#include <cstdint>
#include "foundation/LcUString.h"

// The pieces of a URL. An absent piece is a null string, a present but
// empty one an empty string; params, query and fragment keep their ";",
// "?" and "#".
struct LcUURLParts {
  LcUString scheme;
  LcUString host;
  LcUString user;
  LcUString password;
  int32_t port = 0;
  LcUString path;
  LcUString params;
  LcUString query;
  LcUString fragment;

  void Clear();
};
