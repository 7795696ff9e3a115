#pragma once
#include <cstdint>

// One-pointer strings for members of large or persistent objects. They carry
// no length, so release recomputes the size from the text.
template <typename Unit>
class LcUStringPtrBase {
public:
  LcUStringPtrBase() = default;
  LcUStringPtrBase(const Unit* text) { Assign(text); }
  LcUStringPtrBase(const LcUStringPtrBase& other) { Assign(other.buffer); }
  LcUStringPtrBase(LcUStringPtrBase&& other) noexcept : buffer(other.buffer) { other.buffer = nullptr; }
  ~LcUStringPtrBase() { Free(); }
  LcUStringPtrBase& operator=(const LcUStringPtrBase& other) { Assign(other.buffer); return *this; }
  LcUStringPtrBase& operator=(LcUStringPtrBase&& other) noexcept;
  LcUStringPtrBase& operator=(const Unit* text) { Assign(text); return *this; }

  const Unit* Get() const { return buffer; }
  bool IsNull() const { return buffer == nullptr; }
  int32_t Length() const;

  // Always a fresh copy; null frees.
  void Assign(const Unit* text);
  void Assign(const Unit* text, int32_t count);
  // Leaves a one-unit empty text: a cleared compact string is never null.
  void ClearPtr();
  void Free();

private:
  Unit* buffer = nullptr;
};

extern template class LcUStringPtrBase<char>;
extern template class LcUStringPtrBase<char16_t>;

class LcUStringPtr : public LcUStringPtrBase<char16_t> {
public:
  using LcUStringPtrBase::LcUStringPtrBase;
  using LcUStringPtrBase::operator=;
};

class LcUStringPtrA : public LcUStringPtrBase<char> {
public:
  using LcUStringPtrBase::LcUStringPtrBase;
  using LcUStringPtrBase::operator=;
};
