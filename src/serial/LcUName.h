#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

class LcUChecksum;
class LcUNameTable;
class LcUStreamReader;
class LcUStreamWriter;

// A name with two faces: the internal name, a stable 7-bit resource key, and
// the user name, its localised text. Where the resources know the key, their
// text wins over what a caller gives. Counted: a release that finds a count
// below 2 frees it.
class LcUName : public LcUDeletable {
public:
  // The predefined names, keys of the same spelling.
  enum Predefined : int32_t {
    eSCENE_BASE_USER_NAME, eSCENE_BASE_CLASS_USER_NAME, eSCENE_BASE_CLASS_NAME, eNODE, eMATERIAL, eTRANSFORM,
    eURL_ATTRIBUTE, eXREF_ATTRIBUTE, eTEXT_ATTRIBUTE_TEXT, ePARTITION_FILENAME, eUNIT, eURL_CATEGORY_HYPERLINK,
    eURL_CATEGORY_TAG, eURL_CATEGORY_USER_DEFINED, eNODE_HIDDEN, eNODE_REQUIRED, ePARTITION_SOURCE_FILENAME,
    eNODE_LAYER, eNODE_MATERIAL, eNODE_SOURCE_FILE, eNODE_ICON, eXREF_ATTRIBUTE_PATH, eNODE_GUID, ePREDEFINED_COUNT
  };
  // How a stream writes and reads a name by reference; the object stream
  // layer installs them. Without them a name fails the stream with code 16.
  typedef bool (*WriteHook)(LcUStreamWriter& stream, const LcUName* name);
  typedef LcUName* (*ReadHook)(LcUStreamReader& stream);

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  LcUName(const char* internal, const char16_t* user);
  explicit LcUName(const char16_t* user);
  // The key is internal, ":" and the index.
  LcUName(const char* internal, int32_t index, const char16_t* user);

  void AddRef() { ++refCount; }
  void Release();
  int32_t GetRefCount() const { return refCount; }

  const char16_t* GetUserName() const { return userName.Get(); }
  const char* GetInternalName() const { return internalName.Get(); }
  // Resolved as at construction; an unknown key keeps the user name.
  void SetInternalName(const char* internal);
  // Nothing happens when the resources know this name's key.
  void SetUserName(const char16_t* text);
  void Relocalise();

  // Both faces equal; null equals null.
  static bool Equal(const LcUName* a, const LcUName* b);
  uint32_t Hash() const { return Hash(userName.Get(), internalName.Get()); }
  static uint32_t Hash(const char16_t* user, const char* internal);

  // "base:N": false unless digits follow a ":" that is neither first nor last.
  static bool ParseIndexedName(const char* internal, int32_t& index, LcUStringA& base);
  void GetBaseName(LcUStringA& out) const;
  int32_t GetIndex() const;
  static LcUName* MakeIndexedName(const char* base, int32_t index);
  static void FormatIndexedName(const char* base, int32_t index, LcUStringA& out);

  // Null for a value out of the enumeration.
  static const char* PredefinedKey(int32_t value);
  // A new name, or the table's shared one; null for an unknown value.
  static LcUName* FindPredefined(int32_t value, LcUNameTable* table);
  // `out` stays null when the resources lack the key.
  static void GetPredefinedText(int32_t value, LcUString& out);

  void AddToChecksum(LcUChecksum& checksum) const;

  static void SetStreamHooks(WriteHook write, ReadHook read);
  static bool WriteToStream(LcUStreamWriter& stream, const LcUName* name);
  static LcUName* ReadFromStream(LcUStreamReader& stream);

private:
  friend class LcUNameTable;
  ~LcUName() override = default;
  void Resolve(const char* internal, const char16_t* user);

  int32_t refCount = 1;
  LcUString userName;
  LcUStringA internalName;
};
