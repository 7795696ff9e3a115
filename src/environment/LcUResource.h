#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// The process-wide table of user-visible text and the nine search
// directories. Set up on the start-up thread and read afterwards: no locks.
class LcUResource {
public:
  // In order of precedence; the index is also the bit of a search mask.
  enum {
    eDIR_USER = 0,
    eDIR_LOCAL,
    eDIR_PROJECT,
    eDIR_SITE,
    eDIR_APP,
    eDIR_INSTALL,
    eDIR_USER_APP_SHARED,
    eDIR_USER_INHERIT,
    eDIR_LOCAL_INHERIT,
    eDIR_COUNT
  };

  static bool Initialize();
  static void Terminate();
  // The use count: callers that can run before the component exists test it.
  static int32_t IsInitialised();
  static LcUComponent component;

  static void SetSearchDir(int kind, const char16_t* path);
  // Joins relative under a shell folder; changes nothing if the folder can't be had.
  static void SetSearchDirFromFolder(int kind, int folder, const char16_t* relative);
  static const LcUString& GetSearchDir(int kind);
  static const char* GetSearchDirName(int kind);
};
