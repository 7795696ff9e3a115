#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"
#include "foundation/LcUStringA.h"
#include "serial/LcUVector.h"

class LcUData;
class LcUName;
class LcUString;

// One level of the option tree. Counted from 0: the record or root that
// holds a set holds its count, and the last release deletes it.
class LcUOptionSet : public LcUDeletable {
public:
  enum SetFlags : uint32_t {
    eCOMPOUND = 1,        // a fixed group standing for one value
    eARRAY = 2,           // members named by their decimal index
    eALWAYS_VISIBLE = 4,
    eTRANSIENT = 8,       // never written out
    eINHERIT_COMPOUND = 256
  };
  enum DefineFlags : uint32_t { eATOMIC = 2, ePLAIN_TEXT_KEY = 4, eHIDDEN = 8 };
  enum State : uint32_t { eMARKED = 16, eDEFAULT = 32 };

  void AddRef() { ++refCount; }
  void Release() {
    if (--refCount <= 0) delete this;
  }

  virtual bool HasVisibleOptions(int32_t level);
  virtual bool HasVisibleChildren(int32_t level);
  // The resources' text for the option, or null.
  virtual const char16_t* GetUserName(int32_t i);
  // The choices of a Name value, counted names appended to `list`; 0 for any other value.
  virtual int32_t GetEnumValues(int32_t i, LcUVector<LcUName*>& list);
  ~LcUOptionSet() override = default;
  virtual uint32_t GetFlags() = 0;
  virtual int32_t GetCount() = 0;
  virtual const char* GetName(int32_t i) = 0;
  virtual const char* GetClass(int32_t i) = 0;
  virtual uint32_t GetDefineFlags(int32_t i) = 0;
  virtual uint32_t GetState(int32_t i) = 0;
  virtual void SetState(int32_t i, uint32_t state) = 0;
  virtual int32_t GetLevel(int32_t i) = 0;
  virtual bool IsDisabled(int32_t i, void* context) = 0;
  virtual bool GetRange(int32_t i, LcUData* minOut, LcUData* maxOut) = 0;
  // Copies the value into `out` when there is one; returns the child set.
  virtual LcUOptionSet* GetValue(int32_t i, LcUData* out) = 0;
  virtual bool SetValue(int32_t i, const LcUData& value, LcUString* error) = 0;
  virtual void OnChange() = 0;
  virtual LcUOptionSet* GetDefaultSet();
  virtual const char* GetSetClass();
  virtual bool Insert(int32_t i);
  virtual bool Remove(int32_t i);

  bool IsArray() { return (GetFlags() & eARRAY) != 0; }
  bool IsAtomicChild(int32_t i);
  // The dotted path from the root; empty for a root.
  void GetPath(LcUStringA& out) const;
  // Raises changeCount here and in every set above; a changed array's own
  // record stops counting as default.
  void NoteChange();
  // The index of the record whose name is [name, name + length), or -1.
  int32_t Find(const char* name, int32_t length);
  int32_t Find(const char* name);

  int32_t refCount = 0;
  LcUOptionSet* parent = nullptr;
  LcUStringA name;
  int32_t changeCount = 1;
};
