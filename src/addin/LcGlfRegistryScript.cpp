#include "addin/LcGlfRegistryScript.h"

#include <cstdlib>

namespace {
struct Token {
  LcUString text;
  bool quoted = false;
  int32_t line = 0;
  bool Is(const char16_t* word) const { return !quoted && LcUString::Equal(text.Get(), word); }
  bool IsNoCase(const char16_t* word) const { return !quoted && LcUString::CompareNoCase(text.Get(), word) == 0; }
};

// Tokens are runs of non-blank text, or 'quoted' text with '' for a quote.
class Tokenizer {
public:
  explicit Tokenizer(const LcUString& text) : p(text.Get() ? text.Get() : u"") {}

  bool Next(Token& token) {
    while (*p && (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n')) {
      if (*p == '\n') ++line;
      ++p;
    }
    token.text.Clear();
    token.quoted = false;
    token.line = line;
    if (!*p) return false;
    if (*p == '\'') {
      token.quoted = true;
      for (++p;; ++p) {
        if (!*p) {
          unterminated = true;
          return false;
        }
        if (*p == '\'') {
          if (p[1] != '\'') break;
          ++p;
        }
        if (*p == '\n') ++line;
        token.text.Append(*p);
      }
      ++p;
      return true;
    }
    const char16_t* start = p;
    while (*p && *p != ' ' && *p != '\t' && *p != '\r' && *p != '\n' && *p != '\'') ++p;
    token.text.Assign(start, int32_t(p - start));
    return true;
  }

  int32_t Line() const { return line; }
  bool unterminated = false;

private:
  const char16_t* p;
  int32_t line = 1;
};

class Parser {
public:
  Parser(const LcUString& text, LcUStringA& error) : tokens(text), error(error) {}

  bool Script(LcGlfRegistryScript::Key& root) {
    Token t;
    if (!Next(t) || !(t.IsNoCase(u"HKCR") || t.IsNoCase(u"HKEY_CLASSES_ROOT")))
      return Fail("the script must start with HKCR");
    if (!Expect(u"{")) return false;
    if (!Body(root)) return false;
    if (Next(t)) return Fail("text after the closing brace");
    return true;
  }

private:
  bool Body(LcGlfRegistryScript::Key& key) {
    if (depth == kMaxDepth) return Fail("keys nested too deep");
    ++depth;
    bool ok = Entries(key);
    --depth;
    return ok;
  }

  bool Entries(LcGlfRegistryScript::Key& key) {
    Token t;
    while (true) {
      if (!Next(t)) return Fail("missing closing brace");
      if (t.Is(u"}")) return true;
      if (t.IsNoCase(u"val")) {
        LcGlfRegistryScript::Value value;
        if (!Next(t)) return Fail("value name expected");
        value.name = t.text;
        if (!Expect(u"=") || !ValueData(value)) return false;
        key.values.push_back(value);
        continue;
      }
      LcGlfRegistryScript::Key child;
      if (t.IsNoCase(u"NoRemove") || t.IsNoCase(u"ForceRemove")) {
        child.removal = t.IsNoCase(u"NoRemove") ? LcGlfRegistryScript::eKEY_NO_REMOVE
                                                 : LcGlfRegistryScript::eKEY_FORCE_REMOVE;
        if (!Next(t)) return Fail("key name expected");
      }
      if (!t.quoted && (t.Is(u"{") || t.Is(u"}") || t.Is(u"="))) return Fail("key name expected");
      child.name = t.text;
      if (!Peek(t)) return Fail("missing closing brace");
      if (t.Is(u"=")) {
        Take();
        LcGlfRegistryScript::Value value;
        if (!ValueData(value)) return false;
        child.values.push_back(value);
        if (!Peek(t)) return Fail("missing closing brace");
      }
      if (t.Is(u"{")) {
        Take();
        if (!Body(child)) return false;
      }
      key.children.push_back(child);
    }
  }

  bool ValueData(LcGlfRegistryScript::Value& value) {
    Token type, data;
    if (!Next(type) || !Next(data)) return Fail("value expected");
    if (type.IsNoCase(u"s")) {
      value.type = LcGlfRegistryScript::eVALUE_STRING;
      value.text = data.text;
      return true;
    }
    if (type.IsNoCase(u"d")) {
      LcUStringA digits;
      if (!LcUString::WideToAscii(data.text.Get(), digits) || digits.IsEmpty()) return Fail("number expected");
      char* end = nullptr;
      unsigned long long number = std::strtoull(digits.Get(), &end, 0);
      if (*end || number > 0xFFFFFFFFull) return Fail("number expected");
      value.type = LcGlfRegistryScript::eVALUE_DWORD;
      value.number = uint32_t(number);
      return true;
    }
    return Fail("value type must be s or d");
  }

  bool Expect(const char16_t* word) {
    Token t;
    if (Next(t) && t.Is(word)) return true;
    LcUStringA narrow;
    LcUString::UTF16ToUTF8(word, narrow, true);
    LcUStringA text;
    text.Format("'%s' expected", narrow.Get());
    return Fail(text.Get());
  }

  bool Next(Token& t) {
    if (hasPeeked) {
      bool ok = hasPeeked == 1;
      hasPeeked = 0;
      t = peeked;
      return ok;
    }
    return tokens.Next(t);
  }
  bool Peek(Token& t) {
    if (!hasPeeked) hasPeeked = tokens.Next(peeked) ? 1 : -1;
    t = peeked;
    return hasPeeked == 1;
  }
  void Take() { hasPeeked = 0; }

  // The first failure stands; an open quote explains whatever follows.
  bool Fail(const char* what) {
    if (error.IsNull())
      error.Format("registry script line %d: %s", tokens.Line(), tokens.unterminated ? "unterminated quoted text" : what);
    return false;
  }

  static constexpr int kMaxDepth = 32;
  Tokenizer tokens;
  LcUStringA& error;
  int depth = 0;
  Token peeked;
  int hasPeeked = 0;
};
}  // namespace

bool LcGlfRegistryScript::Parse(const char* text, int64_t length, const char16_t* modulePath) {
  root = Key();
  error.Free();
  LcUString script;
  if (!text || length < 0 || length > INT32_MAX || !LcUString::UTF8ToUTF16(text, int32_t(length), script)) {
    error.Assign("registry script: not UTF-8 text");
    return false;
  }
  LcUString module(modulePath ? modulePath : u"");
  module.Replace(u"'", u"''", 0, true);  // the path stands inside quotes
  script.Replace(u"%MODULE%", module.Get(), 0, true);
  Parser parser(script, error);
  return parser.Script(root);
}
