#pragma once
#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "environment/LcUResource.h"
#include "environment/LcUResourceParseState.h"

namespace EnvironmentTesting {
// A started LcUResource over a fresh folder, its reports recorded instead
// of ending the process.
class ResourceTest : public TempFolderTest {
protected:
  void SetUp() override {
    TempFolderTest::SetUp();
    LcUResource::Initialize();
    reports().clear();
    severities().clear();
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::SetHandler(severity, &LcUResource::component, -1, Record);
  }
  void TearDown() override {
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::RemoveHandler(severity, &LcUResource::component, -1);
    LcUResource::Terminate();
    TempFolderTest::TearDown();
  }

  static std::vector<std::string>& reports() {
    static std::vector<std::string> list;
    return list;
  }
  // The severity of each report, in the same order.
  static std::vector<int>& severities() {
    static std::vector<int> list;
    return list;
  }

  // The stored text, or "<absent>".
  static std::string Text(const char* key) {
    const char16_t* text = LcUResource::FindString(key, nullptr);
    return text ? Narrow(LcUString(text)) : "<absent>";
  }

  bool ReadTable(const std::string& bytes, const char* endToken, LcUResourceParseState& state,
                 const char* prefix = nullptr) {
    LcUString path = In(u"table.txt");
    if (!WriteFile(path, bytes)) return false;
    LcUSysFileHandle file;
    if (!file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                   LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0, 0))
      return false;
    return LcUResource::ReadNameTable(file.GetStream(), endToken, state, prefix);
  }

private:
  static int Record(int severity, LcUComponent*, int32_t, void*, const char16_t* message) {
    severities().push_back(severity);
    reports().push_back(Narrow(LcUString(message)));
    return 1;
  }
};
}  // namespace EnvironmentTesting
