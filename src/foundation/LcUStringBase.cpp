#include "foundation/LcUStringBase.h"

#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <utility>

#include "foundation/LcUFormatter.h"
#include "foundation/LcUStringMemory.h"

namespace {
constexpr int32_t kFormatLimit = 0x6400000;

// Number parsing goes through the narrow C library for both widths; a unit
// beyond ASCII becomes DEL, which no number parser accepts, so end positions
// map one to one.
template <typename Unit>
struct NarrowCopy {
  char stack[128];
  char* text = stack;
  explicit NarrowCopy(const Unit* source, int32_t n) {
    if (n >= int32_t(sizeof(stack))) text = static_cast<char*>(std::malloc(size_t(n) + 1));
    if (!text) return;
    for (int32_t i = 0; i < n; ++i) {
      auto u = static_cast<std::make_unsigned_t<Unit>>(source[i]);
      text[i] = u < 0x80 ? char(u) : '\x7f';
    }
    text[n] = 0;
  }
  ~NarrowCopy() {
    if (text != stack) std::free(text);
  }
  NarrowCopy(const NarrowCopy&) = delete;
  NarrowCopy& operator=(const NarrowCopy&) = delete;
};

// Switches LC_NUMERIC to "C" for its lifetime.
class NumericLocaleC {
public:
  NumericLocaleC() {
    const char* current = std::setlocale(LC_NUMERIC, nullptr);
    std::snprintf(saved_, sizeof(saved_), "%s", current ? current : "C");
    std::setlocale(LC_NUMERIC, "C");
  }
  ~NumericLocaleC() { std::setlocale(LC_NUMERIC, saved_); }

private:
  char saved_[256];
};

bool IsSpaceUnit(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool IsSpaceUnit(char16_t c) { return std::iswspace(static_cast<wint_t>(c)) != 0; }
char UpperUnit(char c) { return char(std::toupper(static_cast<unsigned char>(c))); }
char16_t UpperUnit(char16_t c) { return char16_t(std::towupper(static_cast<wint_t>(c))); }
char LowerUnit(char c) { return char(std::tolower(static_cast<unsigned char>(c))); }
char16_t LowerUnit(char16_t c) { return char16_t(std::towlower(static_cast<wint_t>(c))); }

// The narrow hash adds bytes sign-extended, the wide one units zero-extended.
uint32_t HashTerm(char c) { return uint32_t(int32_t(static_cast<signed char>(c))); }
uint32_t HashTerm(char16_t c) { return uint32_t(c); }

// The narrow filter compares signed, so it also drops every byte of 128 or above.
bool IsControl(char c) {
  signed char s = static_cast<signed char>(c);
  return s < 32 && s != 9 && s != 10 && s != 13;
}
bool IsControl(char16_t c) { return c < 32 && c != 9 && c != 10 && c != 13; }

// The narrow form accepts any fully consumed number; the wide form also
// refuses a zero unless the text starts with the digit zero.
bool AcceptInt(const char*, const char* text, const char* end, long) {
  return end != text && *end == 0;
}
bool AcceptInt(const char16_t*, const char* text, const char* end, long value) {
  return *end == 0 && (value != 0 || text[0] == '0');
}

// The text between leading and trailing white space; false when nothing is left.
template <typename Unit>
bool TrimmedRange(const Unit* text, int32_t& start, int32_t& count) {
  if (!text) return false;
  int32_t end = 0;
  while (text[end]) ++end;
  start = 0;
  while (start < end && IsSpaceUnit(text[start])) ++start;
  while (end > start && IsSpaceUnit(text[end - 1])) --end;
  count = end - start;
  return count > 0;
}

template <typename Unit>
void WidenFormat(const char* narrow, Unit* out) {
  while ((*out++ = Unit(*narrow++)) != 0) {
  }
}
}  // namespace

template <typename Unit>
LcUStringBase<Unit>::LcUStringBase(const Unit* text) {
  Assign(text);
}

template <typename Unit>
LcUStringBase<Unit>::LcUStringBase(const Unit* text, int32_t count) {
  Assign(text, count);
}

template <typename Unit>
LcUStringBase<Unit>::LcUStringBase(const LcUStringBase& other) {
  if (other.buffer) Assign(other.buffer, other.length);
}

template <typename Unit>
LcUStringBase<Unit>::LcUStringBase(LcUStringBase&& other) noexcept {
  Swap(other);
}

template <typename Unit>
LcUStringBase<Unit>::~LcUStringBase() {
  Free();
}

template <typename Unit>
LcUStringBase<Unit>& LcUStringBase<Unit>::operator=(const LcUStringBase& other) {
  if (this != &other) {
    if (other.buffer)
      Assign(other.buffer, other.length);
    else
      Free();
  }
  return *this;
}

template <typename Unit>
LcUStringBase<Unit>& LcUStringBase<Unit>::operator=(LcUStringBase&& other) noexcept {
  if (this != &other) {
    Free();
    Swap(other);
  }
  return *this;
}

template <typename Unit>
LcUStringBase<Unit>& LcUStringBase<Unit>::operator=(const Unit* text) {
  Assign(text);
  return *this;
}

template <typename Unit>
void LcUStringBase<Unit>::Free() {
  if (buffer) LcUStringMemory::Free(buffer, uint64_t(capacity) * sizeof(Unit));
  buffer = nullptr;
  length = 0;
  capacity = 0;
}

// Replaces the buffer by a fresh one of at least `units` units, contents lost.
template <typename Unit>
bool LcUStringBase<Unit>::Grow(int32_t units) {
  Free();
  uint64_t granted = 0;
  void* block = LcUStringMemory::Alloc(uint64_t(units) * sizeof(Unit), &granted);
  if (!block) return false;
  buffer = static_cast<Unit*>(block);
  capacity = int32_t(granted / sizeof(Unit));
  buffer[0] = 0;
  return true;
}

template <typename Unit>
int32_t LcUStringBase<Unit>::Reserve(int32_t n) {
  if (buffer && n < 0) return 0;
  if (buffer && n < capacity) return capacity;
  if (n < 0) n = 0;
  uint64_t granted = 0;
  Unit* fresh = static_cast<Unit*>(LcUStringMemory::Alloc((uint64_t(n) + 1) * sizeof(Unit), &granted));
  if (!fresh) {
    Free();
    return 0;
  }
  int32_t freshCapacity = int32_t(granted / sizeof(Unit));
  bool hadBuffer = buffer != nullptr;
  int32_t keep = length;
  if (hadBuffer) {
    std::memcpy(fresh, buffer, (size_t(length) + 1) * sizeof(Unit));
    LcUStringMemory::Free(buffer, uint64_t(capacity) * sizeof(Unit));
  }
  buffer = fresh;
  capacity = freshCapacity;
  length = keep;
  buffer[n] = 0;
  buffer[capacity - 1] = 0;
  if (!hadBuffer) buffer[0] = 0;
  return capacity;
}

template <typename Unit>
void LcUStringBase<Unit>::SetLength(int32_t n) {
  if (!buffer) {
    length = 0;
    return;
  }
  // A terminator "at index capacity" would lie one past the buffer; it goes
  // on the last unit instead, which keeps length below capacity.
  int32_t last = capacity - 1;
  if (n == -1) {
    int32_t i = 0;
    while (i < last && buffer[i] != 0) ++i;
    buffer[i] = 0;
    length = i;
    return;
  }
  if (n < 0) n = 0;
  if (n > last) n = last;
  buffer[n] = 0;
  length = n;
}

template <typename Unit>
void LcUStringBase<Unit>::Assign(const Unit* text) {
  Assign(text, text ? Len(text) : 0);
}

template <typename Unit>
void LcUStringBase<Unit>::Assign(const Unit* text, int32_t count) {
  if (text && text == buffer) return;
  if (!text) {
    Free();
    return;
  }
  if (count < 0) count = Len(text);
  if (!buffer || count >= capacity) {
    if (!Grow(count + 1)) return;
  }
  std::memmove(buffer, text, size_t(count) * sizeof(Unit));
  buffer[count] = 0;
  length = count;
}

template <typename Unit>
void LcUStringBase<Unit>::Append(const Unit* text) {
  if (text) Append(text, Len(text));
}

template <typename Unit>
void LcUStringBase<Unit>::Append(const Unit* text, int32_t count) {
  if (!text || count <= 0) {
    if (!buffer && text) Clear();
    return;
  }
  int32_t need = length + count;
  if (!buffer || need >= capacity) {
    LcUStringBase grown;
    if (grown.Reserve(need) == 0) return;
    if (buffer) std::memcpy(grown.buffer, buffer, size_t(length) * sizeof(Unit));
    std::memcpy(grown.buffer + length, text, size_t(count) * sizeof(Unit));
    grown.buffer[need] = 0;
    grown.length = need;
    Swap(grown);
    return;
  }
  std::memmove(buffer + length, text, size_t(count) * sizeof(Unit));
  buffer[need] = 0;
  length = need;
}

template <typename Unit>
void LcUStringBase<Unit>::Append(Unit unit) {
  Append(&unit, 1);
}

template <typename Unit>
void LcUStringBase<Unit>::Swap(LcUStringBase& other) {
  std::swap(buffer, other.buffer);
  std::swap(length, other.length);
  std::swap(capacity, other.capacity);
}

template <typename Unit>
void LcUStringBase<Unit>::Clear() {
  if (!buffer && !Grow(int32_t(4 / sizeof(Unit)))) return;
  buffer[0] = 0;
  length = 0;
}

template <typename Unit>
void LcUStringBase<Unit>::SetAt(int32_t index, Unit unit) {
  if (!buffer || index < 0 || index >= capacity - 1) return;
  buffer[index] = unit;
  if (unit == 0) SetLength(-1);
}

template <typename Unit>
int32_t LcUStringBase<Unit>::Find(const Unit* text, int32_t start) const {
  if (!buffer || start < 0 || start > length) return -1;
  const Unit* hit = FindSubstring(buffer + start, text);
  return hit ? int32_t(hit - buffer) : -1;
}

template <typename Unit>
int32_t LcUStringBase<Unit>::FindChar(Unit unit, int32_t start) const {
  if (!buffer || start < 0) return -1;
  for (int32_t i = start; i < length; ++i)
    if (buffer[i] == unit) return i;
  return -1;
}

template <typename Unit>
void LcUStringBase<Unit>::ToUpper() {
  for (int32_t i = 0; i < length; ++i) buffer[i] = UpperUnit(buffer[i]);
}

template <typename Unit>
void LcUStringBase<Unit>::ToLower() {
  for (int32_t i = 0; i < length; ++i) buffer[i] = LowerUnit(buffer[i]);
}

template <typename Unit>
void LcUStringBase<Unit>::TrimTrailing() {
  while (length > 0 && IsSpaceUnit(buffer[length - 1])) buffer[--length] = 0;
}

template <typename Unit>
void LcUStringBase<Unit>::TrimTrailing(const Unit* set) {
  if (!set) return;
  while (length > 0) {
    const Unit* s = set;
    while (*s && *s != buffer[length - 1]) ++s;
    if (!*s) break;
    buffer[--length] = 0;
  }
}

template <typename Unit>
void LcUStringBase<Unit>::Trim() {
  TrimTrailing();
  int32_t lead = 0;
  while (lead < length && IsSpaceUnit(buffer[lead])) ++lead;
  if (lead == 0) return;
  std::memmove(buffer, buffer + lead, size_t(length - lead + 1) * sizeof(Unit));
  length -= lead;
}

template <typename Unit>
int32_t LcUStringBase<Unit>::Replace(const Unit* from, const Unit* to, int32_t start, bool all) {
  if (!from || !*from || !buffer || start < 0 || start >= length) return 0;
  int32_t hit = Find(from, start);
  if (hit < 0) return 0;
  int32_t fromLength = Len(from);
  int32_t toLength = to ? Len(to) : 0;
  LcUStringBase fresh;
  fresh.Clear();
  int32_t pos = 0;
  do {
    fresh.Append(buffer + pos, hit - pos);
    fresh.Append(to, toLength);
    pos = hit + fromLength;
    hit = all ? Find(from, pos) : -1;
  } while (hit >= 0);
  fresh.Append(buffer + pos, length - pos);
  Swap(fresh);
  return 1;
}

template <typename Unit>
int32_t LcUStringBase<Unit>::ReplaceRange(int32_t from, int32_t to, const Unit* text) {
  if (!buffer || from < 0 || to < from || to > length) return 0;
  LcUStringBase fresh;
  fresh.Clear();
  fresh.Append(buffer, from);
  fresh.Append(text);
  fresh.Append(buffer + to, length - to);
  Swap(fresh);
  return 1;
}

template <typename Unit>
bool LcUStringBase<Unit>::Format(const Unit* format, ...) {
  va_list args;
  va_start(args, format);
  bool ok = FormatV(format, args);
  va_end(args);
  return ok;
}

template <typename Unit>
bool LcUStringBase<Unit>::FormatV(const Unit* format, va_list args) {
  if (!format) {
    Free();
    return false;
  }
  Reserve(100);
  while (buffer) {
    va_list attempt;
    va_copy(attempt, args);
    int32_t needed = LcUFormatter::Format(buffer, capacity, format, attempt);
    va_end(attempt);
    SetLength(-1);
    // Past the limit the truncated text stands, without a report.
    if ((needed >= 0 && needed < capacity) || capacity > kFormatLimit) break;
    Reserve(capacity);
  }
  return buffer != nullptr;
}

template <typename Unit>
void LcUStringBase<Unit>::FormatFloatC(double value, int precision, int width) {
  char narrow[48];
  Unit format[48];
  std::snprintf(narrow, sizeof(narrow), "%%%d.%df", width, precision);
  WidenFormat(narrow, format);
  NumericLocaleC c;
  Format(format, value);
}

template <typename Unit>
void LcUStringBase<Unit>::FormatFixed(double value, int decimals, bool adaptive) {
  int precision = decimals;
  bool moved = false;
  double magnitude = std::fabs(value);
  if (adaptive && magnitude > 1e-14) {
    double threshold = 1.0;
    for (int i = 0; i < decimals + 1; ++i) threshold *= 0.1;
    const int bound = 20 - decimals;
    while (precision < bound && threshold > magnitude) {
      ++precision;
      threshold *= 0.1;
      moved = true;
    }
    if (moved) precision += decimals;
  }
  char narrow[48];
  Unit format[48];
  std::snprintf(narrow, sizeof(narrow), "%%.%df", precision);
  WidenFormat(narrow, format);
  Format(format, value);
  if (!moved) return;
  for (int i = 0; i < decimals && length > 0 && buffer[length - 1] == '0'; ++i) buffer[--length] = 0;
}

template <typename Unit>
int32_t LcUStringBase<Unit>::Len(const Unit* text) {
  if (!text) return 0;
  const Unit* p = text;
  while (*p) ++p;
  return int32_t(p - text);
}

template <typename Unit>
uint32_t LcUStringBase<Unit>::Hash(const Unit* text) {
  uint32_t h = 0;
  if (text)
    for (; *text; ++text) h = h * 5 + HashTerm(*text);
  return h;
}

template <typename Unit>
bool LcUStringBase<Unit>::Equal(const Unit* a, const Unit* b) {
  if (a == b) return true;
  if (!a || !b) return false;
  if (*a != *b) return false;
  while (*a && *a == *b) ++a, ++b;
  return *a == *b;
}

template <typename Unit>
bool LcUStringBase<Unit>::Equal(const Unit* a, const Unit* b, int32_t count) {
  if (a == b) return true;
  if (!a || !b) return false;
  if (count <= 0) return true;
  if (*a != *b) return false;
  for (int32_t i = 0; i < count; ++i) {
    if (a[i] != b[i]) return false;
    if (a[i] == 0) break;
  }
  return true;
}

template <typename Unit>
int LcUStringBase<Unit>::Compare(const Unit* a, const Unit* b) {
  if (!a || !b) return a ? 1 : (b ? -1 : 0);
  using U = std::make_unsigned_t<Unit>;
  while (*a && *a == *b) ++a, ++b;
  return int(U(*a)) - int(U(*b));
}

template <typename Unit>
int LcUStringBase<Unit>::CompareNoCase(const Unit* a, const Unit* b) {
  if (!a || !b) return a ? 1 : (b ? -1 : 0);
  using U = std::make_unsigned_t<Unit>;
  while (*a && LowerUnit(*a) == LowerUnit(*b)) ++a, ++b;
  return int(U(LowerUnit(*a))) - int(U(LowerUnit(*b)));
}

template <typename Unit>
bool LcUStringBase<Unit>::StartsWith(const Unit* text, const Unit* prefix) {
  if (!text || !prefix || !*text || !*prefix) return false;
  while (*prefix && *prefix == *text) ++prefix, ++text;
  return *prefix == 0;
}

template <typename Unit>
bool LcUStringBase<Unit>::EndsWith(const Unit* text, const Unit* suffix) {
  if (!text || !suffix || !*suffix) return false;
  int32_t n = Len(text), m = Len(suffix);
  if (m > n) return false;
  return std::memcmp(text + n - m, suffix, size_t(m) * sizeof(Unit)) == 0;
}

template <typename Unit>
const Unit* LcUStringBase<Unit>::FindSubstring(const Unit* text, const Unit* sub) {
  if (!text || !sub || !*text || !*sub) return nullptr;
  for (; *text; ++text) {
    if (*text != *sub) continue;
    const Unit* a = text;
    const Unit* b = sub;
    while (*b && *a == *b) ++a, ++b;
    if (!*b) return text;
  }
  return nullptr;
}

template <typename Unit>
void LcUStringBase<Unit>::Substring(const LcUStringBase& source, int32_t from, int32_t to,
                                    LcUStringBase& target) {
  if (!source.buffer) {
    target.Free();
    return;
  }
  if (from < 0 || to > source.length || from >= to) {
    target.Clear();
    return;
  }
  if (&source == &target) {
    std::memmove(target.buffer, target.buffer + from, size_t(to - from) * sizeof(Unit));
    target.SetLength(to - from);
    return;
  }
  target.Assign(source.buffer + from, to - from);
}

template <typename Unit>
void LcUStringBase<Unit>::FilterControl(const Unit* source, LcUStringBase& target) {
  if (!source) {
    target.Free();
    return;
  }
  LcUStringBase fresh;
  if (fresh.Reserve(Len(source)) == 0) return;
  Unit* out = fresh.buffer;
  for (; *source; ++source)
    if (!IsControl(*source)) *out++ = *source;
  *out = 0;
  fresh.length = int32_t(out - fresh.buffer);
  target.Swap(fresh);
}

template <typename Unit>
bool LcUStringBase<Unit>::ToInt(const Unit* text, int32_t& out) {
  int32_t start = 0, count = 0;
  if (!TrimmedRange(text, start, count)) return false;
  NarrowCopy<Unit> narrow(text + start, count);
  if (!narrow.text) return false;
  char* end = nullptr;
  long value = std::strtol(narrow.text, &end, 10);
  // A 32-bit long saturates; keep that on every platform.
  if (value > INT32_MAX) value = INT32_MAX;
  if (value < INT32_MIN) value = INT32_MIN;
  if (!AcceptInt(text, narrow.text, end, value)) return false;
  out = int32_t(value);
  return true;
}

template <typename Unit>
bool LcUStringBase<Unit>::ToDouble(const Unit* text, double& out) {
  int32_t start = 0, count = 0;
  if (!TrimmedRange(text, start, count)) return false;
  NarrowCopy<Unit> narrow(text + start, count);
  if (!narrow.text) return false;
  char* end = nullptr;
  double value = std::strtod(narrow.text, &end);
  if (end == narrow.text || *end != 0) return false;
  out = value;
  return true;
}

template <typename Unit>
bool LcUStringBase<Unit>::ToDoubleC(const Unit* text, double& out) {
  if (!text) return false;
  NarrowCopy<Unit> narrow(text, Len(text));
  if (!narrow.text) return false;
  NumericLocaleC c;
  return std::sscanf(narrow.text, "%lg", &out) == 1;
}

template <typename Unit>
Unit LcUStringBase<Unit>::ToUpperUnit(Unit unit) {
  return UpperUnit(unit);
}

template <typename Unit>
Unit LcUStringBase<Unit>::ToLowerUnit(Unit unit) {
  return LowerUnit(unit);
}

template <typename Unit>
bool LcUStringBase<Unit>::IsSpace(Unit unit) {
  return IsSpaceUnit(unit);
}

template class LcUStringBase<char>;
template class LcUStringBase<char16_t>;
