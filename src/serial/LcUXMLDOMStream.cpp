#include "serial/LcUXMLDOMStream.h"

#include "foundation/LcUError.h"
#include "serial/LcUXMLStream.h"

LcUComponent LcUXMLDOMStream::component;

namespace {
LcUXMLDOMStreamProvider* provider = nullptr;
}  // namespace

bool LcUXMLDOMStream::EndElement(const LcUString& name) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(name.Get() ? name.Get() : u"", narrow, true);
  return EndElement(narrow.Get());
}

LcUXMLDOMStreamProvider* LcUXMLDOMStream::SetProvider(LcUXMLDOMStreamProvider* next) {
  LcUXMLDOMStreamProvider* previous = provider;
  provider = next;
  return previous;
}

LcUXMLDOMStreamProvider* LcUXMLDOMStream::GetProvider() {
  return provider;
}

LcUXMLDOMStream* LcUXMLDOMStream::CreateReadStream(const char16_t* source, int32_t flag) {
  return provider ? provider->CreateReadStream(source, flag) : nullptr;
}

LcUXMLDOMStream* LcUXMLDOMStream::CreateWriteStream(const char16_t* target, int32_t version, int32_t indent,
                                                    int32_t declaration) {
  return provider ? provider->CreateWriteStream(target, version, indent, declaration) : nullptr;
}

void LcUXMLDOMStream::DestroyStream(LcUXMLDOMStream* stream) {
  if (provider && stream) provider->DestroyStream(stream);
}
