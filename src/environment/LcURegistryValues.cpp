// The typed reads and writes of LcURegistry, each over RegRead and RegWrite.
#include <cstdarg>

#include "environment/LcURegistry.h"
#include "environment/LcUSysRegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUFormatter.h"

namespace {
constexpr uint32_t kTextBufferBytes = 4000;
constexpr uint32_t kNumberBufferBytes = 128;
constexpr int kFloatWidth = 17;
constexpr int kFloatPrecision = 19;

// A narrow argument on the wide road; null stays null.
class Wide {
public:
  explicit Wide(const char* text) {
    if (!text) return;
    LcUString::MultiByteToWide(text, value);
    pointer = value.Get() ? value.Get() : u"";
  }
  operator const char16_t*() const { return pointer; }

private:
  LcUString value;
  const char16_t* pointer = nullptr;
};

// "RegGetI32 "key" "name" -> 5": " = " when the default was taken.
void LogRead(const char* operation, const char16_t* key, const char16_t* name, bool found, const char16_t* value) {
  LcUError::LogF(u"%hs \"%s\" \"%s\"%s%s\n", operation, key ? key : u"", name ? name : u"", found ? u" -> " : u" = ",
                 value);
}

template <typename T>
bool ReadExact(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t type, T& out) {
  T value;
  uint32_t size = sizeof value;
  if (!LcURegistry::RegRead(key, name, flags, type, &value, size) || size != sizeof value) return false;
  out = value;
  return true;
}

// A number as the log shows it, formatted on the stack.
struct NumberText {
  char16_t units[64];
  NumberText(const char16_t* format, ...) {
    va_list args;
    va_start(args, format);
    LcUFormatter::Format(units, 64, format, args);
    va_end(args);
  }
};

// Reads a number of one type; the default is logged and, with write-back, written.
template <typename T>
T GetNumber(const char* operation, const char16_t* format, const char16_t* key, const char16_t* name, T fallback,
            uint32_t flags, uint32_t type) {
  T value = fallback;
  bool found = ReadExact(key, name, flags, type, value);
  if (!found && (flags & LcURegistry::eREG_WRITE_BACK))
    LcURegistry::RegWrite(key, name, flags, type, &fallback, sizeof fallback);
  LogRead(operation, key, name, found, NumberText(format, value).units);
  return value;
}

// The text as stored, cut to what the fixed buffer holds.
bool ReadText(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t bufferBytes, LcUString& out) {
  char16_t buffer[kTextBufferBytes / sizeof(char16_t)];
  uint32_t size = bufferBytes;
  if (!LcURegistry::RegRead(key, name, flags, LcUSysRegistry::eTYPE_TEXT, buffer, size)) return false;
  if (size >= bufferBytes) size = bufferBytes - 2;
  buffer[size / sizeof(char16_t)] = 0;
  out.Assign(buffer);
  return true;
}

bool WriteText(const char16_t* key, const char16_t* name, const char16_t* value, uint32_t flags) {
  if (!value) return false;
  uint32_t size = uint32_t(LcUString::Len(value)) * 2 + 2;
  return LcURegistry::RegWrite(key, name, flags, LcUSysRegistry::eTYPE_TEXT, value, size);
}

void FormatFloat(double value, LcUString& out) {
  out.FormatFloatC(value, kFloatPrecision, kFloatWidth);
}
}  // namespace

int32_t LcURegistry::RegGetI32(const char16_t* key, const char16_t* name, int32_t fallback, uint32_t flags) {
  return GetNumber("RegGetI32", u"%d", key, name, fallback, flags, LcUSysRegistry::eTYPE_INT32);
}

int64_t LcURegistry::RegGetI64(const char16_t* key, const char16_t* name, int64_t fallback, uint32_t flags) {
  return GetNumber<long long>("RegGetI64", u"%lld", key, name, fallback, flags, LcUSysRegistry::eTYPE_INT64);
}

uint64_t LcURegistry::RegGetT(const char16_t* key, const char16_t* name, uint64_t fallback, uint32_t flags) {
  // 64-bit first, quietly, then 32-bit with the sign carried.
  uint64_t value = fallback;
  int32_t narrow = 0;
  bool found = ReadExact(key, name, flags | eREG_QUIET, LcUSysRegistry::eTYPE_INT64, value);
  if (!found && ReadExact(key, name, flags, LcUSysRegistry::eTYPE_INT32, narrow)) {
    value = uint64_t(int64_t(narrow));
    found = true;
  }
  if (!found && (flags & eREG_WRITE_BACK))
    RegWrite(key, name, flags, LcUSysRegistry::eTYPE_INT64, &fallback, sizeof fallback);
  LogRead("RegGetT", key, name, found, NumberText(u"%llu", (unsigned long long)value).units);
  return value;
}

double LcURegistry::RegGetF(const char16_t* key, const char16_t* name, double fallback, uint32_t flags) {
  double value = fallback;
  LcUString text;
  // Text that isn't a number counts as missing.
  bool found = ReadText(key, name, flags, kNumberBufferBytes, text) && LcUString::ToDoubleC(text.Get(), value);
  if (!found) {
    value = fallback;
    if (flags & eREG_WRITE_BACK) RegSetF(key, name, fallback, flags);
  }
  LogRead("RegGetF", key, name, found, NumberText(u"%g", value).units);
  return value;
}

bool LcURegistry::RegGetBool(const char16_t* key, const char16_t* name, bool fallback, uint32_t flags) {
  return RegGetI32(key, name, fallback ? 1 : 0, flags) == 1;
}

bool LcURegistry::RegGetA(const char16_t* key, const char16_t* name, const char* fallback, LcUStringA& out,
                          uint32_t flags) {
  LcUString text;
  if (ReadText(key, name, flags, kTextBufferBytes, text)) {
    LcUString::WideToMultiByte(text.Get(), out);
    LogRead("RegGetA", key, name, true, text.Get());
    return true;
  }
  out.Assign(fallback);
  if (fallback && (flags & eREG_WRITE_BACK)) RegSetA(key, name, fallback, flags);
  Wide shown(fallback);
  LogRead("RegGetA", key, name, false, fallback ? shown : u"(null)");
  return false;
}

bool LcURegistry::RegGetW(const char16_t* key, const char16_t* name, const char16_t* fallback, LcUString& out,
                          uint32_t flags) {
  LcUString text;
  bool found = ReadText(key, name, flags, kTextBufferBytes, text);
  if (found) {
    out.Swap(text);
  } else {
    out.Assign(fallback);
    if (fallback && (flags & eREG_WRITE_BACK)) WriteText(key, name, fallback, flags);
  }
  // The one read that shows " -> " either way.
  LogRead("RegGetW", key, name, true, out.IsEmpty() ? u"(empty)" : out.Get());
  return found;
}

bool LcURegistry::RegSetI32(const char16_t* key, const char16_t* name, int32_t value, uint32_t flags) {
  return RegWrite(key, name, flags, LcUSysRegistry::eTYPE_INT32, &value, sizeof value);
}

bool LcURegistry::RegSetI64(const char16_t* key, const char16_t* name, int64_t value, uint32_t flags) {
  return RegWrite(key, name, flags, LcUSysRegistry::eTYPE_INT64, &value, sizeof value);
}

bool LcURegistry::RegSetT(const char16_t* key, const char16_t* name, uint64_t value, uint32_t flags) {
  return RegWrite(key, name, flags, LcUSysRegistry::eTYPE_INT64, &value, sizeof value);
}

bool LcURegistry::RegSetF(const char16_t* key, const char16_t* name, double value, uint32_t flags) {
  LcUString text;
  FormatFloat(value, text);
  return WriteText(key, name, text.Get(), flags);
}

bool LcURegistry::RegSetBool(const char16_t* key, const char16_t* name, bool value, uint32_t flags) {
  return RegSetI32(key, name, value ? 1 : 0, flags);
}

bool LcURegistry::RegSetA(const char16_t* key, const char16_t* name, const char* value, uint32_t flags) {
  return WriteText(key, name, Wide(value), flags);
}

bool LcURegistry::RegSetW(const char16_t* key, const char16_t* name, const char16_t* value, uint32_t flags) {
  return WriteText(key, name, value, flags);
}

// The narrow forms.
int32_t LcURegistry::RegGetI32(const char* key, const char* name, int32_t fallback, uint32_t flags) {
  return RegGetI32(Wide(key), Wide(name), fallback, flags);
}
int64_t LcURegistry::RegGetI64(const char* key, const char* name, int64_t fallback, uint32_t flags) {
  return RegGetI64(Wide(key), Wide(name), fallback, flags);
}
uint64_t LcURegistry::RegGetT(const char* key, const char* name, uint64_t fallback, uint32_t flags) {
  return RegGetT(Wide(key), Wide(name), fallback, flags);
}
double LcURegistry::RegGetF(const char* key, const char* name, double fallback, uint32_t flags) {
  return RegGetF(Wide(key), Wide(name), fallback, flags);
}
bool LcURegistry::RegGetBool(const char* key, const char* name, bool fallback, uint32_t flags) {
  return RegGetBool(Wide(key), Wide(name), fallback, flags);
}
bool LcURegistry::RegGetA(const char* key, const char* name, const char* fallback, LcUStringA& out,
                          uint32_t flags) {
  return RegGetA(Wide(key), Wide(name), fallback, out, flags);
}
bool LcURegistry::RegGetW(const char* key, const char* name, const char16_t* fallback, LcUString& out,
                          uint32_t flags) {
  return RegGetW(Wide(key), Wide(name), fallback, out, flags);
}
bool LcURegistry::RegSetI32(const char* key, const char* name, int32_t value, uint32_t flags) {
  return RegSetI32(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetI64(const char* key, const char* name, int64_t value, uint32_t flags) {
  return RegSetI64(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetT(const char* key, const char* name, uint64_t value, uint32_t flags) {
  return RegSetT(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetF(const char* key, const char* name, double value, uint32_t flags) {
  return RegSetF(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetBool(const char* key, const char* name, bool value, uint32_t flags) {
  return RegSetBool(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetA(const char* key, const char* name, const char* value, uint32_t flags) {
  return RegSetA(Wide(key), Wide(name), value, flags);
}
bool LcURegistry::RegSetW(const char* key, const char* name, const char16_t* value, uint32_t flags) {
  return RegSetW(Wide(key), Wide(name), value, flags);
}
LcURegistryNameList* LcURegistry::ListNames(const char* key, uint32_t flags, uint32_t what) {
  return ListNames(Wide(key), flags, what);
}
