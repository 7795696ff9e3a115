#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUData.h"

namespace OptionTesting {
using EnvironmentTesting::LogText;
using EnvironmentTesting::Narrow;

// A started option tree, emptied for each test, with its reports recorded
// as "severity:text" instead of ending the process.
class OptionTest : public ::testing::Test {
protected:
  void SetUp() override {
    LcUData::Initialize();
    LcUOption::Initialize();
    reports().clear();
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::SetHandler(severity, &LcUOption::component, -1, Record);
  }
  void TearDown() override {
    for (int severity : {int(LcUError::eERROR), int(LcUError::eWARNING)})
      LcUSysError::RemoveHandler(severity, &LcUOption::component, -1);
    LcUOption::Terminate();
    LcUData::Terminate();
  }

  static std::vector<std::string>& reports() {
    static std::vector<std::string> list;
    return list;
  }
  // The reports so far, then none.
  static std::vector<std::string> TakeReports() {
    std::vector<std::string> taken;
    taken.swap(reports());
    return taken;
  }

  static LcUData Int(int32_t value) {
    LcUData data;
    data.SetInt32(value);
    return data;
  }
  static LcUData Float(double value, int32_t tag = LcUData::eFLOAT) {
    LcUData data;
    data.SetFloat(value, tag);
    return data;
  }
  static LcUData Text(const char16_t* value) {
    LcUData data;
    data.SetWString(value);
    return data;
  }

  // The state word of the option at `path` in the present tree, or ~0.
  static uint32_t State(const char* path, LcUOptionSet* root = nullptr) {
    int32_t i = -1;
    LcUOptionSet* set = LcUOption::FindOption(root ? root : LcUOption::GetPresentRoot(), path, i);
    return i >= 0 ? set->GetState(i) : ~0u;
  }
  static bool IsDefault(const char* path) { return (State(path) & LcUOptionSet::eDEFAULT) != 0; }

  // "name=value" for leaves, "name{...}" for sets, in order.
  static std::string Shape(LcUOptionSet* set) {
    std::string text;
    for (int32_t i = 0; set && i < set->GetCount(); ++i) {
      if (i) text += ",";
      text += set->GetName(i) ? set->GetName(i) : "<null>";
      LcUData value;
      if (LcUOptionSet* child = set->GetValue(i, &value)) {
        text += "{" + Shape(child) + "}";
      } else {
        LcUString shown;
        value.ToText(shown);
        text += "=" + Narrow(shown);
      }
    }
    return text;
  }

private:
  static int Record(int severity, LcUComponent*, int32_t, void*, const char16_t* message) {
    reports().push_back(std::to_string(severity) + ":" + Narrow(LcUString(message)));
    return 1;
  }
};
}  // namespace OptionTesting
