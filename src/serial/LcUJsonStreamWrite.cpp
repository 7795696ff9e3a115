#include <charconv>

#include "serial/LcUJsonStream.h"

bool LcUJsonStream::Attach(LcUJsonNode* node) {
  LcUJsonStreamFrame* frame = Top();
  if (state.failed || !node || !frame) {
    // A value with nowhere to go would be lost silently.
    LcUJsonNode::Delete(node);
    Fail();
    return false;
  }
  if (frame->node->Kind() == LcUJsonNode::eOBJECT) {
    node->name = LcUJsonNode::CopyText(state.pendingName.IsNull() ? "" : state.pendingName.Get());
    state.pendingName.Clear();
    if (!node->name) {
      LcUJsonNode::Delete(node);
      Fail();
      return false;
    }
  }
  LcUJsonNode::LinkAfter(frame->node, frame->last, node);
  return true;
}

void LcUJsonStream::Begin(int32_t type, int32_t& depth) {
  if (state.failed) return;
  ++depth;
  LcUJsonNode* node = LcUJsonNode::NewNode(type);
  if (!node) {
    Fail();
    return;
  }
  if (!state.root && !Top()) {
    state.root = node;
  } else if (!Attach(node)) {
    return;
  }
  Push(node);
}

void LcUJsonStream::BeginArray() {
  Begin(LcUJsonNode::eARRAY, state.arrayDepth);
}

void LcUJsonStream::BeginObject() {
  Begin(LcUJsonNode::eOBJECT, state.objectDepth);
}

void LcUJsonStream::SetKey(const char* name) {
  if (!state.failed) state.pendingName.Assign(name ? name : "");
}

void LcUJsonStream::WriteBool(bool value) {
  if (!state.failed) Attach(LcUJsonNode::CreateBool(value));
}

void LcUJsonStream::WriteDouble(double value) {
  if (!state.failed) Attach(LcUJsonNode::CreateNumber(value));
}

void LcUJsonStream::WriteInt32(int32_t value) {
  if (!state.failed) Attach(LcUJsonNode::CreateNumber(value));
}

void LcUJsonStream::WriteText(const char* text) {
  if (!state.failed) Attach(LcUJsonNode::CreateString(text ? text : ""));
}

void LcUJsonStream::WriteWideText(const char16_t* text) {
  if (state.failed) return;
  LcUStringA utf8;
  if (text && !LcUString::UTF16ToUTF8(text, utf8, true)) {
    Fail();
    return;
  }
  WriteText(utf8.IsNull() ? "" : utf8.Get());
}

namespace {
template <typename T>
LcUJsonNode* DecimalText(T value) {
  char text[24];
  std::to_chars_result r = std::to_chars(text, text + sizeof text - 1, value);
  *r.ptr = 0;
  return LcUJsonNode::CreateString(text);
}
}  // namespace

void LcUJsonStream::WriteInt64Text(int64_t value) {
  if (!state.failed) Attach(DecimalText(value));
}

void LcUJsonStream::WriteUInt64Text(uint64_t value) {
  if (!state.failed) Attach(DecimalText(value));
}

void LcUJsonStream::WriteVector3(const double (&value)[3]) {
  if (!state.failed) Attach(LcUJsonNode::CreateDoubleArray(value, 3));
}
