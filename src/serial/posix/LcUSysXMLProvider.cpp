#include "serial/LcUSysXMLProvider.h"

#include <pugixml.hpp>

#include <charconv>
#include <cstring>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUError.h"

namespace {
// A reading stream takes its version from what it reads; until then the current one.
constexpr int32_t kDefaultVersion = 441;

void ToUTF8(const char16_t* text, LcUStringA& out) {
  LcUString::UTF16ToUTF8(text ? text : u"", out, true);
}

void FromUTF8(const char* text, LcUString& out) {
  LcUString::UTF8ToUTF16(text ? text : "", -1, out);
}

// Counts what a save would write, so that the text is made once at its size.
struct CountingWriter : pugi::xml_writer {
  size_t size = 0;
  void write(const void*, size_t bytes) override { size += bytes; }
};

struct TextWriter : pugi::xml_writer {
  LcUStringA& text;
  explicit TextWriter(LcUStringA& text) : text(text) {}
  void write(const void* data, size_t size) override { text.Append(static_cast<const char*>(data), int32_t(size)); }
};

// An element stream over a pugixml document. Each level keeps the element
// it stands in and the last child entered there, from which reading looks on.
class PugiStream : public LcUXMLDOMStream {
public:
  PugiStream(bool writing, const char16_t* target, int32_t version, int32_t indent, int32_t declaration)
      : writing(writing), target(target), indent(indent), declaration(declaration) {
    this->version = version;
    levels.push_back({document, pugi::xml_node()});
  }

  bool Load(const char16_t* source, int32_t flag) {
    pugi::xml_parse_result result;
    LcUStringA utf8;
    ToUTF8(source, utf8);
    if (flag & eSOURCE_FILE)
      result = document.load_file(utf8.Get());
    else
      result = document.load_buffer(utf8.Get(), size_t(utf8.Length()), pugi::parse_default, pugi::encoding_utf8);
    if (!result) LcUError::LogF("LcUSysXMLProvider- %s at offset %d\n", result.description(), int(result.offset));
    return bool(result);
  }

  int32_t IsWriting() const override { return writing ? 1 : 0; }

  void GetPositionText(LcUString& out) const override {
    LcUStringA path;
    for (size_t i = 1; i < levels.size(); ++i) {
      path.Append("/");
      path.Append(levels[i].node.name());
    }
    if (path.IsEmpty()) path.Assign("/");
    FromUTF8(path.Get(), out);
  }

  bool BeginElement(const char* name, int32_t) override {
    Level& here = levels.back();
    pugi::xml_node child;
    if (writing) {
      child = here.node.append_child(name);
    } else {
      for (child = Next(here); child && std::strcmp(child.name(), name) != 0; child = child.next_sibling()) {
      }
      if (child) here.last = child;
    }
    if (!child) return false;
    levels.push_back({child, pugi::xml_node()});
    return true;
  }

  bool NextChildName(LcUStringA& out) override {
    if (writing) return false;
    pugi::xml_node child = Next(levels.back());
    if (!child) return false;
    out.Assign(child.name());
    return true;
  }

  bool EndElement(const char* name) override {
    if (levels.size() < 2 || std::strcmp(levels.back().node.name(), name ? name : "") != 0) return false;
    levels.pop_back();
    return true;
  }

  bool NarrowAttribute(const char* name, LcUStringA& value) override {
    pugi::xml_node node = levels.back().node;
    if (writing) return Attribute(name).set_value(value.Get() ? value.Get() : "");
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute) return false;
    value.Assign(attribute.value());
    return true;
  }

  bool NameAttribute(const char* name, LcUString& value) override { return StringAttribute(name, value, nullptr); }

  bool IntAttribute(const char* name, int32_t& value) override {
    if (writing) return Attribute(name).set_value(value);
    pugi::xml_attribute attribute = levels.back().node.attribute(name);
    return attribute && ParseInt(attribute.value(), value);
  }

  bool StringAttribute(const char* name, LcUString& value, const char16_t* defaultValue) override {
    if (writing) {
      LcUStringA utf8;
      ToUTF8(value.Get(), utf8);
      return Attribute(name).set_value(utf8.Get());
    }
    pugi::xml_attribute attribute = levels.back().node.attribute(name);
    if (!attribute) {
      if (!defaultValue) return false;
      value.Assign(defaultValue);
      return true;
    }
    FromUTF8(attribute.value(), value);
    return true;
  }

  bool IntAttributeWithDefault(const char* name, int32_t& value, int32_t defaultValue) override {
    if (writing) return IntAttribute(name, value);
    pugi::xml_attribute attribute = levels.back().node.attribute(name);
    if (!attribute) {
      value = defaultValue;
      return true;
    }
    return ParseInt(attribute.value(), value);
  }

  bool ElementText(LcUString& value) override {
    pugi::xml_node node = levels.back().node;
    if (writing) {
      LcUStringA utf8;
      ToUTF8(value.Get(), utf8);
      return node.text().set(utf8.Get());
    }
    FromUTF8(node.text().get(), value);
    return levels.size() > 1;
  }

  bool Save(LcUStringA& text) override {
    if (!writing) return false;
    unsigned flags = (indent > 0 ? pugi::format_indent : pugi::format_raw) | (declaration ? 0 : pugi::format_no_declaration);
    LcUStringA blanks;
    for (int32_t i = 0; i < indent; ++i) blanks.Append(" ");
    const char* step = blanks.Get() ? blanks.Get() : "";
    if (target.IsNull()) {
      text.Clear();
      CountingWriter counter;
      document.save(counter, step, flags, pugi::encoding_utf8);
      text.Clear();
      if (text.Reserve(int32_t(counter.size)) < int32_t(counter.size)) return false;
      TextWriter writer(text);
      document.save(writer, step, flags, pugi::encoding_utf8);
      return true;
    }
    LcUStringA path;
    ToUTF8(target.Get(), path);
    return document.save_file(path.Get(), step, flags, pugi::encoding_utf8);
  }

private:
  struct Level {
    pugi::xml_node node;
    pugi::xml_node last;
  };

  static pugi::xml_node Next(const Level& here) {
    pugi::xml_node child = here.last ? here.last.next_sibling() : here.node.first_child();
    while (child && child.type() != pugi::node_element) child = child.next_sibling();
    return child;
  }

  pugi::xml_attribute Attribute(const char* name) {
    pugi::xml_node node = levels.back().node;
    pugi::xml_attribute attribute = node.attribute(name);
    return attribute ? attribute : node.append_attribute(name);
  }

  // The whole text an int32, with an optional sign.
  static bool ParseInt(const char* text, int32_t& value) {
    const char* digits = *text == '+' ? text + 1 : text;
    const char* end = digits + std::strlen(digits);
    int32_t parsed;
    std::from_chars_result r = std::from_chars(digits, end, parsed, 10);
    if (r.ec != std::errc() || r.ptr != end || r.ptr == digits) return false;
    value = parsed;
    return true;
  }

  pugi::xml_document document;
  bool writing;
  LcUString target;
  int32_t indent;
  int32_t declaration;
  std::vector<Level, LcUAllocator<Level>> levels;
};
}  // namespace

LcUXMLDOMStream* LcUSysXMLProvider::CreateReadStream(const char16_t* source, int32_t flag) {
  PugiStream* stream = new PugiStream(false, nullptr, kDefaultVersion, 0, 0);
  if (stream && !stream->Load(source, flag)) {
    delete stream;
    return nullptr;
  }
  return stream;
}

LcUXMLDOMStream* LcUSysXMLProvider::CreateWriteStream(const char16_t* target, int32_t version, int32_t indent,
                                                      int32_t declaration) {
  return new PugiStream(true, target, version, indent, declaration);
}
