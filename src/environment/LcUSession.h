#pragma once
#include "environment/LcUSessionInfo.h"
#include "environment/LcUSessionProvider.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// Which product this is and where its settings live: from a trusted
// session file beside the program, or from the built-in defaults. Its
// start installs the registry locations and the data folder it derives.
// Set up on the start-up thread and read afterwards: no locks.
class LcUSession {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // Answers the earlier provider; an owned one being replaced is destroyed
  // and null is answered.
  static LcUSessionProvider* SetProvider(LcUSessionProvider* provider, bool owned);
  // The folder whose "session.twlic" is read; call before Initialize.
  static void SetSessionFolder(const char16_t* folder);

  // The defaults until Initialize has run.
  static const LcUSessionInfo& GetInfo();
  static const char16_t* GetProductLine();
  // The first record's value, or null.
  static const char16_t* GetValue(const char16_t* key);
  static bool HasValue(const char16_t* key, const char16_t* value);
  static const char16_t* GetSessionPath();
};
