#include "HostSimAddInSetup.h"

#include <stdlib.h>

#include <filesystem>
#include <string>

#include "TestProcess.h"

namespace {
// A private registry store for this test program and the processes it
// starts, gone with the program.
struct RegistrySandbox {
  RegistrySandbox() {
    char made[] = "/tmp/twtest-registry-XXXXXX";
    if (mkdtemp(made) && setenv("TW_REGISTRY_DIR", made, 1) == 0) folder = made;
  }
  ~RegistrySandbox() {
    std::error_code ignored;
    if (!folder.empty()) std::filesystem::remove_all(folder, ignored);
  }
  std::string folder;
};

int Register(bool install) {
  return TestProcess::Run(TW_VEERBACK, {install ? "register" : "unregister", TW_ADDIN_MODULE}, nullptr);
}
}  // namespace

HostSimAddInSetup::HostSimAddInSetup() {
  static const RegistrySandbox sandbox;
  ready = !sandbox.folder.empty() && Register(true) == 0;
}

HostSimAddInSetup::~HostSimAddInSetup() {
  if (ready) Register(false);
}

std::vector<std::string> HostSimAddInSetup::Arguments() const {
  return {};
}

std::vector<std::string> HostSimAddInSetup::MissingAddIn() {
  return {"--clsid", "{00000000-0000-0000-0000-00000000BEEF}"};
}
