#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "HostSim.h"
#include "HostSimDefaultModel.h"
#include "HostSimModelReader.h"

// A host on a model, called in-process as an add-in calls it.
class HostSimTest : public ::testing::Test {
protected:
  void SetUp() override { Load(HostSimDefaultModel::kText); }
  void TearDown() override;
  void Load(const char* text);

  // Invokes id with args in the caller's order, a put naming its value as
  // a put does; the result, if any, goes to result.
  HRESULT Call(IDispatch* object, DISPID id, WORD kind, const std::vector<VARIANT>& args = {},
               VARIANT* result = nullptr);
  // A host object from a get or method that must succeed; the host keeps it.
  IDispatch* Object(IDispatch* object, DISPID id, const std::vector<VARIANT>& args = {},
                    WORD kind = DISPATCH_PROPERTYGET);
  IDispatch* Application() { return Object(host->Site(), 0x3001401); }
  // An open document, by way of the file service's entries.
  IDispatch* Document(const char16_t* path);
  // The occurrence at path (names joined by "|") in an assembly document,
  // walked down by definitions as an add-in walks.
  IDispatch* Occurrence(IDispatch* document, const std::vector<const char16_t*>& names);
  const std::string& Last() const { return journal.Last(); }
  std::string State() const;

  VARIANT Bstr(const char16_t* text);
  static VARIANT I4(int32_t value);
  static VARIANT R8(double value);
  static VARIANT Bool(int16_t value);
  static VARIANT Dispatch(IDispatch* value);

  std::unique_ptr<HostSimModel> model;
  HostSimJournal journal;
  std::unique_ptr<HostSim> host;
  std::vector<BSTR> strings;
  std::vector<IDispatch*> held;
};
