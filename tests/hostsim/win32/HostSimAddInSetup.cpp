#include "HostSimAddInSetup.h"

#include "TestProcess.h"

namespace {
int Regsvr32(bool install) {
  std::vector<std::string> arguments = {"/s", TestProcess::NativePath(TW_ADDIN_MODULE)};
  if (!install) arguments.insert(arguments.begin(), "/u");
  return TestProcess::Run("C:\\windows\\system32\\regsvr32.exe", arguments, nullptr);
}
}  // namespace

HostSimAddInSetup::HostSimAddInSetup() : ready(Regsvr32(true) == 0) {}

HostSimAddInSetup::~HostSimAddInSetup() {
  if (ready) Regsvr32(false);
}

std::vector<std::string> HostSimAddInSetup::Arguments() const {
  return {};
}

std::vector<std::string> HostSimAddInSetup::MissingAddIn() {
  return {"--clsid", "{00000000-0000-0000-0000-00000000BEEF}"};
}
