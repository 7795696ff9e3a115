#pragma once
#include <cstdint>

struct LcUComponent;

// The one way the family reports: an eWARNING through LcUError, formatted
// narrow. Nothing here is ever fatal.
class LcLWarning {
public:
  static void Post(LcUComponent* component, int32_t id, const void* data, const char* format, ...);
};
