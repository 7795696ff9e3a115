#pragma once

// A localised library, loaded for its data and never run.
class LcUResourceLibrary {
public:
  static const char16_t* const kExtension;
  // The module handle, or null.
  static void* LoadAsData(const char16_t* path);
};
