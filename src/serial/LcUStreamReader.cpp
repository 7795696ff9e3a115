#include "serial/LcUStreamReader.h"

#include <cstdio>

#include "serial/LcUStreamFilterSink.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamHeader.h"
#include "serial/LcUStreamSink.h"
#include "serial/LcUStreamTypes.h"

namespace {
bool IsWhite(int c) {
  return c == '\t' || c == '\n' || c == '\r' || c == ' ';
}
}  // namespace

LcUStreamReader::LcUStreamReader(LcUStreamSink* sink, uint32_t formatVersion) : LcUStream(sink, formatVersion) {}

LcUStreamReader::~LcUStreamReader() {
  EndTables();
}

void LcUStreamReader::OfferFilter(LcUStreamFilterSink* filter) {
  offered.push_back(filter);
}

void LcUStreamReader::OfferFormat(LcUStreamFormat* offer) {
  offeredFormats.push_back(offer);
}

bool LcUStreamReader::SelectFormat(const char* word, bool strict) {
  format = nullptr;
  if (std::strcmp(word, LcUStreamHeader::kNoFormat) == 0) {
    formatName.Free();
    formatVersion = 0;
    return true;
  }
  formatName.Assign(word);
  for (LcUStreamFormat* offer : offeredFormats) {
    if (offer->name.Get() && std::strcmp(offer->name.Get(), word) == 0) {
      format = offer;
      formatVersion = offer->version;
      return true;
    }
  }
  for (LcUStreamFormat* offer : offeredFormats) {
    uint32_t version = offer->version;
    if (offer->matchName && offer->matchName(offer, word, &version)) {
      format = offer;
      formatVersion = version;
      return true;
    }
  }
  return !strict || Fail(eUNKNOWN_CONFIGURATION, "Unknown configuration");
}

bool LcUStreamReader::ReadBegin(bool readHeader, bool strict) {
  error = 0;
  depth = 0;
  line = 1;
  atEnd = 0;
  bitWord = 0;
  bitsLeft = 0;
  bitWordCount = 0;
  alignState = 0;
  blockStart = blockEnd = blockCurrent = nullptr;
  EndTables();
  if (!readHeader) {
    StartTables();
    return BeginFilters();
  }
  filters.clear();
  format = nullptr;
  formatName.Free();
  formatVersion = 0;
  // A file opens in binary until the header says otherwise: the header
  // reader passes over carriage returns, and a binary stream must not be
  // translated.
  ascii = 0;
  if (!sink->ReadBegin(this)) return Fail(eREAD_BEGIN_FAILED, "ReadBegin failed");
  head = blockSink = sink;
  // The header is plain text whatever it says, and comes past any filters.
  ascii = 1;
  if (ReadHeader(strict)) Sync();
  DropBlock();
  if (error) return false;
  for (size_t i = 0; i < filters.size(); ++i) {
    if (filters[i]->ReadBegin(this)) continue;
    sink->ReadEnd();
    for (size_t j = 0; j < i; ++j) filters[j]->ReadEnd();
    return Fail(eREAD_BEGIN_FAILED, "ReadBegin failed");
  }
  LinkChain();
  blockSink = head;
  StartTables();
  if (strict && format && format->writeDefinitions) ReadDefinitions();
  return error == 0;
}

bool LcUStreamReader::BeginFilters() {
  for (size_t i = 0; i < filters.size(); ++i) {
    if (filters[i]->ReadBegin(this)) continue;
    for (size_t j = 0; j < i; ++j) filters[j]->ReadEnd();
    return Fail(eREAD_BEGIN_FAILED, "ReadBegin failed");
  }
  if (!sink->ReadBegin(this)) {
    for (LcUStreamFilterSink* filter : filters) filter->ReadEnd();
    return Fail(eREAD_BEGIN_FAILED, "ReadBegin failed");
  }
  LinkChain();
  blockSink = head;
  return true;
}

bool LcUStreamReader::ReadEnd(bool checkEnd) {
  if (error == eNOT_BEGUN) return false;
  if (checkEnd && blockStart) Sync();
  if (checkEnd && ascii && !error) {
    for (; blockCurrent < blockEnd; ++blockCurrent) {
      if (IsWhite(*blockCurrent)) {
        if (*blockCurrent == '\n') ++line;
        continue;
      }
      char read[2] = {char(*blockCurrent), 0};
      FailMismatch(read, "White Space!");
      break;
    }
  }
  DropBlock();
  bool ended = true;
  for (LcUStreamFilterSink* filter : filters) ended = filter->ReadEnd() && ended;
  ended = sink->ReadEnd() && ended;
  if (!ended) Fail(eREAD_END_FAILED, "ReadEnd failed");
  UnlinkChain();
  blockSink = nullptr;
  // Objects may depend on their references from here on.
  for (uint32_t i = 0; i < objects.Size(); ++i) {
    const LcUStreamObjectList::Row& row = objects[i];
    if (row.entry < 0 || !row.object || !workingFormat || !workingFormat->IsEntry(row.entry)) continue;
    if (LcUStreamFixUpFunction fixUp = workingFormat->entries[size_t(row.entry)].fixUp) fixUp(this, row.entry, row.object);
  }
  EndTables();
  return error == 0;
}

void LcUStreamReader::Sync() {
  if (error) return;
  if (debug) ExpectToken(eSYNC, 0, false);
  if (!ascii) {
    if (alignState != 8) SkipPad(8);
  } else if (debug && !error) {
    int c = Get();
    if (c != '\n' && c != '\r') {
      char read[2] = {char(c < 0 ? 0 : c), 0};
      FailMismatch(read, "\\n");
    }
  }
}

void LcUStreamReader::DropBlock() {
  if (blockStart && blockSink && !blockSink->ConsumeRead(uint32_t(blockCurrent - blockStart)))
    Fail(eREAD_CONSUME_FAILED, "Sink couldn't process data");
  blockStart = blockEnd = blockCurrent = nullptr;
  alignState = 0;
}

bool LcUStreamReader::NextBlock() {
  DropBlock();
  if (atEnd || error) return false;
  const uint8_t* block = nullptr;
  uint32_t size = 0;
  if (blockSink->GetReadBlock(&block, &size) != 0) return Fail(eREAD_NO_BLOCK, "Read Failed");
  if (!block || size == 0) {
    atEnd = 1;
    return false;
  }
  if (!ascii && (reinterpret_cast<uintptr_t>(block) & 7))
    return Fail(eNOT_ALIGNED, "Block does not have 8 byte alignment");
  blockStart = blockCurrent = block;
  blockEnd = block + size;
  alignState = ascii ? 1 : 8;
  return true;
}

bool LcUStreamReader::FailEnd() {
  return Fail(eUNEXPECTED_END, "Unexpected end of data");
}

bool LcUStreamReader::ShortBlock() {
  // Data that simply stops is an end inside a value; more data behind a
  // block too short for what it must hold is malformed.
  blockCurrent = blockEnd;
  if (!NextBlock()) return error ? false : FailEnd();
  return Fail(eMALFORMED, "Malformed data");
}

bool LcUStreamReader::SkipPad(uint32_t size) {
  if (!blockStart) return true;
  uint32_t pad = uint32_t(-(blockCurrent - blockStart)) & (size - 1);
  if (pad > uint32_t(blockEnd - blockCurrent)) return ShortBlock();
  for (uint32_t i = 0; i < pad; ++i)
    if (blockCurrent[i] != 0) return Fail(eMALFORMED, "Malformed data");
  blockCurrent += pad;
  alignState = int32_t(size);
  return true;
}

int LcUStreamReader::Get() {
  int c = Peek();
  if (c < 0) return c;
  ++blockCurrent;
  if (c == '\n') ++line;
  return c;
}

void LcUStreamReader::SkipWhite() {
  while (IsWhite(Peek())) Get();
}

uint32_t LcUStreamReader::ReadWord(char* word) {
  SkipWhite();
  uint32_t length = 0;
  for (int c = Peek(); c >= 0 && !IsWhite(c); c = Peek()) {
    if (length == eMAX_WORD) {
      word[length] = 0;
      FailMismatch(word, "Word!");
      return 0;
    }
    word[length++] = char(Get());
  }
  word[length] = 0;
  return length;
}

bool LcUStreamReader::ExpectText(const char* text) {
  if (error) return false;
  SkipWhite();
  for (uint32_t i = 0; text[i]; ++i) {
    int c = Peek();
    if (c == text[i]) {
      Get();
      continue;
    }
    if (c < 0) return FailEnd();
    // The matched part and the character that broke it.
    char read[128];
    uint32_t kept = i < 125 ? i : 125;
    std::memcpy(read, text, kept);
    read[kept] = char(c);
    read[kept + 1] = 0;
    FailMismatch(read, text);
    return false;
  }
  return true;
}

void LcUStreamReader::ExpectToken(int32_t code, uint32_t count, bool array) {
  if (error) return;
  if (!ascii) {
    int32_t token[2] = {0, 0};
    GetBinary(token, array ? 2 : 1, eINT32);
    char read[16], expected[16];
    if (!error && token[0] != code) {
      std::snprintf(read, sizeof read, "%d", token[0]);
      std::snprintf(expected, sizeof expected, "%d", code);
      FailMismatch(read, expected);
    } else if (!error && array && uint32_t(token[1]) != count) {
      std::snprintf(read, sizeof read, "%d", token[1]);
      std::snprintf(expected, sizeof expected, "%d", int32_t(count));
      FailMismatch(read, expected);
    }
    return;
  }
  char word[eMAX_WORD + 1];
  const char* name = TypeName(code);
  if (!ExpectText(name)) return;
  // "Int32" must not pass for the start of "Int32Array".
  int next = Peek();
  if (next >= 0 && !IsWhite(next)) {
    std::snprintf(word, sizeof word, "%s%c", name, char(next));
    FailMismatch(word, name);
    return;
  }
  if (!array) return;
  char expected[16];
  std::snprintf(expected, sizeof expected, "%d", int32_t(count));
  if (ReadWord(word) == 0) {
    if (!error) FailEnd();
  } else if (std::strcmp(word, expected) != 0) {
    FailMismatch(word, expected);
  }
}

bool LcUStreamReader::Choose(char first, const char* yes, const char* no, bool& chosen) {
  SkipWhite();
  chosen = Peek() == first;
  const char* word = chosen ? yes : no;
  if (!ExpectText(word)) return false;
  // The word ends with its blank.
  int next = Peek();
  if (next == ' ' || next == '\t' || next == '\n' || next == '\r') return true;
  if (next < 0) return FailEnd();
  char read[16];
  std::snprintf(read, sizeof read, "%s%c", word, char(next));
  FailMismatch(read, word);
  return false;
}

uint32_t LcUStreamReader::ReadHeaderWord(char* word, bool& lineEnded) {
  uint32_t length = 0;
  lineEnded = true;
  for (int c = Get(); c >= 0; c = Get()) {
    if (c == '\r') continue;
    if (c == '\n') break;
    if (c == ' ') {
      if (length == 0) continue;
      lineEnded = false;
      break;
    }
    word[length++] = char(c);
    if (length < eMAX_WORD) continue;
    // A word of the longest length still needs its separator.
    int next = Peek();
    if (next == ' ' || next == '\n') {
      Get();
      lineEnded = next == '\n';
      word[length] = 0;
      return length;
    }
    word[0] = 0;
    return eMAX_WORD + 1;
  }
  word[length] = 0;
  return length;
}

bool LcUStreamReader::ReadHeader(bool strict) {
  for (const char* mark = LcUStreamHeader::kMark; *mark; ++mark) {
    int c = Get();
    if (c == *mark) continue;
    if (c < 0) return FailEnd();
    char read[24];
    size_t kept = size_t(mark - LcUStreamHeader::kMark);
    std::memcpy(read, LcUStreamHeader::kMark, kept);
    read[kept] = char(c);
    read[kept + 1] = 0;
    FailMismatch(read, LcUStreamHeader::kMark);
    return false;
  }
  bool isAscii, isDouble, isDebug, isC;
  if (!Choose('a', "ascii", "binary", isAscii) || !Choose('d', "double", "single", isDouble) ||
      !Choose('d', "debug", "release", isDebug) || !Choose('C', "C", "utf8", isC))
    return false;
  char word[eMAX_WORD + 1];
  bool lineEnded = false;
  bool first = true;
  while (!lineEnded && !error) {
    uint32_t length = ReadHeaderWord(word, lineEnded);
    if (length > eMAX_WORD) break;
    if (length == 0) continue;
    if (first) {
      first = false;
      if (!SelectFormat(word, strict)) return false;
      continue;
    }
    LcUStreamFilterSink* named = nullptr;
    for (LcUStreamFilterSink* filter : offered)
      if (std::strcmp(filter->GetName(), word) == 0) named = filter;
    if (!named) return Fail(eUNKNOWN_CONFIGURATION, "Unknown configuration");
    filters.push_back(named);
  }
  ascii = isAscii;
  doublePrecision = isDouble;
  debug = isDebug;
  textEncoding = isC ? eC : eUTF8;
  return error == 0;
}
