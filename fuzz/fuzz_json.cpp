#include <cstddef>
#include <cstdint>
#include <string>

#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonStream.h"

namespace {
// Walks what was loaded with the cursor, reading each value as its own
// type or, when the input says so, as another, and checks that the
// stream's failure stays set once set.
void Walk(LcUJsonStream& stream, const LcUJsonNode* node, uint8_t mood, int depth) {
  for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
    if (node->Kind() == LcUJsonNode::eOBJECT && !stream.FindKey(item->name)) continue;
    bool wasFailed = stream.Failed();
    int kind = (mood & 1) ? (item->Kind() + mood) % 7 : item->Kind();
    mood = uint8_t(mood * 33 + 7);
    switch (kind) {
      case LcUJsonNode::eFALSE:
      case LcUJsonNode::eTRUE: stream.ReadBool(); break;
      case LcUJsonNode::eNULL: stream.ReadInt64Text(); break;
      case LcUJsonNode::eNUMBER:
        stream.ReadDouble();
        break;
      case LcUJsonNode::eSTRING: {
        LcUString text;
        stream.ReadWideText(text);
        break;
      }
      case LcUJsonNode::eARRAY:
        if (depth < 64 && stream.EnterArray() >= 0) {
          if (!stream.Failed()) Walk(stream, item, mood, depth + 1);
          stream.LeaveArray();
        } else {
          double v[3];
          stream.ReadVector3(v);
        }
        break;
      default:
        if (depth < 64 && stream.EnterObject()) Walk(stream, item, mood, depth + 1);
        stream.GuardedLeaveObject();
        break;
    }
    if (wasFailed && !stream.Failed()) __builtin_trap();
  }
}
}  // namespace

// The input is the text, so that outside JSON texts seed it as they are;
// its last byte and length steer the walk.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 || size > 1 << 20) return 0;
  LcUJsonStream::Initialize();
  std::string text(reinterpret_cast<const char*>(data), size);
  uint8_t mood = uint8_t(data[size - 1] ^ size);
  for (bool requireEnd : {false, true}) {
    const char* end = nullptr;
    LcUJsonNode* root = LcUJsonNode::Parse(text.c_str(), &end, requireEnd);
    if (!root && (LcUJsonNode::jsonErrorPosition < text.c_str() ||
                  LcUJsonNode::jsonErrorPosition > text.c_str() + text.size()))
      __builtin_trap();
    for (bool pretty : {false, true}) {
      char* printed = LcUJsonNode::Print(root, pretty);
      if (printed) LcUJsonNode::release(printed);
    }
    LcUJsonNode* copy = LcUJsonNode::Duplicate(root, true);
    LcUJsonNode::Delete(copy);
    LcUJsonNode::Delete(root);
  }
  {
    LcUJsonStream stream;
    if (stream.LoadText(text.c_str())) {
      const LcUJsonNode* root = stream.Root();
      if (root->Kind() == LcUJsonNode::eARRAY ? stream.EnterArray() >= 0 : stream.EnterObject())
        Walk(stream, root, mood, 0);
      stream.Finish();
    }
  }
  LcUJsonStream::Terminate();
  return 0;
}
