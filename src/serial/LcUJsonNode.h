#pragma once
#include <cstddef>
#include <cstdint>

typedef void* (*LcUJsonAllocate)(size_t size);
typedef void (*LcUJsonRelease)(void* block);

// One value of a JSON tree, and the operations on trees. Nodes and their
// texts come from the process-wide allocate and release hooks.
struct LcUJsonNode {
  enum Type : int32_t {
    eFALSE = 0,
    eTRUE = 1,
    eNULL = 2,
    eNUMBER = 3,
    eSTRING = 4,
    eARRAY = 5,
    eOBJECT = 6,
    // A shallow copy: its children and string belong to the node it copies.
    eREFERENCE = 256
  };
  // Deeper texts are refused, so that nothing recurses without bound.
  enum : int32_t { eMAX_DEPTH = 1000 };

  LcUJsonNode* next;
  LcUJsonNode* previous;
  LcUJsonNode* firstChild;
  int32_t type;
  char* stringValue;
  int32_t intValue;
  double doubleValue;
  char* name;

  int32_t Kind() const { return type & 0xFF; }

  static LcUJsonAllocate allocate;
  static LcUJsonRelease release;
  // Null hooks restore malloc and free.
  static void SetHooks(LcUJsonAllocate allocateHook, LcUJsonRelease releaseHook);
  // Where the last failed parse stopped; null after a success.
  static const char* jsonErrorPosition;

  // Creation; null when memory ran out.
  static LcUJsonNode* CreateNull();
  static LcUJsonNode* CreateTrue();
  static LcUJsonNode* CreateFalse();
  static LcUJsonNode* CreateBool(bool value);
  static LcUJsonNode* CreateNumber(double value);
  // A null text makes a string node without text, which prints as nothing.
  static LcUJsonNode* CreateString(const char* text);
  static LcUJsonNode* CreateArray();
  static LcUJsonNode* CreateObject();
  static LcUJsonNode* CreateIntArray(const int32_t* values, int32_t count);
  static LcUJsonNode* CreateFloatArray(const float* values, int32_t count);
  static LcUJsonNode* CreateDoubleArray(const double* values, int32_t count);
  static LcUJsonNode* CreateStringArray(const char* const* values, int32_t count);

  // The container takes the item; false (the item untouched) on a null or
  // a failed name copy.
  static bool AddToArray(LcUJsonNode* array, LcUJsonNode* item);
  // The item's old name is released.
  static bool AddToObject(LcUJsonNode* object, const char* name, LcUJsonNode* item);
  static bool AddReferenceToArray(LcUJsonNode* array, const LcUJsonNode* item);
  static bool AddReferenceToObject(LcUJsonNode* object, const char* name, const LcUJsonNode* item);

  static int32_t ArraySize(const LcUJsonNode* array);
  static LcUJsonNode* ArrayItem(const LcUJsonNode* array, int32_t index);
  // Names compare without regard to ASCII case; the first match wins.
  static LcUJsonNode* ObjectItem(const LcUJsonNode* object, const char* name);
  static bool NamesMatch(const char* a, const char* b);

  // Detached items belong to the caller.
  static LcUJsonNode* DetachFromArray(LcUJsonNode* array, int32_t index);
  static LcUJsonNode* DetachFromObject(LcUJsonNode* object, const char* name);
  static void DeleteFromArray(LcUJsonNode* array, int32_t index);
  static void DeleteFromObject(LcUJsonNode* object, const char* name);
  // The old item is deleted; false leaves the replacement with the caller.
  static bool ReplaceInArray(LcUJsonNode* array, int32_t index, LcUJsonNode* item);
  static bool ReplaceInObject(LcUJsonNode* object, const char* name, LcUJsonNode* item);

  // A copy that is no reference, with its children when recurse is set.
  static LcUJsonNode* Duplicate(const LcUJsonNode* item, bool recurse);
  static void Delete(LcUJsonNode* item);

  // Null on failure, with jsonErrorPosition set. The full form tells where
  // the value ended and, with requireEnd, refuses anything but white space after it.
  static LcUJsonNode* Parse(const char* text);
  static LcUJsonNode* Parse(const char* text, const char** end, bool requireEnd);

  // Text from the allocate hook, to be given to the release hook; null
  // when memory ran out.
  static char* Print(const LcUJsonNode* item, bool pretty);
  // The length without the terminator, when the caller wants it.
  static char* Print(const LcUJsonNode* item, bool pretty, size_t* length);

  // Links item behind tail, or first when tail is null, and makes it the
  // new tail: appending in constant time for whoever keeps the tail.
  static void LinkAfter(LcUJsonNode* container, LcUJsonNode*& tail, LcUJsonNode* item);

  // Hook-allocated copies.
  static char* CopyText(const char* text);
  static char* CopyText(const char* text, size_t length);
  static LcUJsonNode* NewNode(int32_t type);
  // Toward zero; NaN and values beyond the type give its lowest value, as
  // the processor's own conversion does.
  static int32_t TruncateInt32(double value);
};
