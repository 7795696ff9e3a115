#pragma once
#include <cstdint>
#include <type_traits>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// Builds a report on the stack: insert the parts, then Post.
class LcUErrorStream {
public:
  LcUErrorStream(int severity, LcUComponent* component) : severity(severity), component(component) {}

  // Narrow text is taken as UTF-8.
  LcUErrorStream& operator<<(const char* text);
  LcUErrorStream& operator<<(const LcUStringA& text);
  LcUErrorStream& operator<<(const char16_t* text);
  LcUErrorStream& operator<<(const LcUString& text);
  LcUErrorStream& operator<<(double value);
  LcUErrorStream& operator<<(const void* pointer);
  LcUErrorStream& operator<<(bool value);

  // Every integer type, by its size and sign.
  template <typename T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>, int> = 0>
  LcUErrorStream& operator<<(T value) {
    if constexpr (std::is_signed_v<T>) {
      if constexpr (sizeof(T) <= 4)
        return Number(u"%d", int(value));
      else
        return Number(u"%lld", static_cast<long long>(value));
    } else {
      if constexpr (sizeof(T) <= 4)
        return Number(u"%u", unsigned(value));
      else
        return Number(u"%llu", static_cast<unsigned long long>(value));
    }
  }

  // Non-zero when a handler took it.
  int Post();

  int32_t severity;
  LcUComponent* component;
  int32_t id = -1;
  void* data = nullptr;
  LcUString scratch;
  LcUString message;

private:
  LcUErrorStream& Number(const char16_t* format, ...);
};
