#pragma once
#include "serial/LcUXMLDOMStream.h"

// The platform's XML document behind element streams: the MSXML DOM on
// Windows, pugixml elsewhere. Install it with LcUXMLDOMStream::SetProvider.
class LcUSysXMLProvider : public LcUXMLDOMStreamProvider {
public:
  static LcUSysXMLProvider* Get();

  // A reading stream over XML text or a file; null, with the parser's
  // message in the log, when the document does not parse.
  LcUXMLDOMStream* CreateReadStream(const char16_t* source, int32_t flag) override;
  // `indent` blanks a level where the document supports it; with
  // `declaration` the text starts with the XML declaration.
  LcUXMLDOMStream* CreateWriteStream(const char16_t* target, int32_t version, int32_t indent,
                                     int32_t declaration) override;
  void DestroyStream(LcUXMLDOMStream* stream) override;
};
