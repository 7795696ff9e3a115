#include "HostSimAddInSetup.h"

HostSimAddInSetup::HostSimAddInSetup() : ready(true) {}

HostSimAddInSetup::~HostSimAddInSetup() = default;

std::vector<std::string> HostSimAddInSetup::Arguments() const {
  return {"--addin", TW_ADDIN_MODULE};
}

std::vector<std::string> HostSimAddInSetup::MissingAddIn() {
  return {"--addin", "/nonexistent/twveerbackglf.so"};
}
