#include "foundation/LcUFormatter.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/LcUUtf8.h"

namespace {
// Collects output up to the capacity and counts all of it.
template <typename Unit>
struct Output {
  Unit* target;
  int64_t capacity;
  int64_t count = 0;

  void Put(Unit u) {
    if (count + 1 < capacity) target[count] = u;
    ++count;
  }
  void Pad(int64_t n) {
    for (; n > 0; --n) Put(Unit(' '));
  }
  void PutNarrow(const char* s, int64_t n) {
    int64_t room = capacity - 1 - count;
    int64_t fit = room < 0 ? 0 : (n < room ? n : room);
    if (sizeof(Unit) == 1) {
      std::memcpy(target + count, s, size_t(fit));
    } else {
      for (int64_t i = 0; i < fit; ++i) target[count + i] = Unit(static_cast<unsigned char>(s[i]));
    }
    count += n;
  }
  void Finish() {
    if (capacity > 0) target[count < capacity ? count : capacity - 1] = 0;
  }
};

// Narrow text in a wide format is UTF-8; wide text in a narrow one becomes UTF-8.
struct CountSink {
  int64_t units = 0;
  void PutAscii(const unsigned char*, int64_t n) { units += n; }
  void Put(uint32_t cp) { units += cp < 0x10000 ? 1 : 2; }
};

template <typename Unit>
struct EmitSink {
  Output<Unit>& out;
  int64_t remaining;
  void PutAscii(const unsigned char* s, int64_t n) {
    for (int64_t i = 0; i < n && remaining > 0; ++i, --remaining) out.Put(Unit(s[i]));
  }
  void Put(uint32_t cp) {
    int units = cp < 0x10000 ? 1 : 2;
    if (remaining < units) {
      remaining = 0;
      return;
    }
    remaining -= units;
    if (units == 1) {
      out.Put(Unit(cp));
    } else {
      cp -= 0x10000;
      out.Put(Unit(0xD800 + (cp >> 10)));
      out.Put(Unit(0xDC00 + (cp & 0x3FF)));
    }
  }
};

// Puts text with width and precision (precision counts target units).
template <typename Unit>
void PutText(Output<Unit>& out, const char* s, int64_t width, int64_t precision, bool left);
template <typename Unit>
void PutText(Output<Unit>& out, const char16_t* s, int64_t width, int64_t precision, bool left);

template <>
void PutText(Output<char>& out, const char* s, int64_t width, int64_t precision, bool left) {
  if (!s) s = "(null)";
  int64_t n = int64_t(std::strlen(s));
  if (precision >= 0 && precision < n) n = precision;
  if (!left) out.Pad(width - n);
  out.PutNarrow(s, n);
  if (left) out.Pad(width - n);
}

template <>
void PutText(Output<char16_t>& out, const char16_t* s, int64_t width, int64_t precision, bool left) {
  static const char16_t kNull[] = u"(null)";
  if (!s) s = kNull;
  int64_t n = 0;
  while (s[n] && (precision < 0 || n < precision)) ++n;
  if (!left) out.Pad(width - n);
  for (int64_t i = 0; i < n; ++i) out.Put(s[i]);
  if (left) out.Pad(width - n);
}

template <>
void PutText(Output<char16_t>& out, const char* s, int64_t width, int64_t precision, bool left) {
  if (!s) s = "(null)";
  auto bytes = reinterpret_cast<const unsigned char*>(s);
  int64_t length = int64_t(std::strlen(s));
  CountSink counter;
  LcUUtf8::Decode(bytes, length, counter);
  int64_t n = precision >= 0 && precision < counter.units ? precision : counter.units;
  if (!left) out.Pad(width - n);
  EmitSink<char16_t> sink{out, n};
  LcUUtf8::Decode(bytes, length, sink);
  if (left) out.Pad(width - n);
}

template <>
void PutText(Output<char>& out, const char16_t* s, int64_t width, int64_t precision, bool left) {
  static const char16_t kNull[] = u"(null)";
  if (!s) s = kNull;
  int64_t units = 0;
  while (s[units]) ++units;
  char stack[256];
  char* bytes = units * 3 < int64_t(sizeof(stack)) ? stack : static_cast<char*>(std::malloc(size_t(units) * 3 + 1));
  if (!bytes) return;
  bool unpaired = false;
  int64_t n = LcUUtf8::EncodeFromUTF16(s, units, bytes, true, unpaired);
  if (precision >= 0 && precision < n) n = precision;
  if (!left) out.Pad(width - n);
  out.PutNarrow(bytes, n);
  if (left) out.Pad(width - n);
  if (bytes != stack) std::free(bytes);
}

enum class Size { Default, Char, Short, Long, LongLong, SizeT, IntMax, PtrDiff, LongDouble };

template <typename Unit>
int32_t FormatImpl(Unit* target, int32_t capacity, const Unit* format, va_list args) {
  if (!format) {
    if (capacity > 0) target[0] = 0;
    return -1;
  }
  Output<Unit> out{target, capacity};
  for (const Unit* p = format; *p; ++p) {
    if (*p != '%') {
      out.Put(*p);
      continue;
    }
    const Unit* start = p++;
    char flags[8];
    int nflags = 0;
    bool left = false;
    while (*p == '-' || *p == '+' || *p == ' ' || *p == '#' || *p == '0') {
      if (*p == '-') left = true;
      if (nflags < 7) flags[nflags++] = char(*p);
      ++p;
    }
    flags[nflags] = 0;
    int64_t width = -1;
    if (*p == '*') {
      width = va_arg(args, int);
      if (width < 0) {
        left = true;
        width = -width;
        if (nflags < 7) flags[nflags++] = '-', flags[nflags] = 0;
      }
      ++p;
    } else if (*p >= '0' && *p <= '9') {
      width = 0;
      while (*p >= '0' && *p <= '9') width = width * 10 + (*p++ - '0');
    }
    int64_t precision = -1;
    if (*p == '.') {
      ++p;
      precision = 0;
      if (*p == '*') {
        int v = va_arg(args, int);
        precision = v < 0 ? -1 : v;
        ++p;
      } else {
        while (*p >= '0' && *p <= '9') precision = precision * 10 + (*p++ - '0');
      }
    }
    Size size = Size::Default;
    bool narrowText = false, wideText = false;
    switch (*p) {
      case 'h':
        if (p[1] == 'h') ++p, size = Size::Char;
        else size = Size::Short, narrowText = true;
        ++p;
        break;
      case 'l':
        if (p[1] == 'l') ++p, size = Size::LongLong;
        else size = Size::Long, wideText = true;
        ++p;
        break;
      case 'z': size = Size::SizeT; ++p; break;
      case 'j': size = Size::IntMax; ++p; break;
      case 't': size = Size::PtrDiff; ++p; break;
      case 'L': size = Size::LongDouble; ++p; break;
      case 'I':
        if (p[1] == '6' && p[2] == '4') p += 3, size = Size::LongLong;
        break;
      default: break;
    }
    Unit conv = *p;
    if (conv == 0) {
      for (const Unit* q = start; q < p; ++q) out.Put(*q);
      break;
    }
    if (conv == '%') {
      out.Put(Unit('%'));
      continue;
    }
    if (conv == 's' || conv == 'S') {
      // %s follows the format's width unless h or l says otherwise; %S is the other width.
      bool wide = wideText || (!narrowText && ((conv == 's') == (sizeof(Unit) == 2)));
      if (wide)
        PutText(out, va_arg(args, const char16_t*), width, precision, left);
      else
        PutText(out, va_arg(args, const char*), width, precision, left);
      continue;
    }
    if (conv == 'c' || conv == 'C') {
      int c = va_arg(args, int);
      if (sizeof(Unit) == 1 && (wideText || conv == 'C') && c >= 0x80) {
        char16_t unit[2] = {char16_t(c), 0};
        PutText(out, unit, width, -1, left);
      } else {
        if (!left) out.Pad(width - 1);
        out.Put(Unit(c));
        if (left) out.Pad(width - 1);
      }
      continue;
    }
    if (conv == 'n') {
      (void)va_arg(args, void*);  // Never written to.
      continue;
    }
    // Numbers go through the C library with a rebuilt narrow specifier.
    char directive[48];
    int n = std::snprintf(directive, sizeof(directive), "%%%s", flags);
    if (width >= 0) n += std::snprintf(directive + n, sizeof(directive) - size_t(n), "%lld", (long long)width);
    if (precision >= 0) n += std::snprintf(directive + n, sizeof(directive) - size_t(n), ".%lld", (long long)precision);
    char text[512];
    char* big = nullptr;
    int written = -1;
    auto emit = [&](auto value, const char* length) {
      std::snprintf(directive + n, sizeof(directive) - size_t(n), "%s%c", length, char(conv));
      written = std::snprintf(text, sizeof(text), directive, value);
      if (written >= int(sizeof(text))) {
        big = static_cast<char*>(std::malloc(size_t(written) + 1));
        if (big) std::snprintf(big, size_t(written) + 1, directive, value);
      }
    };
    switch (conv) {
      case 'd':
      case 'i':
        switch (size) {
          case Size::LongLong: case Size::IntMax: emit(va_arg(args, long long), "ll"); break;
          case Size::Long: emit(va_arg(args, long), "l"); break;
          case Size::SizeT: case Size::PtrDiff: emit((long long)va_arg(args, std::ptrdiff_t), "ll"); break;
          case Size::Char: emit((int)(signed char)va_arg(args, int), ""); break;
          case Size::Short: emit((int)(short)va_arg(args, int), ""); break;
          default: emit(va_arg(args, int), ""); break;
        }
        break;
      case 'u': case 'x': case 'X': case 'o':
        switch (size) {
          case Size::LongLong: case Size::IntMax: emit(va_arg(args, unsigned long long), "ll"); break;
          case Size::Long: emit(va_arg(args, unsigned long), "l"); break;
          case Size::SizeT: case Size::PtrDiff: emit((unsigned long long)va_arg(args, size_t), "ll"); break;
          case Size::Char: emit((unsigned)(unsigned char)va_arg(args, unsigned), ""); break;
          case Size::Short: emit((unsigned)(unsigned short)va_arg(args, unsigned), ""); break;
          default: emit(va_arg(args, unsigned), ""); break;
        }
        break;
      case 'f': case 'F': case 'e': case 'E': case 'g': case 'G': case 'a': case 'A':
        if (size == Size::LongDouble)
          emit(va_arg(args, long double), "L");
        else
          emit(va_arg(args, double), "");
        break;
      case 'p':
        emit(va_arg(args, void*), "");
        break;
      default:
        // Unknown conversions are written as they stand.
        for (const Unit* q = start; q <= p; ++q) out.Put(*q);
        continue;
    }
    if (written > 0) out.PutNarrow(big ? big : text, big || written < int(sizeof(text)) ? written : int(sizeof(text)) - 1);
    std::free(big);
  }
  out.Finish();
  return out.count > INT32_MAX ? INT32_MAX : int32_t(out.count);
}
}  // namespace

int32_t LcUFormatter::Format(char* target, int32_t capacity, const char* format, va_list args) {
  return FormatImpl(target, capacity, format, args);
}

int32_t LcUFormatter::Format(char16_t* target, int32_t capacity, const char16_t* format, va_list args) {
  return FormatImpl(target, capacity, format, args);
}
