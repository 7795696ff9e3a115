#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

class LcUXMLDOMStreamProvider;

// The element stream through which objects read and write themselves as
// XML: the same sequence of begin, attribute, text and end calls writes an
// object when the stream writes and fills it when the stream reads. Calls
// report by their result, and callers combine the results with a logical and.
//
// Reading walks a document: BeginElement enters the next child of the
// current element with that name, looking on from the last one entered;
// EndElement returns to the parent. Writing builds the same tree.
class LcUXMLDOMStream : public LcUDeletable {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  ~LcUXMLDOMStream() override = default;

  virtual int32_t IsWriting() const = 0;
  // Where in the document the stream stands, for messages.
  virtual void GetPositionText(LcUString& out) const = 0;
  virtual bool BeginElement(const char* name, int32_t flag) = 0;
  // The name of the next child element to be read, false at the end.
  virtual bool NextChildName(LcUStringA& out) = 0;
  bool EndElement(const LcUStringA& name) { return EndElement(name.Get()); }
  bool EndElement(const LcUString& name);
  virtual bool EndElement(const char* name) = 0;
  virtual bool NarrowAttribute(const char* name, LcUStringA& value) = 0;
  // The attribute of a name-like member: wide text.
  virtual bool NameAttribute(const char* name, LcUString& value) = 0;
  virtual bool IntAttribute(const char* name, int32_t& value) = 0;
  // Reading an absent attribute gives the default and succeeds.
  virtual bool StringAttribute(const char* name, LcUString& value, const char16_t* defaultValue) = 0;
  virtual bool IntAttributeWithDefault(const char* name, int32_t& value, int32_t defaultValue) = 0;
  // Reading an element without text gives an empty text; false only
  // outside any element.
  virtual bool ElementText(LcUString& value) = 0;
  // A writing stream's document: into its target file, or without one into
  // `text` as UTF-8.
  virtual bool Save(LcUStringA& text) = 0;

  // The provider that makes concrete streams, process-wide; none at first.
  static LcUXMLDOMStreamProvider* SetProvider(LcUXMLDOMStreamProvider* provider);
  static LcUXMLDOMStreamProvider* GetProvider();
  // Null, or nothing done, without a provider. A reading source is a file's
  // path when `flag` has eSOURCE_FILE, XML text otherwise.
  enum : int32_t { eSOURCE_FILE = 1 };
  static LcUXMLDOMStream* CreateReadStream(const char16_t* source, int32_t flag);
  // A null target writes into memory, for the provider's Save to hand out.
  static LcUXMLDOMStream* CreateWriteStream(const char16_t* target, int32_t version, int32_t indent,
                                            int32_t declaration);
  static void DestroyStream(LcUXMLDOMStream* stream);

  int32_t version = 441;
  int32_t errorCode = 0;
  LcUString errorText;
  // Texts that element forms reuse from element to element, so that reading
  // many small elements allocates nothing for them.
  LcUString scratchText;
  LcUStringA scratchWord;

protected:
  LcUXMLDOMStream() = default;
};

// Makes and destroys concrete element streams.
class LcUXMLDOMStreamProvider {
public:
  virtual ~LcUXMLDOMStreamProvider() = default;
  virtual LcUXMLDOMStream* CreateReadStream(const char16_t* source, int32_t flag) = 0;
  virtual LcUXMLDOMStream* CreateWriteStream(const char16_t* target, int32_t version, int32_t indent,
                                             int32_t declaration) = 0;
  virtual void DestroyStream(LcUXMLDOMStream* stream) = 0;
};
