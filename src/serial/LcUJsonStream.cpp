#include "serial/LcUJsonStream.h"

#include <new>

#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUJsonStream::component;

bool LcUJsonStream::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUJsonStream") != 1) return true;
  LcUError::Initialize();
  LcUString::Initialize();
  // Frames and their list come from the sized allocator.
  LcUMemory::Initialize();
  return true;
}

void LcUJsonStream::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUMemory::Terminate();
  LcUString::Terminate();
  LcUError::Terminate();
}

LcUJsonStream::~LcUJsonStream() {
  FreeTree();
}

void LcUJsonStream::Fail() {
  state.failed = true;
}

LcUJsonStreamFrame* LcUJsonStream::Top() const {
  int32_t n = state.frames.Size();
  return n ? state.frames[n - 1] : nullptr;
}

bool LcUJsonStream::Push(LcUJsonNode* node) {
  void* block = LcUMemory::Alloc(sizeof(LcUJsonStreamFrame), alignof(LcUJsonStreamFrame), 0);
  if (!block) {
    Fail();
    return false;
  }
  LcUJsonNode* last = node->firstChild;
  while (last && last->next) last = last->next;
  LcUJsonStreamFrame* frame = new (block) LcUJsonStreamFrame{node, 0, node->firstChild, last};
  if (!state.frames.Add(frame)) {
    LcUMemory::Free(frame, sizeof(LcUJsonStreamFrame), alignof(LcUJsonStreamFrame));
    Fail();
    return false;
  }
  return true;
}

void LcUJsonStream::Pop() {
  LcUJsonStreamFrame* frame = Top();
  if (!frame) return;
  state.frames.SetSize(state.frames.Size() - 1);
  LcUMemory::Free(frame, sizeof(LcUJsonStreamFrame), alignof(LcUJsonStreamFrame));
}

void LcUJsonStream::FreeTree() {
  while (Top()) Pop();
  state.frames.Free();
  LcUJsonNode::Delete(state.root);
  state.root = nullptr;
  state.objectDepth = 0;
}

void LcUJsonStream::Clear() {
  FreeTree();
  state.pendingName.Clear();
  state.failed = false;
}

bool LcUJsonStream::Finish() {
  FreeTree();
  return !state.failed;
}

bool LcUJsonStream::LoadText(const char* text) {
  Clear();
  state.root = LcUJsonNode::Parse(text);
  if (state.root && state.root->Kind() != LcUJsonNode::eARRAY && state.root->Kind() != LcUJsonNode::eOBJECT) {
    LcUJsonNode::Delete(state.root);
    state.root = nullptr;
  }
  if (!state.root) Fail();
  return state.root != nullptr;
}

namespace {
bool PrintNode(const LcUJsonNode* node, bool pretty, LcUStringA& out) {
  size_t length = 0;
  char* text = node ? LcUJsonNode::Print(node, pretty, &length) : nullptr;
  if (!text || length > 0x7FFFFFF0u) {
    if (text) LcUJsonNode::release(text);
    out.Assign("");
    return false;
  }
  out.Assign(text, int32_t(length));
  LcUJsonNode::release(text);
  return !out.IsNull();
}
}  // namespace

bool LcUJsonStream::PrintText(bool pretty, LcUStringA& out) {
  bool printed = !state.failed && PrintNode(state.root, pretty, out);
  if (!printed) out.Assign("");
  FreeTree();
  return printed;
}

bool LcUJsonStream::Reformat(const char* text, bool pretty, LcUStringA& out) {
  LcUJsonNode* root = LcUJsonNode::Parse(text);
  bool printed = PrintNode(root, pretty, out);
  LcUJsonNode::Delete(root);
  return printed;
}

void LcUJsonStream::LeaveArray() {
  --state.arrayDepth;
  if (!state.failed) Pop();
}

void LcUJsonStream::LeaveObject() {
  --state.objectDepth;
  if (!state.failed) Pop();
}

void LcUJsonStream::GuardedLeaveArray() {
  if (!state.failed) LeaveArray();
}

void LcUJsonStream::GuardedLeaveObject() {
  if (!state.failed) LeaveObject();
}
