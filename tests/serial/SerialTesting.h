#pragma once
#include <cstddef>
#include <string>

#include "foundation/LcUSysError.h"

// Helpers shared by the serialisation tests.
namespace SerialTesting {
inline std::string LogText() {
  std::string text;
  LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                         &text);
  return text;
}

// Counts the JSON hooks' traffic, and fails allocations from a given one on.
struct HookCounter {
  static size_t allocations;
  static size_t releases;
  static size_t failFrom;  // 0: never
  static size_t lastSize;
  static void* Allocate(size_t size);
  static void Release(void* block);
  // Installs the counting hooks, zeroed.
  static void Install(size_t failAt = 0);
  static void Uninstall();
};
}  // namespace SerialTesting
