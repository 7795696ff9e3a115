#include <cstring>

#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonNumber.h"

namespace {
// Trees are larger than the caches: while one item is handled, the next
// one's node is fetched.
inline void Prefetch(const LcUJsonNode* item) {
  if (item->next) __builtin_prefetch(item->next);
}

// The printed size of a string: quotes, and each byte with its escape.
size_t StringSize(const char* text) {
  if (!text) return 0;
  size_t size = 2;
  for (const unsigned char* at = reinterpret_cast<const unsigned char*>(text); *at; ++at) {
    if (*at >= 32 && *at != '"' && *at != '\\')
      ++size;
    else if (*at == '"' || *at == '\\' || *at == '\b' || *at == '\f' || *at == '\n' || *at == '\r' || *at == '\t')
      size += 2;
    else
      size += 6;
  }
  return size;
}

// At least the printed size; exact but for fractions and whole numbers
// from 1e17 on, which count their longest form. The text is then written
// once into one block.
size_t Bound(const LcUJsonNode* node, int depth, bool pretty) {
  switch (node->Kind()) {
    case LcUJsonNode::eFALSE: return 5;
    case LcUJsonNode::eTRUE:
    case LcUJsonNode::eNULL: return 4;
    case LcUJsonNode::eNUMBER: return size_t(LcUJsonNumber::PrintedSizeBound(node->doubleValue));
    case LcUJsonNode::eSTRING: return StringSize(node->stringValue);
    case LcUJsonNode::eARRAY: {
      // "[", "]" and a separator after all items but the last.
      size_t size = 2;
      for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
        Prefetch(item);
        size += Bound(item, depth + 1, pretty) + (item->next ? (pretty ? 2 : 1) : 0);
      }
      return size;
    }
    case LcUJsonNode::eOBJECT: {
      // Braces, with a newline and the closing tabs when pretty; each member
      // is its tabs, name, colon (and tab), value, comma but for the last,
      // and newline.
      size_t size = pretty ? 3 + size_t(depth) : 2;
      for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
        Prefetch(item);
        size += StringSize(item->name) + Bound(item, depth + 1, pretty) + (pretty ? size_t(depth) + 4 : 1) +
                (item->next ? 1 : 0);
      }
      return size;
    }
    default: return 0;
  }
}

class Printer {
public:
  Printer(char* buffer, bool pretty) : pretty(pretty), at(buffer) {}

  char* End() const { return at; }

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
  void Put(const char* text, size_t length) {
    std::memcpy(at, text, length);
    at += length;
  }

  void Put(char c) { *at++ = c; }

  void Tabs(int count) {
    std::memset(at, '\t', size_t(count));
    at += count;
  }

  void Number(double value) {
    char text[LcUJsonNumber::ePRINT_SIZE];
    Put(text, size_t(LcUJsonNumber::Print(value, text)));
  }

  // A null text prints as nothing at all.
  void String(const char* text) {
    if (!text) return;
    static const char kHex[] = "0123456789abcdef";
    const unsigned char* in = reinterpret_cast<const unsigned char*>(text);
    Put('"');
    for (;;) {
      const unsigned char* run = in;
      while (*in >= 32 && *in != '"' && *in != '\\') ++in;
      Put(reinterpret_cast<const char*>(run), size_t(in - run));
      unsigned char c = *in;
      if (!c) break;
      ++in;
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
      Prefetch(item);
      Value(item, depth + 1);
      if (item->next) pretty ? Put(", ", 2) : Put(',');
    }
    Put(']');
  }

  void Object(const LcUJsonNode* node, int depth) {
    Put('{');
    if (pretty) Put('\n');
    for (const LcUJsonNode* item = node->firstChild; item; item = item->next) {
      Prefetch(item);
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
  char* at;
};
}  // namespace

char* LcUJsonNode::Print(const LcUJsonNode* item, bool pretty) {
  return Print(item, pretty, nullptr);
}

char* LcUJsonNode::Print(const LcUJsonNode* item, bool pretty, size_t* length) {
  if (!item) return nullptr;
  char* text = static_cast<char*>(allocate(Bound(item, 0, pretty) + 1));
  if (!text) return nullptr;
  Printer printer(text, pretty);
  printer.Value(item, 0);
  *printer.End() = 0;
  if (length) *length = size_t(printer.End() - text);
  return text;
}
