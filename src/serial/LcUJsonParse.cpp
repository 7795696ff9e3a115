#include <cstring>

#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonNumber.h"

namespace {
// White space is every byte from 1 to 32.
inline const char* Skip(const char* at) {
  while (*at && static_cast<unsigned char>(*at) <= 32) ++at;
  return at;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Four hex digits before end, or 0, which drops the escape. Takes up to
// four bytes, never past end.
unsigned ReadHex4(const char*& at, const char* end) {
  unsigned value = 0;
  bool good = true;
  for (int i = 0; i < 4; ++i) {
    if (at >= end) return 0;
    int d = HexDigit(*at++);
    if (d < 0) good = false;
    value = value << 4 | unsigned(d < 0 ? 0 : d);
  }
  return good ? value : 0;
}

char* PutUtf8(char* out, unsigned code) {
  if (code < 0x80) {
    *out++ = char(code);
  } else if (code < 0x800) {
    *out++ = char(0xC0 | code >> 6);
    *out++ = char(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    *out++ = char(0xE0 | code >> 12);
    *out++ = char(0x80 | ((code >> 6) & 0x3F));
    *out++ = char(0x80 | (code & 0x3F));
  } else {
    *out++ = char(0xF0 | code >> 18);
    *out++ = char(0x80 | ((code >> 12) & 0x3F));
    *out++ = char(0x80 | ((code >> 6) & 0x3F));
    *out++ = char(0x80 | (code & 0x3F));
  }
  return out;
}

class Parser {
public:
  const char* failedAt = nullptr;

  // at stands on the value; it moves past it.
  LcUJsonNode* Value(const char*& at, int depth) {
    switch (*at) {
      case 'n':
        if (std::strncmp(at, "null", 4) == 0) return Word(at, 4, LcUJsonNode::CreateNull());
        break;
      case 'f':
        if (std::strncmp(at, "false", 5) == 0) return Word(at, 5, LcUJsonNode::CreateFalse());
        break;
      case 't':
        if (std::strncmp(at, "true", 4) == 0) return Word(at, 4, LcUJsonNode::CreateTrue());
        break;
      case '"':
        return String(at);
      case '[':
        return Container(at, depth, LcUJsonNode::eARRAY);
      case '{':
        return Container(at, depth, LcUJsonNode::eOBJECT);
      default:
        if (*at == '-' || (*at >= '0' && *at <= '9')) return Number(at);
        break;
    }
    return Fail(at);
  }

private:
  LcUJsonNode* Fail(const char* at) {
    failedAt = at;
    return nullptr;
  }

  LcUJsonNode* Word(const char*& at, int length, LcUJsonNode* node) {
    if (!node) return Fail(at);
    at += length;
    return node;
  }

  // A text the scan does not take leaves a node of type 0 and takes nothing.
  LcUJsonNode* Number(const char*& at) {
    LcUJsonNode* node = LcUJsonNode::NewNode(LcUJsonNode::eFALSE);
    if (!node) return Fail(at);
    double value = 0;
    size_t taken = LcUJsonNumber::Scan(at, value);
    if (taken) {
      node->type = LcUJsonNode::eNUMBER;
      node->doubleValue = value;
      node->intValue = LcUJsonNode::TruncateInt32(value);
      at += taken;
    }
    return node;
  }

  LcUJsonNode* String(const char*& at) {
    LcUJsonNode* node = LcUJsonNode::NewNode(LcUJsonNode::eSTRING);
    if (!node) return Fail(at);
    node->stringValue = Text(at);
    if (!node->stringValue) {
      LcUJsonNode::release(node);
      return nullptr;
    }
    return node;
  }

  // at stands on the opening quote. An unterminated text ends at the terminator.
  char* Text(const char*& at) {
    const char* begin = at + 1;
    const char* end = begin;
    bool escaped = false;
    for (;;) {
      end += std::strcspn(end, "\"\\");
      if (*end != '\\') break;
      escaped = true;
      if (!end[1]) {
        ++end;
        break;
      }
      end += 2;
    }
    char* out = static_cast<char*>(LcUJsonNode::allocate(size_t(end - begin) + 1));
    if (!out) {
      failedAt = at;
      return nullptr;
    }
    if (!escaped) {
      std::memcpy(out, begin, size_t(end - begin));
      out[end - begin] = 0;
    } else {
      Decode(begin, end, out);
    }
    at = *end == '"' ? end + 1 : end;
    return out;
  }

  static void Decode(const char* from, const char* end, char* out) {
    while (from < end) {
      if (*from != '\\') {
        *out++ = *from++;
        continue;
      }
      ++from;
      if (from >= end) break;
      char c = *from++;
      switch (c) {
        case 'b': *out++ = '\b'; break;
        case 'f': *out++ = '\f'; break;
        case 'n': *out++ = '\n'; break;
        case 'r': *out++ = '\r'; break;
        case 't': *out++ = '\t'; break;
        case 'u': out = Unicode(from, end, out); break;
        default: *out++ = c; break;
      }
    }
    *out = 0;
  }

  // Zero and lone surrogates are dropped; a high surrogate takes a directly
  // following low surrogate escape.
  static char* Unicode(const char*& from, const char* end, char* out) {
    unsigned code = ReadHex4(from, end);
    if (code == 0 || (code >= 0xDC00 && code <= 0xDFFF)) return out;
    if (code >= 0xD800 && code <= 0xDBFF) {
      if (end - from < 6 || from[0] != '\\' || from[1] != 'u') return out;
      const char* low = from + 2;
      unsigned second = ReadHex4(low, end);
      if (second < 0xDC00 || second > 0xDFFF) return out;
      from = low;
      code = 0x10000 + ((code - 0xD800) << 10) + (second - 0xDC00);
    }
    return PutUtf8(out, code);
  }

  LcUJsonNode* Container(const char*& at, int depth, int32_t type) {
    if (depth >= LcUJsonNode::eMAX_DEPTH) return Fail(at);
    LcUJsonNode* node = LcUJsonNode::NewNode(type);
    if (!node) return Fail(at);
    const char close = type == LcUJsonNode::eARRAY ? ']' : '}';
    at = Skip(at + 1);
    if (*at == close) {
      ++at;
      return node;
    }
    LcUJsonNode* tail = nullptr;
    for (;;) {
      LcUJsonNode* item = type == LcUJsonNode::eARRAY ? Value(at, depth + 1) : Member(at, depth);
      if (!item) break;
      LcUJsonNode::LinkAfter(node, tail, item);
      at = Skip(at);
      if (*at == close) {
        ++at;
        return node;
      }
      if (*at != ',') {
        Fail(at);
        break;
      }
      at = Skip(at + 1);
    }
    LcUJsonNode::Delete(node);
    return nullptr;
  }

  // A string, white space, a colon, white space and a value.
  LcUJsonNode* Member(const char*& at, int depth) {
    if (*at != '"') return Fail(at);
    char* name = Text(at);
    if (!name) return nullptr;
    at = Skip(at);
    LcUJsonNode* item = nullptr;
    if (*at != ':') {
      Fail(at);
    } else {
      at = Skip(at + 1);
      item = Value(at, depth + 1);
    }
    if (!item) {
      LcUJsonNode::release(name);
      return nullptr;
    }
    item->name = name;
    return item;
  }
};
}  // namespace

LcUJsonNode* LcUJsonNode::Parse(const char* text) {
  return Parse(text, nullptr, false);
}

LcUJsonNode* LcUJsonNode::Parse(const char* text, const char** end, bool requireEnd) {
  jsonErrorPosition = nullptr;
  if (end) *end = text;
  if (!text) return nullptr;
  Parser parser;
  const char* at = Skip(text);
  LcUJsonNode* root = parser.Value(at, 0);
  if (root && requireEnd) {
    at = Skip(at);
    if (*at) {
      Delete(root);
      root = nullptr;
      parser.failedAt = at;
    }
  }
  if (!root) {
    jsonErrorPosition = parser.failedAt ? parser.failedAt : at;
    if (end) *end = jsonErrorPosition;
    return nullptr;
  }
  if (end) *end = at;
  return root;
}
