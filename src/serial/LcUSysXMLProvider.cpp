#include "serial/LcUSysXMLProvider.h"

LcUSysXMLProvider* LcUSysXMLProvider::Get() {
  static LcUSysXMLProvider provider;
  return &provider;
}

void LcUSysXMLProvider::DestroyStream(LcUXMLDOMStream* stream) {
  delete stream;
}
