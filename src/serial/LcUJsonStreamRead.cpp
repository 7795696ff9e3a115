#include <charconv>
#include <cmath>

#include "serial/LcUJsonStream.h"

LcUJsonNode* LcUJsonStream::Next() {
  if (state.failed) return nullptr;
  LcUJsonStreamFrame* frame = Top();
  LcUJsonNode* node = nullptr;
  if (frame && frame->node->Kind() == LcUJsonNode::eARRAY) {
    node = frame->item;
    if (node) {
      frame->item = node->next;
      ++frame->index;
    }
  } else if (frame && !state.pendingName.IsEmpty()) {
    node = LcUJsonNode::ObjectItem(frame->node, state.pendingName.Get());
    state.pendingName.Clear();
  }
  if (!node) Fail();
  return node;
}

LcUJsonNode* LcUJsonStream::NextOf(int32_t kind) {
  LcUJsonNode* node = Next();
  if (node && node->Kind() != kind) {
    Fail();
    return nullptr;
  }
  return node;
}

LcUJsonNode* LcUJsonStream::Enter(int32_t kind, int32_t& depth) {
  ++depth;
  if (state.failed) return nullptr;
  LcUJsonNode* node = Top() ? Next() : state.root;
  if (!node || node->Kind() != kind) {
    Fail();
    return nullptr;
  }
  return Push(node) ? node : nullptr;
}

int32_t LcUJsonStream::EnterArray() {
  LcUJsonNode* node = Enter(LcUJsonNode::eARRAY, state.arrayDepth);
  return node ? LcUJsonNode::ArraySize(node) : 0;
}

int32_t LcUJsonStream::EnterArray(int32_t expected) {
  int32_t count = EnterArray();
  if (count != expected) Fail();
  return count;
}

bool LcUJsonStream::EnterObject() {
  return Enter(LcUJsonNode::eOBJECT, state.objectDepth) != nullptr;
}

bool LcUJsonStream::FindKey(const char* name) {
  if (state.failed) return false;
  LcUJsonStreamFrame* frame = Top();
  if (!frame || frame->node->Kind() != LcUJsonNode::eOBJECT) {
    Fail();
    return false;
  }
  state.pendingName.Assign(name ? name : "");
  if (LcUJsonNode::ObjectItem(frame->node, state.pendingName.Get())) return true;
  state.pendingName.Clear();
  return false;
}

bool LcUJsonStream::ReadBool() {
  LcUJsonNode* node = Next();
  if (!node) return false;
  if (node->Kind() == LcUJsonNode::eTRUE) return true;
  if (node->Kind() != LcUJsonNode::eFALSE) Fail();
  return false;
}

double LcUJsonStream::ReadDouble() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eNUMBER);
  return node ? node->doubleValue : 0.0;
}

int32_t LcUJsonStream::ReadInt32() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eNUMBER);
  return node ? node->intValue : 0;
}

namespace {
const double kTwo63 = 9223372036854775808.0;

// Toward zero; NaN and values beyond the type give its lowest value, as
// the processor's own conversion does.
int64_t TruncateInt64(double value) {
  if (!(value >= -kTwo63 && value < kTwo63)) return INT64_MIN;
  return int64_t(value);
}

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// "%lld" and "%llu" as the "C" locale scans them: leading blanks, a sign,
// digits; what follows the digits is ignored. Overflow fails.
template <typename T>
bool ScanDecimal(const char* text, T& value) {
  value = 0;
  if (!text) return false;
  while (IsBlank(*text)) ++text;
  if (*text == '+') ++text;
  const char* end = text;
  while (*end == '-' || (*end >= '0' && *end <= '9')) ++end;
  std::from_chars_result r = std::from_chars(text, end, value);
  if (r.ec != std::errc()) {
    value = 0;
    return false;
  }
  return true;
}
}  // namespace

int64_t LcUJsonStream::ReadInt64() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eNUMBER);
  return node ? TruncateInt64(node->doubleValue) : 0;
}

uint64_t LcUJsonStream::ReadUInt64() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eNUMBER);
  if (!node) return 0;
  double value = node->doubleValue;
  if (value >= kTwo63) return uint64_t(TruncateInt64(value - kTwo63)) | (uint64_t(1) << 63);
  return uint64_t(TruncateInt64(value));
}

bool LcUJsonStream::ReadText(LcUStringA& out) {
  LcUJsonNode* node = NextOf(LcUJsonNode::eSTRING);
  out.Assign(node && node->stringValue ? node->stringValue : "");
  return node != nullptr;
}

bool LcUJsonStream::ReadWideText(LcUString& out) {
  LcUJsonNode* node = NextOf(LcUJsonNode::eSTRING);
  const char* text = node && node->stringValue ? node->stringValue : "";
  if (LcUString::UTF8ToUTF16(text, -1, out) && node) return true;
  if (node) Fail();
  out.Assign(u"");
  return false;
}

int64_t LcUJsonStream::ReadInt64Text() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eSTRING);
  int64_t value = 0;
  if (node && !ScanDecimal(node->stringValue, value)) Fail();
  return value;
}

uint64_t LcUJsonStream::ReadUInt64Text() {
  LcUJsonNode* node = NextOf(LcUJsonNode::eSTRING);
  uint64_t value = 0;
  if (node && !ScanDecimal(node->stringValue, value)) Fail();
  return value;
}

bool LcUJsonStream::ReadVector3(double (&value)[3]) {
  value[0] = value[1] = value[2] = 0;
  LcUJsonNode* node = NextOf(LcUJsonNode::eARRAY);
  if (!node) return false;
  if (LcUJsonNode::ArraySize(node) != 3) {
    Fail();
    return false;
  }
  double read[3];
  int i = 0;
  for (LcUJsonNode* item = node->firstChild; item; item = item->next, ++i) {
    if (item->Kind() != LcUJsonNode::eNUMBER) {
      Fail();
      return false;
    }
    read[i] = item->doubleValue;
  }
  for (i = 0; i < 3; ++i) value[i] = read[i];
  return true;
}

bool LcUJsonStream::ReadHeader(LcUStringA& type, int32_t& version) {
  SetKey("Type");
  ReadText(type);
  SetKey("Version");
  version = ReadInt32();
  if (state.failed) {
    type.Assign("");
    version = 0;
  }
  return !state.failed;
}
