// The XML components start the option tree, which stands above this
// library, so their start and stop are built into the options library.
#include "environment/LcUResource.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "options/LcUOption.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLStream.h"

namespace {
const char kValidate[] = "general.xml.validate";
}  // namespace

bool LcUXMLStream::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUXMLStream") != 1) return true;
  LcUOption::Initialize();
  LcUOption::DefineBoolean(kValidate, true, 1, 0);
  return true;
}

void LcUXMLStream::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUOption::Undefine(kValidate);
  LcUOption::Terminate();
}

bool LcUXMLDOMStream::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUXMLDOMStream") != 1) return true;
  LcUXMLStream::Initialize();
  LcUError::Initialize();
  LcUString::Initialize();
  LcUResource::Initialize();
  return true;
}

void LcUXMLDOMStream::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUResource::Terminate();
  LcUString::Terminate();
  LcUError::Terminate();
  LcUXMLStream::Terminate();
}
