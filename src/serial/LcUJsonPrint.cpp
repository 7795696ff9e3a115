#include <cstring>

#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonNumber.h"

namespace {
// Text grows in one block from the allocate hook; after a failed growth
// every write is dropped and the print gives null.
class Printer {
public:
  explicit Printer(bool pretty) : pretty(pretty) {}
  ~Printer() {
    if (buffer) LcUJsonNode::release(buffer);
  }

  char* Take(size_t* length) {
    if (!Reserve(1)) return nullptr;
    buffer[used] = 0;
    if (length) *length = used;
    char* text = buffer;
    buffer = nullptr;
    return text;
  }

  void Value(const LcUJsonNode* node, int depth) {
    switch (node->Kind()) {
      case LcUJsonNode::eFALSE: Put("false", 5); break;
      case LcUJsonNode::eTRUE: Put("true", 4); break;
      case LcUJsonNode::eNULL: Put("null", 4); break;
      case LcUJsonNode::eNUMBER: Number(node->doubleValue); break;
      case LcUJsonNode::eSTRING: String(node->stringValue); break;
      case LcUJsonNode::eARRAY: Array(node, depth); break;
      case LcUJsonNode::eOBJECT: Object(node, depth); break;
      default: break;
    }
  }

private:
  bool Reserve(size_t more) {
    if (failed) return false;
    if (used + more <= size) return true;
    size_t grown = size ? size : 256;
    while (grown < used + more) grown *= 2;
    char* fresh = static_cast<char*>(LcUJsonNode::allocate(grown));
    if (!fresh) {
      failed = true;
      return false;
    }
    if (buffer) {
      std::memcpy(fresh, buffer, used);
      LcUJsonNode::release(buffer);
    }
    buffer = fresh;
    size = grown;
    return true;
  }

  void Put(const char* text, size_t length) {
    if (!Reserve(length)) return;
    std::memcpy(buffer + used, text, length);
    used += length;
  }

  void Put(char c) {
    if (Reserve(1)) buffer[used++] = c;
  }

  void Tabs(int count) {
    if (!Reserve(size_t(count))) return;
    std::memset(buffer + used, '\t', size_t(count));
    used += size_t(count);
  }

  void Number(double value) {
    char text[LcUJsonNumber::ePRINT_SIZE];
    Put(text, size_t(LcUJsonNumber::Print(value, text)));
  }

  // A null text prints as nothing at all.
  void String(const char* text) {
    if (!text) return;
    static const char kHex[] = "0123456789abcdef";
    const unsigned char* at = reinterpret_cast<const unsigned char*>(text);
    Put('"');
    for (;;) {
      const unsigned char* run = at;
      while (*at >= 32 && *at != '"' && *at != '\\') ++at;
      Put(reinterpret_cast<const char*>(run), size_t(at - run));
      unsigned char c = *at;
      if (!c) break;
      ++at;
      switch (c) {
        case '"': Put("\\\"", 2); break;
        case '\\': Put("\\\\", 2); break;
        case '\b': Put("\\b", 2); break;
        case '\f': Put("\\f", 2); break;
        case '\n': Put("\\n", 2); break;
        case '\r': Put("\\r", 2); break;
        case '\t': Put("\\t", 2); break;
        default: {
          char escape[6] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 15]};
          Put(escape, 6);
        }
      }
    }
    Put('"');
  }

  void Array(const LcUJsonNode* node, int depth) {
    Put('[');
    for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
      Value(item, depth + 1);
      if (item->next) pretty ? Put(", ", 2) : Put(',');
    }
    Put(']');
  }

  void Object(const LcUJsonNode* node, int depth) {
    Put('{');
    if (pretty) Put('\n');
    for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
      if (pretty) Tabs(depth + 1);
      String(item->name);
      pretty ? Put(":\t", 2) : Put(':');
      Value(item, depth + 1);
      if (item->next) Put(',');
      if (pretty) Put('\n');
    }
    if (pretty) Tabs(depth);
    Put('}');
  }

  bool pretty;
  bool failed = false;
  char* buffer = nullptr;
  size_t used = 0;
  size_t size = 0;
};
}  // namespace

char* LcUJsonNode::Print(const LcUJsonNode* item, bool pretty) {
  return Print(item, pretty, nullptr);
}

char* LcUJsonNode::Print(const LcUJsonNode* item, bool pretty, size_t* length) {
  if (!item) return nullptr;
  Printer printer(pretty);
  printer.Value(item, 0);
  return printer.Take(length);
}
