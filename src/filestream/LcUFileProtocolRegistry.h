#pragma once
#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"
#include "serial/LcUDict.h"

class LcUFileProtocol;

// Maps a URL's scheme to the protocol that serves it; a URL without a
// scheme goes to the default. It owns no protocol: whoever registers one
// deletes it. There is no lock: protocols are registered before any file
// opens and unregistered after the last closes.
class LcUFileProtocolRegistry {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Made at first use.
  static LcUFileProtocolRegistry* GetInstance();

  // Case as given; a null or empty scheme that isn't registered finds the
  // default.
  LcUFileProtocol* Find(const char16_t* scheme);
  // Null for a text that isn't a URL or a path.
  LcUFileProtocol* FindForURL(const char16_t* url);
  // False when Find already gives a protocol for the scheme.
  bool Register(const char16_t* scheme, LcUFileProtocol* protocol);
  // The protocol of scheme, which must be registered, becomes the default.
  bool SetDefault(const char16_t* scheme);
  // The protocol removed, or null.
  LcUFileProtocol* Unregister(const char16_t* scheme);

private:
  LcUDict<LcUString, LcUFileProtocol*> protocols;
  LcUFileProtocol* defaultProtocol = nullptr;
};
