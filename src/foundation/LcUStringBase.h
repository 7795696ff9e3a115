#pragma once
#include <cstdarg>
#include <cstdint>

// The mechanics shared by LcUString (UTF-16 units) and LcUStringA (bytes).
// A string is null until something is stored; null and empty differ.
// Invariant: length < capacity whenever buffer is non-null; capacity is what
// the allocator granted, terminator included.
template <typename Unit>
class LcUStringBase {
public:
  LcUStringBase() = default;
  LcUStringBase(const Unit* text);
  LcUStringBase(const Unit* text, int32_t count);
  LcUStringBase(const LcUStringBase& other);
  LcUStringBase(LcUStringBase&& other) noexcept;
  ~LcUStringBase();
  LcUStringBase& operator=(const LcUStringBase& other);
  LcUStringBase& operator=(LcUStringBase&& other) noexcept;
  LcUStringBase& operator=(const Unit* text);

  const Unit* Get() const { return buffer; }
  Unit* GetBuffer() { return buffer; }
  int32_t Length() const { return length; }
  int32_t Capacity() const { return capacity; }
  bool IsNull() const { return buffer == nullptr; }
  bool IsEmpty() const { return length == 0; }
  int64_t SizeInBytes() const { return int64_t(length) * sizeof(Unit); }
  Unit operator[](int32_t index) const { return buffer[index]; }

  int32_t Reserve(int32_t n);
  void SetLength(int32_t n);
  void Assign(const Unit* text, int32_t count);
  void Assign(const Unit* text);
  void Append(const Unit* text, int32_t count);
  void Append(const Unit* text);
  void Append(const LcUStringBase& other) { Append(other.buffer, other.length); }
  void Append(Unit unit);
  void Swap(LcUStringBase& other);
  void Clear();
  void Free();
  void SetAt(int32_t index, Unit unit);

  int32_t Find(const Unit* text, int32_t start = 0) const;
  int32_t FindChar(Unit unit, int32_t start = 0) const;
  void ToUpper();
  void ToLower();
  void Trim();
  void TrimTrailing();
  void TrimTrailing(const Unit* set);
  int32_t Replace(const Unit* from, const Unit* to, int32_t start, bool all);
  int32_t ReplaceRange(int32_t from, int32_t to, const Unit* text);

  bool Format(const Unit* format, ...);
  bool FormatV(const Unit* format, va_list args);
  void FormatFloatC(double value, int precision, int width);
  void FormatFixed(double value, int decimals, bool adaptive);

  static int32_t Len(const Unit* text);
  static uint32_t Hash(const Unit* text);
  static bool Equal(const Unit* a, const Unit* b);
  static bool Equal(const Unit* a, const Unit* b, int32_t count);
  static int Compare(const Unit* a, const Unit* b);
  static int CompareNoCase(const Unit* a, const Unit* b);
  static bool StartsWith(const Unit* text, const Unit* prefix);
  static bool EndsWith(const Unit* text, const Unit* suffix);
  static const Unit* FindSubstring(const Unit* text, const Unit* sub);
  static void Substring(const LcUStringBase& source, int32_t from, int32_t to, LcUStringBase& target);
  static void FilterControl(const Unit* source, LcUStringBase& target);
  static bool ToInt(const Unit* text, int32_t& out);
  static bool ToDouble(const Unit* text, double& out);
  static bool ToDoubleC(const Unit* text, double& out);

  static Unit ToUpperUnit(Unit unit);
  static Unit ToLowerUnit(Unit unit);
  static bool IsSpace(Unit unit);

protected:
  bool Grow(int32_t units);

  Unit* buffer = nullptr;
  int32_t length = 0;
  int32_t capacity = 0;
};

extern template class LcUStringBase<char>;
extern template class LcUStringBase<char16_t>;

template <typename Unit>
bool operator==(const LcUStringBase<Unit>& a, const LcUStringBase<Unit>& b) {
  return LcUStringBase<Unit>::Equal(a.Get(), b.Get());
}
template <typename Unit>
bool operator!=(const LcUStringBase<Unit>& a, const LcUStringBase<Unit>& b) {
  return !(a == b);
}
