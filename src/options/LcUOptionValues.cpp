#include "foundation/LcUError.h"
#include "foundation/LcUString.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "options/LcUOptionLock.h"
#include "serial/LcUData.h"
#include "serial/LcUName.h"

namespace {
// Indexed by type tag; tag 0 is the untyped read.
const char* const kGetFailures[] = {"Can't get Data option ",        "Can't get Float option ",
                                    "Can't get Int32 option ",       "Can't get Boolean option ",
                                    "Can't get WideString option ",  "Can't get Time option ",
                                    "Can't get LinearFloat option ", "Can't get AngularFloat option ",
                                    "Can't get Name option "};

// The value of the leaf at `path` when it has the tag (any, for tag 0).
bool Read(LcUOptionSet* set, const char* path, int32_t tag, LcUData& out, bool report) {
  int32_t i = -1;
  LcUOptionSet* holder = LcUOption::FindOption(set, path, i);
  if (i >= 0 && !holder->GetValue(i, &out) && (tag == LcUData::eNONE || out.GetTag() == tag)) return true;
  out.Clear();
  if (report)
    LcUError::PostF(LcUError::eERROR, &LcUOption::component, "%s%s", kGetFailures[tag], path ? path : "");
  return false;
}

bool Write(LcUOptionSet* set, const char* path, const LcUData& value) {
  int32_t i = -1;
  LcUOptionSet* holder = LcUOption::FindOption(set, path, i);
  return i >= 0 && LcUOption::SetOption(holder, i, value, nullptr);
}

LcUData Make(double value, int32_t tag) {
  LcUData data;
  data.SetFloat(value, tag);
  return data;
}
LcUData Make(int32_t value, int32_t) {
  LcUData data;
  data.SetInt32(value);
  return data;
}
LcUData Make(bool value, int32_t) {
  LcUData data;
  data.SetBool(value);
  return data;
}
LcUData Make(int64_t value, int32_t) {
  LcUData data;
  data.SetTime(value);
  return data;
}
LcUData Make(const char16_t* value, int32_t) {
  LcUData data;
  data.SetWString(value ? value : u"");
  return data;
}
LcUData Make(LcUName* value, int32_t) {
  LcUData data;
  data.SetName(value);
  return data;
}

double Take(const LcUData& data, double) {
  return data.GetFloat();
}
int32_t Take(const LcUData& data, int32_t) {
  return data.GetInt32();
}
bool Take(const LcUData& data, bool) {
  return data.GetBool();
}
int64_t Take(const LcUData& data, int64_t) {
  return data.GetTime();
}

void Store(const LcUData& data, LcUString& out) {
  if (data.GetWString())
    out.Assign(data.GetWString());
  else
    out.Clear();
}
void Store(const LcUData& data, LcUName*& out) {
  out = data.GetName();
  if (out) out->AddRef();
}
void Store(LcUData& data, LcUData& out) {
  out = static_cast<LcUData&&>(data);
}
}  // namespace

// The definitions, assignments and Try reads every family has.
#define TW_OPTION_FAMILY(Family, Type, tag)                                                                     \
  bool LcUOption::Define##Family(const char* path, Type value, int32_t level, uint32_t flags,                   \
                                 const char* className, LcUOptionValidator* validator) {                        \
    return DefineData(path, Make(value, tag), level, flags, className, validator);                              \
  }                                                                                                             \
  bool LcUOption::Define##Family(LcUOptionSet* set, const char* path, Type value, int32_t level, uint32_t flags, \
                                 const char* className, LcUOptionValidator* validator) {                        \
    return DefineData(set, path, Make(value, tag), level, flags, className, validator);                         \
  }                                                                                                             \
  bool LcUOption::Set##Family(const char* path, Type value) {                                                   \
    LcUOptionLock lock;                                                                                         \
    return Write(GetPresentRoot(), path, Make(value, tag));                                                     \
  }                                                                                                             \
  bool LcUOption::Set##Family(LcUOptionSet* set, const char* path, Type value) {                                \
    return Write(set, path, Make(value, tag));                                                                  \
  }

// Families whose value comes back as a number.
#define TW_OPTION_NUMBER(Family, Type, tag)                                                  \
  TW_OPTION_FAMILY(Family, Type, tag)                                                        \
  Type LcUOption::Get##Family(const char* path) {                                            \
    LcUOptionLock lock;                                                                      \
    return Get##Family(GetPresentRoot(), path);                                              \
  }                                                                                          \
  Type LcUOption::Get##Family(LcUOptionSet* set, const char* path) {                         \
    LcUData data;                                                                            \
    return Read(set, path, tag, data, true) ? Take(data, Type()) : Type();                   \
  }                                                                                          \
  bool LcUOption::TryGet##Family(const char* path, Type& out) {                              \
    LcUOptionLock lock;                                                                      \
    return TryGet##Family(GetPresentRoot(), path, out);                                      \
  }                                                                                          \
  bool LcUOption::TryGet##Family(LcUOptionSet* set, const char* path, Type& out) {           \
    LcUData data;                                                                            \
    if (!Read(set, path, tag, data, false)) return false;                                    \
    out = Take(data, Type());                                                                \
    return true;                                                                             \
  }

TW_OPTION_NUMBER(Float, double, LcUData::eFLOAT)
TW_OPTION_NUMBER(Int32, int32_t, LcUData::eINT32)
TW_OPTION_NUMBER(Boolean, bool, LcUData::eBOOL)
TW_OPTION_NUMBER(Time, int64_t, LcUData::eTIME)
TW_OPTION_NUMBER(LinearFloat, double, LcUData::eLINEAR)
TW_OPTION_NUMBER(AngularFloat, double, LcUData::eANGLE)
TW_OPTION_FAMILY(WideString, const char16_t*, LcUData::eWSTRING)
TW_OPTION_FAMILY(Name, LcUName*, LcUData::eNAME)

// Families read into an out parameter.
#define TW_OPTION_OUT(Family, Type, tag)                                     \
  bool LcUOption::Get##Family(const char* path, Type& out) {                        \
    LcUOptionLock lock;                                                             \
    return Get##Family(GetPresentRoot(), path, out);                                \
  }                                                                                 \
  bool LcUOption::Get##Family(LcUOptionSet* set, const char* path, Type& out) {     \
    LcUData data;                                                                   \
    bool found = Read(set, path, tag, data, true);                                  \
    Store(data, out);                                                               \
    return found;                                                                   \
  }                                                                                 \
  bool LcUOption::TryGet##Family(const char* path, Type& out) {                     \
    LcUOptionLock lock;                                                             \
    return TryGet##Family(GetPresentRoot(), path, out);                             \
  }                                                                                 \
  bool LcUOption::TryGet##Family(LcUOptionSet* set, const char* path, Type& out) {  \
    LcUData data;                                                                   \
    bool found = Read(set, path, tag, data, false);                                 \
    if (found) Store(data, out);                                                    \
    return found;                                                                   \
  }

TW_OPTION_OUT(WideString, LcUString, LcUData::eWSTRING)
TW_OPTION_OUT(Name, LcUName*, LcUData::eNAME)
TW_OPTION_OUT(Data, LcUData, LcUData::eNONE)

bool LcUOption::SetData(const char* path, const LcUData& value) {
  LcUOptionLock lock;
  return Write(GetPresentRoot(), path, value);
}

bool LcUOption::SetData(LcUOptionSet* set, const char* path, const LcUData& value) {
  return Write(set, path, value);
}
