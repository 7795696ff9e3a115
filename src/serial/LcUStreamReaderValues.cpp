#include <cstdio>

#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamText.h"
#include "serial/LcUStreamTypes.h"

using namespace LcUStreamTypes;

namespace {
// What an ascii word that does not scan was expected to be, in this form.
const char* ExpectedWord(int32_t form) {
  switch (form) {
    case LcUStream::eNAT8: return "LI_U_GLUE_2(LtNat8,!)";
    case LcUStream::eINT16: return "LI_U_GLUE_2(LtInt16,!)";
    case LcUStream::eNAT16: return "LI_U_GLUE_2(LtNat16,!)";
    case LcUStream::eINT32: return "LI_U_GLUE_2(LtInt32,!)";
    case LcUStream::eNAT64: return "LI_U_GLUE_2(LtNat64,!)";
    case LcUStream::eSINGLE: return "LI_U_GLUE_2(LtSingle,!)";
    case LcUStream::eDOUBLE: return "LI_U_GLUE_2(LtDouble,!)";
    default: return "LI_U_GLUE_2(LtNat32,!)";
  }
}
}  // namespace

bool LcUStreamReader::GetValues(void* values, uint32_t count, int32_t code, bool array) {
  if (!error && debug) ExpectToken(array ? ArrayCode(code) : code, count, array);
  if (!error) {
    if (ascii)
      GetAscii(values, count, code);
    else
      GetBinary(values, count, code);
  }
  if (!error) return true;
  std::memset(values, 0, size_t(count) * MemorySize(code));
  return false;
}

void LcUStreamReader::GetBinary(void* values, uint32_t count, int32_t code) {
  if (count == 0) return;
  uint32_t wire = code == eFLOAT && !doublePrecision ? 4 : MemorySize(code);
  uint32_t memory = MemorySize(code);
  if (alignState != int32_t(wire)) {
    if (!blockStart && !NextBlock()) {
      if (!error) FailEnd();
      return;
    }
    if (!SkipPad(wire)) return;
  }
  uint8_t* target = static_cast<uint8_t*>(values);
  while (count > 0) {
    if (blockCurrent == blockEnd && !NextBlock()) {
      if (!error) FailEnd();
      return;
    }
    uint32_t room = uint32_t(blockEnd - blockCurrent) / wire;
    // An element never straddles two blocks.
    if (room == 0) {
      ShortBlock();
      return;
    }
    uint32_t n = count < room ? count : room;
    if (wire == memory) {
      std::memcpy(target, blockCurrent, size_t(n) * wire);
    } else {
      double* wide = reinterpret_cast<double*>(target);
      for (uint32_t i = 0; i < n; ++i) wide[i] = Load<float>(blockCurrent + size_t(i) * 4);
    }
    blockCurrent += size_t(n) * wire;
    target += size_t(n) * memory;
    count -= n;
  }
  alignState = int32_t(wire);
}

void LcUStreamReader::GetAscii(void* values, uint32_t count, int32_t code) {
  int32_t form = AsciiForm(code, doublePrecision != 0);
  uint32_t memory = MemorySize(code);
  if (count != 1 && !ExpectText("[")) return;
  uint8_t* target = static_cast<uint8_t*>(values);
  char word[eMAX_WORD + 1];
  for (uint32_t i = 0; i < count; ++i) {
    if (ReadWord(word) == 0) {
      if (!error) FailEnd();
      return;
    }
    uint8_t* p = target + size_t(i) * memory;
    bool scanned;
    if (form == eINT16 || form == eINT32) {
      int64_t value = 0;
      scanned = LcUStreamText::ScanSigned(word, value);
      if (form == eINT16) {
        int16_t v = int16_t(value);
        std::memcpy(p, &v, 2);
      } else {
        int32_t v = int32_t(value);
        std::memcpy(p, &v, 4);
      }
    } else if (form == eSINGLE) {
      float value = 0;
      scanned = LcUStreamText::ScanSingle(word, value);
      if (memory == 8) {
        double wide = value;
        std::memcpy(p, &wide, 8);
      } else {
        std::memcpy(p, &value, 4);
      }
    } else if (form == eDOUBLE) {
      double value = 0;
      scanned = LcUStreamText::ScanDouble(word, value);
      std::memcpy(p, &value, 8);
    } else {
      uint64_t value = 0;
      scanned = LcUStreamText::ScanHex(word, value);
      std::memcpy(p, &value, memory);  // little-endian: the low bytes
    }
    if (!scanned) {
      FailMismatch(word, ExpectedWord(form));
      return;
    }
  }
  if (count != 1) ExpectText("]");
}

int32_t LcUStreamReader::ReadInt32Checked(int32_t maximum) {
  int32_t value = ReadInt32();
  if (error || (value >= 0 && value <= maximum)) return value;
  char read[16], expected[32];
  std::snprintf(read, sizeof read, "%d", value);
  std::snprintf(expected, sizeof expected, "0 to %d", maximum);
  FailMismatch(read, expected);
  return 0;
}

bool LcUStreamReader::ReadString(LcUStringA& text) {
  if (!error && debug) ExpectToken(eSTRING, 0, false);
  if (error) {
    text.Free();
    return false;
  }
  if (ascii) {
    GetQuoted(text);
  } else {
    int32_t length = 0;
    GetBinary(&length, 1, eINT32);
    if (!error && (length < -1 || length > int32_t(eMAX_STRING))) {
      char read[16];
      std::snprintf(read, sizeof read, "%d", length);
      FailMismatch(read, "String length");
    }
    // The caller's buffer is reused: a string read per record costs no allocation.
    if (error || length < 0)
      text.Free();
    else
      text.Clear();
    // Appended as the data comes, so a hostile length costs only what is there.
    for (uint32_t left = length > 0 ? uint32_t(length) : 0; left > 0 && !error;) {
      if (blockCurrent == blockEnd && !NextBlock()) {
        if (!error) FailEnd();
        break;
      }
      uint32_t room = uint32_t(blockEnd - blockCurrent);
      uint32_t n = left < room ? left : room;
      if (text.Length() + int32_t(n) >= text.Capacity()) {
        int32_t doubled = text.Capacity() * 2;
        int32_t whole = text.Length() + int32_t(left);
        text.Reserve(doubled < whole ? doubled : whole);
      }
      text.Append(reinterpret_cast<const char*>(blockCurrent), int32_t(n));
      blockCurrent += n;
      left -= n;
      alignState = 1;
    }
  }
  if (error) text.Free();
  return error == 0;
}

void LcUStreamReader::GetQuoted(LcUStringA& text) {
  SkipWhite();
  if (Peek() == 'l') {
    text.Free();
    ExpectText("linull");
    return;
  }
  if (!ExpectText("\"")) return;
  text.Clear();
  char run[256];
  uint32_t used = 0;
  for (;;) {
    int c = Get();
    if (c == '\\') c = Get();
    else if (c == '"') break;
    if (c < 0) {
      FailMismatch("End of data!", "Quoted String");
      return;
    }
    run[used++] = char(c);
    if (used == sizeof run) {
      text.Append(run, int32_t(used));
      used = 0;
    }
  }
  text.Append(run, int32_t(used));
}

bool LcUStreamReader::ReadWideString(LcUString& text) {
  LcUStringA narrow;
  text.Free();
  if (!ReadString(narrow) || narrow.IsNull()) return error == 0;
  if (textEncoding == eC)
    LcUString::MultiByteToWide(narrow.Get(), text);
  else
    LcUString::UTF8ToUTF16(narrow.Get(), narrow.Length(), text);
  return true;
}

uint32_t LcUStreamReader::ReadBits(uint32_t count) {
  if (count > 32) count = 32;
  uint32_t value = 0;
  while (count > 0) {
    if (bitsLeft == 0) {
      bitWord = ReadNat32();
      bitsLeft = 32;
      ++bitWordCount;
    }
    uint32_t take = count < bitsLeft ? count : bitsLeft;
    uint32_t piece = (bitWord >> (bitsLeft - take)) & LowBits(take);
    value = take == 32 ? piece : (value << take) | piece;
    bitsLeft -= take;
    count -= take;
  }
  return value;
}

uint32_t LcUStreamReader::FlushBits() {
  bitsLeft = 0;
  return bitWordCount;
}
