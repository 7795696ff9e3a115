#include "serial/LcUStreamWriter.h"

#include "serial/LcUStreamFilterSink.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamHeader.h"
#include "serial/LcUStreamSink.h"

LcUStreamWriter::LcUStreamWriter(LcUStreamSink* sink, uint32_t formatVersion) : LcUStream(sink, formatVersion) {}

LcUStreamWriter::~LcUStreamWriter() = default;

bool LcUStreamWriter::WriteBegin(bool writeHeader, bool writeDefinitions) {
  error = 0;
  objectIds.Clear();
  nextId = 100;
  if (format) {
    formatName.Assign(format->name.Get());
    formatVersion = format->version;
  }
  bitWord = 0;
  bitsFree = 32;
  bitWordCount = 0;
  indent = 2;
  alignState = 0;
  blockStart = blockEnd = blockCurrent = nullptr;
  // Each begin that fails ends the ones before it.
  for (size_t i = 0; i < filters.size(); ++i) {
    if (filters[i]->WriteBegin(this)) continue;
    for (size_t j = 0; j < i; ++j) filters[j]->WriteEnd();
    return Fail(eWRITE_BEGIN_FAILED, "WriteBegin failed");
  }
  if (!sink->WriteBegin(this)) {
    for (LcUStreamFilterSink* filter : filters) filter->WriteEnd();
    return Fail(eWRITE_BEGIN_FAILED, "WriteBegin failed");
  }
  LinkChain();
  if (writeHeader) {
    LcUStringA text;
    LcUStreamHeader::Compose(*this, text);
    blockSink = sink;
    WriteText(text.Get(), uint32_t(text.Length()));
    Flush();
  }
  blockSink = head;
  if (writeHeader && format && format->writeDefinitions) WriteDefinitions(writeDefinitions);
  return error == 0;
}

bool LcUStreamWriter::WriteEnd() {
  if (error == eNOT_BEGUN) return false;
  Flush();
  bool ended = true;
  for (LcUStreamFilterSink* filter : filters) ended = filter->WriteEnd() && ended;
  ended = sink->WriteEnd() && ended;
  if (!ended) Fail(eWRITE_END_FAILED, "WriteEnd failed");
  UnlinkChain();
  objectIds.Clear();
  blockSink = nullptr;
  blockStart = blockEnd = blockCurrent = nullptr;
  alignState = 0;
  return error == 0;
}

void LcUStreamWriter::Flush() {
  if (!blockStart || error) return;
  if (debug) WriteToken(eSYNC, 0, false);
  if (!ascii) Align(8);
  if (!CommitBlock()) return;
  if (!blockSink->Flush()) Fail(eFLUSH_FAILED, "Flush Failed");
}

bool LcUStreamWriter::NextBlock() {
  uint8_t* block = nullptr;
  uint32_t size = 0;
  if (!blockSink->GetWriteBlock(&block, &size) || !block || size == 0) return Fail(eWRITE_NO_BLOCK, "Write Failed");
  if (!ascii && (reinterpret_cast<uintptr_t>(block) & 7)) return Fail(eNOT_ALIGNED, "Block is not aligned");
  blockStart = blockCurrent = block;
  blockEnd = block + size;
  alignState = ascii ? 1 : 8;
  return true;
}

bool LcUStreamWriter::CommitBlock() {
  if (!blockStart) return true;
  uint32_t used = uint32_t(blockCurrent - blockStart);
  blockStart = blockEnd = blockCurrent = nullptr;
  alignState = 0;
  if (!blockSink->CommitWrite(used)) return Fail(eWRITE_COMMIT_FAILED, "Write Failed");
  return true;
}

void LcUStreamWriter::Align(uint32_t size) {
  if (alignState == int32_t(size)) return;
  if (!blockStart) {
    NextBlock();
    return;
  }
  uint32_t pad = uint32_t(-(blockCurrent - blockStart)) & (size - 1);
  if (pad > uint32_t(blockEnd - blockCurrent)) {
    // A pad that does not fit ends the block; the next one starts aligned.
    if (CommitBlock()) NextBlock();
    return;
  }
  std::memset(blockCurrent, 0, pad);
  blockCurrent += pad;
  alignState = int32_t(size);
}

void LcUStreamWriter::WriteText(const char* text, uint32_t length) {
  while (length > 0 && !error) {
    if (blockCurrent == blockEnd && !(CommitBlock() && NextBlock())) return;
    uint32_t room = uint32_t(blockEnd - blockCurrent);
    uint32_t n = length < room ? length : room;
    std::memcpy(blockCurrent, text, n);
    blockCurrent += n;
    text += n;
    length -= n;
    alignState = 1;
  }
}

void LcUStreamWriter::WriteIndent() {
  static const char blanks[] = "                                                                ";
  for (int32_t left = indent; left > 0 && !error; left -= 64) WriteText(blanks, uint32_t(left < 64 ? left : 64));
}
