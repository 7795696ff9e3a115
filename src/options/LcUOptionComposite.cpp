#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "options/LcUOptionLock.h"

namespace {
const char* const kColour[] = {"red", "green", "blue"};
const char* const kPoint[] = {"x", "y", "z"};

// A compound set of `count` members of one floating kind, defined as one
// atomic value.
bool DefineCompound(LcUOptionSet* parent, const char* path, const char* const* members, const double* values,
                    int32_t count, int32_t tag, const char* className, int32_t level, uint32_t flags,
                    LcUOptionValidator* validator) {
  LcUExOptionSet* set = new LcUExOptionSet(LcUOptionSet::eCOMPOUND);
  if (!set) return false;
  set->AddRef();
  LcUData value;
  for (int32_t k = 0; k < count; ++k) {
    value.SetFloat(values[k], tag);
    LcUOption::DefineData(set, members[k], value, level, 0, nullptr, validator);
  }
  flags |= LcUOptionSet::eATOMIC;
  bool defined = parent ? LcUOption::DefineSet(parent, path, set, level, flags, className)
                        : LcUOption::DefineSet(path, set, level, flags, className);
  set->Release();
  return defined;
}

bool ReadCompound(LcUOptionSet* set, const char* path, const char* const* members, int32_t count,
                  double* values) {
  LcUOptionSet* compound = LcUOption::GetSet(set, path);
  LcUData value;
  for (int32_t k = 0; k < count; ++k) {
    if (!compound || !LcUOption::TryGetData(compound, members[k], value) || !LcUData::IsFloating(value.GetTag()))
      return false;
    values[k] = value.GetFloat();
  }
  return true;
}

bool WriteCompound(LcUOptionSet* set, const char* path, const char* const* members, int32_t count,
                   const double* values, int32_t tag) {
  LcUOptionSet* compound = LcUOption::GetSet(set, path);
  if (!compound) return false;
  bool written = true;
  LcUData value;
  for (int32_t k = 0; k < count; ++k) {
    value.SetFloat(values[k], tag);
    written = LcUOption::SetData(compound, members[k], value) && written;
  }
  return written;
}
}  // namespace

bool LcUOption::DefineColour(LcUOptionSet* parent, const char* path, const double rgb[3], int32_t level,
                             uint32_t flags, LcUOptionValidator* validator) {
  return DefineCompound(parent, path, kColour, rgb, 3, LcUData::eFLOAT, "color", level, flags, validator);
}

bool LcUOption::DefinePoint2(LcUOptionSet* parent, const char* path, const double xy[2], int32_t level,
                             uint32_t flags, LcUOptionValidator* validator) {
  return DefineCompound(parent, path, kPoint, xy, 2, LcUData::eLINEAR, "point2d", level, flags, validator);
}

bool LcUOption::DefinePoint3(LcUOptionSet* parent, const char* path, const double xyz[3], int32_t level,
                             uint32_t flags, LcUOptionValidator* validator) {
  return DefineCompound(parent, path, kPoint, xyz, 3, LcUData::eLINEAR, "point3d", level, flags, validator);
}

bool LcUOption::GetColour(LcUOptionSet* set, const char* path, double rgb[3]) {
  return ReadCompound(set, path, kColour, 3, rgb);
}

bool LcUOption::GetColour(const char* path, double rgb[3]) {
  LcUOptionLock lock;
  return ReadCompound(GetPresentRoot(), path, kColour, 3, rgb);
}

bool LcUOption::SetColour(LcUOptionSet* set, const char* path, const double rgb[3]) {
  return WriteCompound(set, path, kColour, 3, rgb, LcUData::eFLOAT);
}

bool LcUOption::SetColour(const char* path, const double rgb[3]) {
  LcUOptionLock lock;
  return WriteCompound(GetPresentRoot(), path, kColour, 3, rgb, LcUData::eFLOAT);
}

bool LcUOption::GetPoint2(LcUOptionSet* set, const char* path, double xy[2]) {
  return ReadCompound(set, path, kPoint, 2, xy);
}

bool LcUOption::GetPoint2(const char* path, double xy[2]) {
  LcUOptionLock lock;
  return ReadCompound(GetPresentRoot(), path, kPoint, 2, xy);
}

bool LcUOption::SetPoint2(LcUOptionSet* set, const char* path, const double xy[2]) {
  return WriteCompound(set, path, kPoint, 2, xy, LcUData::eLINEAR);
}

bool LcUOption::SetPoint2(const char* path, const double xy[2]) {
  LcUOptionLock lock;
  return WriteCompound(GetPresentRoot(), path, kPoint, 2, xy, LcUData::eLINEAR);
}

bool LcUOption::GetPoint3(LcUOptionSet* set, const char* path, double xyz[3]) {
  return ReadCompound(set, path, kPoint, 3, xyz);
}

bool LcUOption::GetPoint3(const char* path, double xyz[3]) {
  LcUOptionLock lock;
  return ReadCompound(GetPresentRoot(), path, kPoint, 3, xyz);
}

bool LcUOption::SetPoint3(LcUOptionSet* set, const char* path, const double xyz[3]) {
  return WriteCompound(set, path, kPoint, 3, xyz, LcUData::eLINEAR);
}

bool LcUOption::SetPoint3(const char* path, const double xyz[3]) {
  LcUOptionLock lock;
  return WriteCompound(GetPresentRoot(), path, kPoint, 3, xyz, LcUData::eLINEAR);
}

void LcUOption::ResetColourToDefaults(const char* path) {
  LcUOptionLock lock;
  LcUStringA member;
  for (const char* name : kColour) {
    member.Format("%s.%s", path, name);
    ResetToDefaults(member.Get());
  }
}
