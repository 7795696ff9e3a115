#include <cmath>

#include "foundation/LcUError.h"
#include "foundation/LcUString.h"
#include "serial/LcUStreamText.h"
#include "serial/LcUStreamTypes.h"
#include "serial/LcUStreamWriter.h"

using namespace LcUStreamTypes;

uint32_t LcUStreamWriter::WireSize(int32_t code) const {
  return code == eFLOAT ? (doublePrecision ? 8u : 4u) : MemorySize(code);
}

void LcUStreamWriter::PutValues(const void* values, uint32_t count, int32_t code, bool array) {
  if (error) return;
  if (debug) WriteToken(array ? ArrayCode(code) : code, count, array);
  if (ascii)
    PutAscii(values, count, code);
  else
    PutBinary(values, count, code);
}

void LcUStreamWriter::PutBinary(const void* values, uint32_t count, int32_t code) {
  if (count == 0 || error) return;
  uint32_t wire = WireSize(code);
  uint32_t memory = MemorySize(code);
  Align(wire);
  const uint8_t* source = static_cast<const uint8_t*>(values);
  while (count > 0 && !error) {
    uint32_t room = uint32_t(blockEnd - blockCurrent) / wire;
    if (room == 0) {
      // An element never straddles two blocks.
      if (CommitBlock() && NextBlock() && uint32_t(blockEnd - blockCurrent) < wire) Fail(eWRITE_NO_BLOCK, "Write Failed");
      continue;
    }
    uint32_t n = count < room ? count : room;
    if (wire == memory) {
      std::memcpy(blockCurrent, source, size_t(n) * wire);
    } else {
      const double* wide = reinterpret_cast<const double*>(source);
      for (uint32_t i = 0; i < n; ++i) {
        float narrow = float(wide[i]);
        std::memcpy(blockCurrent + size_t(i) * 4, &narrow, 4);
      }
    }
    blockCurrent += size_t(n) * wire;
    source += size_t(n) * memory;
    count -= n;
  }
  if (!error) alignState = int32_t(wire);
}

void LcUStreamWriter::PutAscii(const void* values, uint32_t count, int32_t code) {
  int32_t form = AsciiForm(code, doublePrecision != 0);
  uint32_t perLine = valuesPerLine > 0 ? uint32_t(valuesPerLine) : ValuesPerLine(form);
  const uint8_t* source = static_cast<const uint8_t*>(values);
  uint32_t memory = MemorySize(code);
  WriteIndent();
  WriteText(count == 1 ? " " : "[", 1);
  char text[64];
  for (uint32_t i = 0; i < count && !error; ++i) {
    if (i > 0 && i % perLine == 0) {
      WriteText("\n ", 2);
      WriteIndent();
    }
    const uint8_t* p = source + size_t(i) * memory;
    uint32_t length = 0;
    switch (form) {
      case eNAT8: length = LcUStreamText::FormatHex(text, *p, 2); break;
      case eINT16: length = LcUStreamText::FormatSigned(text, Load<int16_t>(p), 6); break;
      case eNAT16: length = LcUStreamText::FormatHex(text, Load<uint16_t>(p), 4); break;
      case eINT32: length = LcUStreamText::FormatSigned(text, Load<int32_t>(p), 11); break;
      case eNAT32: length = LcUStreamText::FormatHex(text, Load<uint32_t>(p), 8); break;
      case eNAT64: length = LcUStreamText::FormatHex(text, Load<uint64_t>(p), 0); break;
      case eSINGLE: {
        double value = memory == 8 ? double(float(Load<double>(p))) : double(Load<float>(p));
        if (std::fabs(value) < singleZeroThreshold) value = 0.0;
        length = LcUStreamText::FormatFloat(text, value, singlePrecision, true);
        break;
      }
      default: {
        double value = Load<double>(p);
        if (std::fabs(value) < doubleZeroThreshold) value = 0.0;
        length = LcUStreamText::FormatFloat(text, value, doubleDigits, false);
        break;
      }
    }
    WriteText(text, length);
  }
  if (count > perLine) {
    WriteText("\n", 1);
    WriteIndent();
    WriteText("]\n", 2);
  } else {
    WriteText(count == 1 ? "\n" : " ]\n", count == 1 ? 1 : 3);
  }
}

void LcUStreamWriter::WriteToken(int32_t code, uint32_t count, bool array) {
  if (error) return;
  if (!ascii) {
    int32_t token[2] = {code, int32_t(count)};
    PutBinary(token, array ? 2 : 1, eINT32);
    return;
  }
  WriteIndent();
  const char* name = TypeName(code);
  WriteText(name, uint32_t(std::strlen(name)));
  if (!array) {
    WriteText("\n", 1);
    return;
  }
  char text[24];
  uint32_t length = LcUStreamText::FormatSigned(text, int32_t(count), 0);
  text[length++] = '\n';
  WriteText(text, length);
}

void LcUStreamWriter::WriteString(const char* text) {
  WriteString(text, text ? int32_t(std::strlen(text)) : -1);
}

void LcUStreamWriter::WriteString(const char* text, int32_t length) {
  if (error) return;
  if (text && length < 0) length = int32_t(std::strlen(text) > 0x7FFFFFFF ? 0x7FFFFFFF : std::strlen(text));
  if (debug) WriteToken(eSTRING, 0, false);
  if (ascii) {
    PutQuoted(text, length);
    return;
  }
  if (text && uint32_t(length) > eMAX_STRING) {
    LcUError::PostF(LcUError::eWARNING, &component, "Truncating string");
    length = int32_t(eMAX_STRING);
  }
  if (!text) length = -1;
  PutBinary(&length, 1, eINT32);
  if (length > 0) PutBinary(text, uint32_t(length), eNAT8);
}

void LcUStreamWriter::PutQuoted(const char* text, int32_t length) {
  WriteIndent();
  if (!text) {
    WriteText("linull\n", 7);
    return;
  }
  WriteText("\"", 1);
  int32_t run = 0;
  for (int32_t i = 0; i < length; ++i) {
    if (text[i] != '"' && text[i] != '\\') continue;
    WriteText(text + run, uint32_t(i - run));
    WriteText("\\", 1);
    run = i;
  }
  WriteText(text + run, uint32_t(length - run));
  WriteText("\"\n", 2);
}

void LcUStreamWriter::WriteWideString(const char16_t* text) {
  if (!text) {
    WriteString(nullptr, -1);
    return;
  }
  LcUStringA narrow;
  if (textEncoding == eC)
    LcUString::WideToMultiByte(text, narrow);
  else
    LcUString::UTF16ToUTF8(text, narrow, textEncoding == eUTF8_PAIRED);
  WriteString(narrow.Get() ? narrow.Get() : "", narrow.Length());
}

void LcUStreamWriter::WriteBits(uint32_t value, uint32_t count) {
  if (count > 32) count = 32;
  while (count > 0) {
    uint32_t take = count < bitsFree ? count : bitsFree;
    uint32_t piece = (value >> (count - take)) & LowBits(take);
    bitWord |= piece << (bitsFree - take);
    bitsFree -= take;
    count -= take;
    if (bitsFree == 0) {
      WriteNat32(bitWord);
      ++bitWordCount;
      bitWord = 0;
      bitsFree = 32;
    }
  }
}

uint32_t LcUStreamWriter::FlushBits() {
  if (bitsFree < 32) {
    WriteNat32(bitWord);
    ++bitWordCount;
    bitWord = 0;
    bitsFree = 32;
  }
  return bitWordCount;
}

void LcUStreamWriter::SetSinglePrecision(int32_t digits) {
  singlePrecision = digits < 1 ? 1 : digits > 8 ? 8 : digits;
}

void LcUStreamWriter::SetDoublePrecision(int32_t digits) {
  doubleDigits = digits < 1 ? 1 : digits > 17 ? 17 : digits;
}
