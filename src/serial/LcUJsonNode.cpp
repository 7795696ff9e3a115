#include "serial/LcUJsonNode.h"

#include <cstdlib>
#include <cstring>

LcUJsonAllocate LcUJsonNode::allocate = std::malloc;
LcUJsonRelease LcUJsonNode::release = std::free;
const char* LcUJsonNode::jsonErrorPosition = nullptr;

void LcUJsonNode::SetHooks(LcUJsonAllocate allocateHook, LcUJsonRelease releaseHook) {
  allocate = allocateHook ? allocateHook : std::malloc;
  release = releaseHook ? releaseHook : std::free;
}

int32_t LcUJsonNode::TruncateInt32(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return INT32_MIN;
  return int32_t(value);
}

char* LcUJsonNode::CopyText(const char* text, size_t length) {
  char* copy = static_cast<char*>(allocate(length + 1));
  if (!copy) return nullptr;
  std::memcpy(copy, text, length);
  copy[length] = 0;
  return copy;
}

char* LcUJsonNode::CopyText(const char* text) {
  return CopyText(text, std::strlen(text));
}

void LcUJsonNode::LinkAfter(LcUJsonNode* container, LcUJsonNode*& tail, LcUJsonNode* item) {
  item->previous = tail;
  item->next = nullptr;
  if (tail)
    tail->next = item;
  else
    container->firstChild = item;
  tail = item;
}

LcUJsonNode* LcUJsonNode::NewNode(int32_t type) {
  LcUJsonNode* node = static_cast<LcUJsonNode*>(allocate(sizeof(LcUJsonNode)));
  if (!node) return nullptr;
  std::memset(static_cast<void*>(node), 0, sizeof(LcUJsonNode));
  node->type = type;
  return node;
}

LcUJsonNode* LcUJsonNode::CreateNull() {
  return NewNode(eNULL);
}
LcUJsonNode* LcUJsonNode::CreateTrue() {
  return CreateBool(true);
}
LcUJsonNode* LcUJsonNode::CreateFalse() {
  return CreateBool(false);
}
LcUJsonNode* LcUJsonNode::CreateArray() {
  return NewNode(eARRAY);
}
LcUJsonNode* LcUJsonNode::CreateObject() {
  return NewNode(eOBJECT);
}

LcUJsonNode* LcUJsonNode::CreateBool(bool value) {
  LcUJsonNode* node = NewNode(value ? eTRUE : eFALSE);
  if (node) node->intValue = value ? 1 : 0;
  return node;
}

LcUJsonNode* LcUJsonNode::CreateNumber(double value) {
  LcUJsonNode* node = NewNode(eNUMBER);
  if (!node) return nullptr;
  node->doubleValue = value;
  node->intValue = TruncateInt32(value);
  return node;
}

LcUJsonNode* LcUJsonNode::CreateString(const char* text) {
  LcUJsonNode* node = NewNode(eSTRING);
  if (!node || !text) return node;
  node->stringValue = CopyText(text);
  if (!node->stringValue) {
    release(node);
    return nullptr;
  }
  return node;
}

namespace {
// Builds an array item by item, keeping the tail so that adding is constant time.
template <typename T, typename Make>
LcUJsonNode* MakeArray(const T* values, int32_t count, Make make) {
  LcUJsonNode* array = LcUJsonNode::CreateArray();
  LcUJsonNode* tail = nullptr;
  for (int32_t i = 0; array && i < count; ++i) {
    LcUJsonNode* item = make(values[i]);
    if (!item) {
      LcUJsonNode::Delete(array);
      return nullptr;
    }
    LcUJsonNode::LinkAfter(array, tail, item);
  }
  return array;
}

LcUJsonNode* Last(const LcUJsonNode* container) {
  LcUJsonNode* item = container->firstChild;
  while (item && item->next) item = item->next;
  return item;
}

void Append(LcUJsonNode* container, LcUJsonNode* item) {
  LcUJsonNode* tail = Last(container);
  LcUJsonNode::LinkAfter(container, tail, item);
}

void Unlink(LcUJsonNode* container, LcUJsonNode* item) {
  if (item->previous) item->previous->next = item->next;
  if (item->next) item->next->previous = item->previous;
  if (container->firstChild == item) container->firstChild = item->next;
  item->next = item->previous = nullptr;
}

LcUJsonNode* FindMember(const LcUJsonNode* object, const char* name) {
  if (!object) return nullptr;
  LcUJsonNode* item = object->firstChild;
  while (item && !LcUJsonNode::NamesMatch(item->name, name)) item = item->next;
  return item;
}

LcUJsonNode* MakeReference(const LcUJsonNode* item) {
  if (!item) return nullptr;
  LcUJsonNode* ref = LcUJsonNode::NewNode(0);
  if (!ref) return nullptr;
  *ref = *item;
  ref->type |= LcUJsonNode::eREFERENCE;
  ref->name = nullptr;
  ref->next = ref->previous = nullptr;
  return ref;
}
}  // namespace

LcUJsonNode* LcUJsonNode::CreateIntArray(const int32_t* values, int32_t count) {
  return MakeArray(values, count, [](int32_t v) { return CreateNumber(v); });
}
LcUJsonNode* LcUJsonNode::CreateFloatArray(const float* values, int32_t count) {
  return MakeArray(values, count, [](float v) { return CreateNumber(v); });
}
LcUJsonNode* LcUJsonNode::CreateDoubleArray(const double* values, int32_t count) {
  return MakeArray(values, count, [](double v) { return CreateNumber(v); });
}
LcUJsonNode* LcUJsonNode::CreateStringArray(const char* const* values, int32_t count) {
  return MakeArray(values, count, [](const char* v) { return CreateString(v); });
}

bool LcUJsonNode::AddToArray(LcUJsonNode* array, LcUJsonNode* item) {
  if (!array || !item) return false;
  Append(array, item);
  return true;
}

bool LcUJsonNode::AddToObject(LcUJsonNode* object, const char* name, LcUJsonNode* item) {
  if (!object || !item) return false;
  char* copy = CopyText(name ? name : "");
  if (!copy) return false;
  if (item->name) release(item->name);
  item->name = copy;
  Append(object, item);
  return true;
}

bool LcUJsonNode::AddReferenceToArray(LcUJsonNode* array, const LcUJsonNode* item) {
  LcUJsonNode* ref = array ? MakeReference(item) : nullptr;
  if (AddToArray(array, ref)) return true;
  Delete(ref);
  return false;
}

bool LcUJsonNode::AddReferenceToObject(LcUJsonNode* object, const char* name, const LcUJsonNode* item) {
  LcUJsonNode* ref = object ? MakeReference(item) : nullptr;
  if (AddToObject(object, name, ref)) return true;
  Delete(ref);
  return false;
}

int32_t LcUJsonNode::ArraySize(const LcUJsonNode* array) {
  int32_t n = 0;
  for (const LcUJsonNode* item = array ? array->firstChild : nullptr; item; item = item->next) ++n;
  return n;
}

LcUJsonNode* LcUJsonNode::ArrayItem(const LcUJsonNode* array, int32_t index) {
  if (!array || index < 0) return nullptr;
  LcUJsonNode* item = array->firstChild;
  while (item && index-- > 0) item = item->next;
  return item;
}

bool LcUJsonNode::NamesMatch(const char* a, const char* b) {
  if (!a || !b) return a == b;
  for (;; ++a, ++b) {
    unsigned char x = static_cast<unsigned char>(*a), y = static_cast<unsigned char>(*b);
    // Lower-casing as the "C" locale does, whatever the process's locale.
    if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x + 32);
    if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y + 32);
    if (x != y) return false;
    if (!x) return true;
  }
}

LcUJsonNode* LcUJsonNode::ObjectItem(const LcUJsonNode* object, const char* name) {
  return FindMember(object, name);
}

LcUJsonNode* LcUJsonNode::DetachFromArray(LcUJsonNode* array, int32_t index) {
  LcUJsonNode* item = ArrayItem(array, index);
  if (item) Unlink(array, item);
  return item;
}

LcUJsonNode* LcUJsonNode::DetachFromObject(LcUJsonNode* object, const char* name) {
  LcUJsonNode* item = FindMember(object, name);
  if (item) Unlink(object, item);
  return item;
}

void LcUJsonNode::DeleteFromArray(LcUJsonNode* array, int32_t index) {
  Delete(DetachFromArray(array, index));
}

void LcUJsonNode::DeleteFromObject(LcUJsonNode* object, const char* name) {
  Delete(DetachFromObject(object, name));
}

namespace {
void Substitute(LcUJsonNode* container, LcUJsonNode* old, LcUJsonNode* item) {
  item->next = old->next;
  item->previous = old->previous;
  if (item->next) item->next->previous = item;
  if (item->previous)
    item->previous->next = item;
  else
    container->firstChild = item;
  old->next = old->previous = nullptr;
  LcUJsonNode::Delete(old);
}
}  // namespace

bool LcUJsonNode::ReplaceInArray(LcUJsonNode* array, int32_t index, LcUJsonNode* item) {
  LcUJsonNode* old = item ? ArrayItem(array, index) : nullptr;
  if (!old) return false;
  Substitute(array, old, item);
  return true;
}

bool LcUJsonNode::ReplaceInObject(LcUJsonNode* object, const char* name, LcUJsonNode* item) {
  LcUJsonNode* old = item ? FindMember(object, name) : nullptr;
  if (!old) return false;
  char* copy = CopyText(name ? name : "");
  if (!copy) return false;
  if (item->name) release(item->name);
  item->name = copy;
  Substitute(object, old, item);
  return true;
}

LcUJsonNode* LcUJsonNode::Duplicate(const LcUJsonNode* item, bool recurse) {
  if (!item) return nullptr;
  LcUJsonNode* copy = NewNode(item->type & ~eREFERENCE);
  if (!copy) return nullptr;
  copy->intValue = item->intValue;
  copy->doubleValue = item->doubleValue;
  if ((item->stringValue && !(copy->stringValue = CopyText(item->stringValue))) ||
      (item->name && !(copy->name = CopyText(item->name)))) {
    Delete(copy);
    return nullptr;
  }
  if (!recurse) return copy;
  LcUJsonNode* tail = nullptr;
  for (const LcUJsonNode* child = item->firstChild; child; child = child->next) {
    LcUJsonNode* childCopy = Duplicate(child, true);
    if (!childCopy) {
      Delete(copy);
      return nullptr;
    }
    LinkAfter(copy, tail, childCopy);
  }
  return copy;
}

void LcUJsonNode::Delete(LcUJsonNode* item) {
  if (!item) return;
  if (!(item->type & eREFERENCE)) {
    for (LcUJsonNode* child = item->firstChild; child;) {
      LcUJsonNode* next = child->next;
      // Large trees miss the caches: fetch the next sibling meanwhile.
      if (next) __builtin_prefetch(next);
      Delete(child);
      child = next;
    }
    if (item->stringValue) release(item->stringValue);
  }
  if (item->name) release(item->name);
  release(item);
}
