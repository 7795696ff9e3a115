#include "serial/LcUSysXMLProvider.h"

#include <windows.h>
#include <msxml2.h>

#include <cstdlib>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUError.h"

namespace {
// MinGW declares the DOM's interfaces but not the version 6 class.
const CLSID kDOMDocument60 = {0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
// A reading stream takes its version from what it reads; until then the current one.
constexpr int32_t kDefaultVersion = 441;

// Owns one reference.
template <typename T>
class Ref {
public:
  Ref() = default;
  explicit Ref(T* p) : p(p) {}
  Ref(const Ref& o) : p(o.p) {
    if (p) p->AddRef();
  }
  Ref& operator=(const Ref& o) {
    if (o.p) o.p->AddRef();
    if (p) p->Release();
    p = o.p;
    return *this;
  }
  ~Ref() {
    if (p) p->Release();
  }
  T** Out() {
    if (p) p->Release();
    p = nullptr;
    return &p;
  }
  T* operator->() const { return p; }
  T* Get() const { return p; }
  explicit operator bool() const { return p != nullptr; }

private:
  T* p = nullptr;
};

class Bstr {
public:
  explicit Bstr(const char16_t* text) : b(SysAllocString(reinterpret_cast<const OLECHAR*>(text ? text : u""))) {}
  explicit Bstr(const char* utf8) {
    LcUString wide;
    LcUString::UTF8ToUTF16(utf8 ? utf8 : "", -1, wide);
    b = SysAllocString(reinterpret_cast<const OLECHAR*>(wide.Get() ? wide.Get() : u""));
  }
  Bstr() = default;
  ~Bstr() { SysFreeString(b); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  BSTR* Out() {
    SysFreeString(b);
    b = nullptr;
    return &b;
  }
  operator BSTR() const { return b; }
  const char16_t* Text() const { return b ? reinterpret_cast<const char16_t*>(b) : u""; }

private:
  BSTR b = nullptr;
};

void ToUTF8(const char16_t* text, LcUStringA& out) {
  LcUString::UTF16ToUTF8(text ? text : u"", out, true);
}

// An element stream over an MSXML document. Each level keeps the node it
// stands in and the last child entered there, from which reading looks on.
class DOMStream : public LcUXMLDOMStream {
public:
  DOMStream(bool writing, const char16_t* target, int32_t version, int32_t declaration)
      : writing(writing), target(target), declaration(declaration) {
    this->version = version;
    HRESULT init = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    initialised = SUCCEEDED(init);
    IXMLDOMDocument* created = nullptr;
    if (SUCCEEDED(CoCreateInstance(kDOMDocument60, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                   reinterpret_cast<void**>(&created)))) {
      document = Ref<IXMLDOMDocument>(created);
      document->put_async(VARIANT_FALSE);
      IXMLDOMNode* root = nullptr;
      document->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(&root));
      levels.push_back({Ref<IXMLDOMNode>(root), Ref<IXMLDOMNode>()});
    }
  }

  ~DOMStream() override {
    levels.clear();
    document = Ref<IXMLDOMDocument>();
    if (initialised) CoUninitialize();
  }

  bool Ready() const { return bool(document) && !levels.empty(); }

  bool Load(const char16_t* source, int32_t flag) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Bstr text(source);
    if (flag & eSOURCE_FILE) {
      VARIANT path;
      VariantInit(&path);
      path.vt = VT_BSTR;
      path.bstrVal = text;
      document->load(path, &loaded);
    } else {
      document->loadXML(text, &loaded);
    }
    if (loaded == VARIANT_TRUE) return true;
    Ref<IXMLDOMParseError> error;
    Bstr reason;
    long position = 0;
    if (SUCCEEDED(document->get_parseError(error.Out())) && error) {
      error->get_reason(reason.Out());
      error->get_filepos(&position);
    }
    LcUStringA message;
    ToUTF8(reason.Text(), message);
    LcUError::LogF("LcUSysXMLProvider- %s at offset %d\n", message.Get() ? message.Get() : "", int(position));
    return false;
  }

  int32_t IsWriting() const override { return writing ? 1 : 0; }

  void GetPositionText(LcUString& out) const override {
    out.Clear();
    for (size_t i = 1; i < levels.size(); ++i) {
      Bstr name;
      levels[i].node->get_nodeName(name.Out());
      out.Append(u"/");
      out.Append(name.Text());
    }
    if (out.IsEmpty()) out.Assign(u"/");
  }

  bool BeginElement(const char* name, int32_t) override {
    Level& here = levels.back();
    Bstr wanted(name);
    Ref<IXMLDOMNode> child;
    if (writing) {
      Ref<IXMLDOMElement> element;
      if (FAILED(document->createElement(wanted, element.Out())) ||
          FAILED(here.node->appendChild(element.Get(), child.Out())))
        return false;
    } else {
      for (child = Next(here); child; child = NextElement(child)) {
        Bstr found;
        child->get_nodeName(found.Out());
        if (LcUString::Equal(found.Text(), wanted.Text())) break;
      }
      if (!child) return false;
      here.last = child;
    }
    levels.push_back({child, Ref<IXMLDOMNode>()});
    return true;
  }

  bool NextChildName(LcUStringA& out) override {
    if (writing) return false;
    Ref<IXMLDOMNode> child = Next(levels.back());
    if (!child) return false;
    Bstr name;
    child->get_nodeName(name.Out());
    ToUTF8(name.Text(), out);
    return true;
  }

  bool EndElement(const char* name) override {
    if (levels.size() < 2) return false;
    Bstr here, wanted(name);
    levels.back().node->get_nodeName(here.Out());
    if (!LcUString::Equal(here.Text(), wanted.Text())) return false;
    levels.pop_back();
    return true;
  }

  bool NarrowAttribute(const char* name, LcUStringA& value) override {
    LcUString wide;
    if (writing) LcUString::UTF8ToUTF16(value.Get() ? value.Get() : "", -1, wide);
    if (!Attribute(name, wide)) return false;
    if (!writing) ToUTF8(wide.Get(), value);
    return true;
  }

  bool NameAttribute(const char* name, LcUString& value) override { return Attribute(name, value); }

  bool IntAttribute(const char* name, int32_t& value) override {
    LcUString text;
    if (writing) {
      text.Format(u"%d", value);
      return Attribute(name, text);
    }
    return Attribute(name, text) && ParseInt(text, value);
  }

  bool StringAttribute(const char* name, LcUString& value, const char16_t* defaultValue) override {
    if (writing || Attribute(name, value)) return writing ? Attribute(name, value) : true;
    if (!defaultValue) return false;
    value.Assign(defaultValue);
    return true;
  }

  bool IntAttributeWithDefault(const char* name, int32_t& value, int32_t defaultValue) override {
    if (writing) return IntAttribute(name, value);
    LcUString text;
    if (!Attribute(name, text)) {
      value = defaultValue;
      return true;
    }
    return ParseInt(text, value);
  }

  bool ElementText(LcUString& value) override {
    IXMLDOMNode* node = levels.back().node.Get();
    if (writing) return SUCCEEDED(node->put_text(Bstr(value.Get())));
    Bstr text;
    if (FAILED(node->get_text(text.Out()))) return false;
    value.Assign(text.Text());
    return levels.size() > 1;
  }

  bool Save(LcUStringA& text) override {
    if (!writing) return false;
    if (declaration) Declare();
    if (!target.IsNull()) {
      VARIANT path;
      VariantInit(&path);
      Bstr file(target.Get());
      path.vt = VT_BSTR;
      path.bstrVal = file;
      return SUCCEEDED(document->save(path));
    }
    Bstr xml;
    if (FAILED(document->get_xml(xml.Out()))) return false;
    ToUTF8(xml.Text(), text);
    return true;
  }

private:
  struct Level {
    Ref<IXMLDOMNode> node;
    Ref<IXMLDOMNode> last;
  };

  static Ref<IXMLDOMNode> Element(Ref<IXMLDOMNode> node) {
    DOMNodeType type;
    while (node && SUCCEEDED(node->get_nodeType(&type)) && type != NODE_ELEMENT) {
      Ref<IXMLDOMNode> next;
      node->get_nextSibling(next.Out());
      node = next;
    }
    return node;
  }

  static Ref<IXMLDOMNode> NextElement(const Ref<IXMLDOMNode>& node) {
    Ref<IXMLDOMNode> next;
    node->get_nextSibling(next.Out());
    return Element(next);
  }

  static Ref<IXMLDOMNode> Next(const Level& here) {
    if (here.last) return NextElement(here.last);
    Ref<IXMLDOMNode> first;
    here.node->get_firstChild(first.Out());
    return Element(first);
  }

  // Writes `value`, or reads into it; false when reading an absent attribute.
  bool Attribute(const char* name, LcUString& value) {
    Ref<IXMLDOMElement> element;
    if (FAILED(levels.back().node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.Out()))))
      return false;
    Bstr attribute(name);
    VARIANT v;
    VariantInit(&v);
    if (writing) {
      Bstr text(value.Get());
      v.vt = VT_BSTR;
      v.bstrVal = text;
      return SUCCEEDED(element->setAttribute(attribute, v));
    }
    if (element->getAttribute(attribute, &v) != S_OK || v.vt != VT_BSTR) {
      VariantClear(&v);
      return false;
    }
    value.Assign(reinterpret_cast<const char16_t*>(v.bstrVal));
    VariantClear(&v);
    return true;
  }

  void Declare() {
    Ref<IXMLDOMProcessingInstruction> instruction;
    Bstr xml(u"xml"), data(u"version=\"1.0\" encoding=\"UTF-8\"");
    if (FAILED(document->createProcessingInstruction(xml, data, instruction.Out()))) return;
    Ref<IXMLDOMNode> first, added;
    document->get_firstChild(first.Out());
    VARIANT before;
    VariantInit(&before);
    before.vt = VT_UNKNOWN;
    before.punkVal = first.Get();
    document->insertBefore(instruction.Get(), before, added.Out());
  }

  // The whole text an int32, with an optional sign.
  static bool ParseInt(const LcUString& text, int32_t& value) {
    LcUStringA narrow;
    ToUTF8(text.Get(), narrow);
    const char* s = narrow.Get() ? narrow.Get() : "";
    char* end = nullptr;
    long long parsed = std::strtoll(s, &end, 10);
    if (!*s || *end || parsed < INT32_MIN || parsed > INT32_MAX || *s == ' ') return false;
    value = int32_t(parsed);
    return true;
  }

  Ref<IXMLDOMDocument> document;
  bool writing;
  bool initialised = false;
  LcUString target;
  int32_t declaration;
  std::vector<Level, LcUAllocator<Level>> levels;
};
}  // namespace

LcUXMLDOMStream* LcUSysXMLProvider::CreateReadStream(const char16_t* source, int32_t flag) {
  DOMStream* stream = new DOMStream(false, nullptr, kDefaultVersion, 0);
  if (stream && (!stream->Ready() || !stream->Load(source, flag))) {
    delete stream;
    return nullptr;
  }
  return stream;
}

// MSXML writes without indentation.
LcUXMLDOMStream* LcUSysXMLProvider::CreateWriteStream(const char16_t* target, int32_t version, int32_t,
                                                      int32_t declaration) {
  DOMStream* stream = new DOMStream(true, target, version, declaration);
  if (stream && !stream->Ready()) {
    delete stream;
    return nullptr;
  }
  return stream;
}
