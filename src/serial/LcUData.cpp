#include "serial/LcUData.h"

#include <cstring>

#include "foundation/LcUChecksum.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"
#include "serial/LcUName.h"

LcUComponent LcUData::component;

namespace {
template <typename Unit>
Unit* CopyText(const Unit* text) {
  if (!text) return nullptr;
  size_t length = 0;
  while (text[length]) ++length;
  Unit* copy = static_cast<Unit*>(LcUMemory::Alloc((length + 1) * sizeof(Unit), alignof(Unit), 0));
  if (copy) std::memcpy(copy, text, (length + 1) * sizeof(Unit));
  return copy;
}

template <typename Unit>
void FreeText(Unit* text) {
  if (!text) return;
  size_t length = 0;
  while (text[length]) ++length;
  LcUMemory::Free(text, (length + 1) * sizeof(Unit), alignof(Unit));
}

uint32_t VectorSize(int32_t tag) {
  return tag == LcUData::eVECTOR3 ? 3 : 2;
}
}  // namespace

bool LcUData::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUData") != 1) return true;
  LcUName::Initialize();
  return true;
}

void LcUData::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUName::Terminate();
}

LcUData::LcUData(const LcUData& other) {
  CopyFrom(other);
}

LcUData::LcUData(LcUData&& other) noexcept : tag(other.tag), value(other.value) {
  other.tag = eNONE;
  other.value = {};
}

LcUData& LcUData::operator=(const LcUData& other) {
  if (this != &other) {
    LcUData copy(other);
    *this = static_cast<LcUData&&>(copy);
  }
  return *this;
}

LcUData& LcUData::operator=(LcUData&& other) noexcept {
  if (this != &other) {
    Clear();
    tag = other.tag;
    value = other.value;
    other.tag = eNONE;
    other.value = {};
  }
  return *this;
}

void LcUData::CopyFrom(const LcUData& other) {
  switch (other.tag) {
    case eWSTRING: SetWString(other.value.wide); break;
    case eSTRING: SetString(other.value.narrow); break;
    case eNAME: SetName(other.value.name); break;
    case eVECTOR3:
    case eVECTOR2: SetVector(other.value.vector, other.tag); break;
    default:
      tag = other.tag;
      value = other.value;
      break;
  }
}

void LcUData::Clear() {
  switch (tag) {
    case eWSTRING: FreeText(value.wide); break;
    case eSTRING: FreeText(value.narrow); break;
    case eNAME:
      if (value.name) value.name->Release();
      break;
    case eVECTOR3:
    case eVECTOR2:
      if (value.vector) LcUMemory::Free(value.vector, VectorSize(tag) * sizeof(double), alignof(double));
      break;
    default: break;
  }
  tag = eNONE;
  value = {};
}

void LcUData::SetFloat(double number, int32_t floatingTag) {
  Clear();
  tag = IsFloating(floatingTag) ? floatingTag : eFLOAT;
  value.number = number;
}

void LcUData::SetInt32(int32_t integer) {
  Clear();
  tag = eINT32;
  value.integer = integer;
}

void LcUData::SetBool(bool truth) {
  Clear();
  tag = eBOOL;
  value.integer = truth ? 1 : 0;
}

void LcUData::SetWString(const char16_t* text) {
  char16_t* copy = CopyText(text);
  Clear();
  tag = eWSTRING;
  value.wide = copy;
}

void LcUData::SetTime(int64_t seconds) {
  Clear();
  tag = eTIME;
  value.time = seconds;
}

void LcUData::SetName(LcUName* name) {
  if (name) name->AddRef();
  Clear();
  tag = eNAME;
  value.name = name;
}

void LcUData::SetString(const char* text) {
  char* copy = CopyText(text);
  Clear();
  tag = eSTRING;
  value.narrow = copy;
}

void LcUData::SetVector(const double* values, int32_t vectorTag) {
  uint32_t count = VectorSize(vectorTag);
  double* vector = static_cast<double*>(LcUMemory::Alloc(count * sizeof(double), alignof(double), 0));
  Clear();
  if (!vector) return;
  std::memcpy(vector, values, count * sizeof(double));
  tag = vectorTag;
  value.vector = vector;
}

void LcUData::SetVector3(double x, double y, double z) {
  const double values[3] = {x, y, z};
  SetVector(values, eVECTOR3);
}

void LcUData::SetVector2(double x, double y) {
  const double values[2] = {x, y};
  SetVector(values, eVECTOR2);
}

bool LcUData::Equal(const LcUData& a, const LcUData& b) {
  if (a.tag != b.tag || a.tag < 0 || a.tag >= eTAG_COUNT) return false;
  switch (a.tag) {
    case eNONE: return true;
    case eINT32:
    case eBOOL: return a.value.integer == b.value.integer;
    case eTIME: return a.value.time == b.value.time;
    case eWSTRING:
      if (!a.value.wide || !b.value.wide) return a.value.wide == b.value.wide;
      return LcUString::Equal(a.value.wide, b.value.wide);
    case eSTRING:
      if (!a.value.narrow || !b.value.narrow) return a.value.narrow == b.value.narrow;
      return std::strcmp(a.value.narrow, b.value.narrow) == 0;
    case eNAME: return LcUName::Equal(a.value.name, b.value.name);
    case eVECTOR3:
    case eVECTOR2:
      for (uint32_t i = 0; i < VectorSize(a.tag); ++i)
        if (!(a.value.vector[i] == b.value.vector[i])) return false;
      return true;
    default: return a.value.number == b.value.number;
  }
}

bool LcUData::EqualNumeric(const LcUData& a, const LcUData& b) {
  return Equal(a, b) || (IsFloating(a.tag) && IsFloating(b.tag) && a.value.number == b.value.number);
}

void LcUData::AddToChecksum(LcUChecksum& checksum) const {
  checksum.AddInt32s(&tag, 1);
  switch (tag) {
    case eINT32:
    case eBOOL: checksum.AddInt32s(&value.integer, 1); break;
    case eTIME: checksum.AddInt64s(&value.time, 1); break;
    case eWSTRING: checksum.AddWideString(value.wide); break;
    case eSTRING: checksum.AddString(value.narrow); break;
    case eNAME:
      if (value.name) value.name->AddToChecksum(checksum);
      break;
    case eVECTOR3:
    case eVECTOR2: checksum.AddDoubles(value.vector, VectorSize(tag)); break;
    case eNONE: break;
    default: checksum.AddDoubles(&value.number, 1); break;
  }
}
