#include <gtest/gtest.h>

#include "HostSimTesting.h"

namespace {
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;
}  // namespace

TEST(HostSimFailureRules, AreCheckedAgainstTheRoleTable) {
  const struct {
    const char* rule;
    const char* error;  // empty when the rule is good
  } cases[] = {
      {"ViewActivate=0x80004005", ""},
      {"CameraEye@2=0x80004005", ""},
      {"CameraEye.put@2=0x8000ffff", ""},
      {"DocumentSelectSet=null", ""},
      {"FileServiceDesignViewName.method=null", ""},
      {"OccurrenceContextFor=null", ""},
      {"ViewActivate", "\"ViewActivate\" is not ROLE[.KIND][@N]=RESULT"},
      {"Nope=0x80004005", "no role is named \"Nope\""},
      {"CameraApply.get=0x80004005", "the role CameraApply has no such kind"},
      {"ViewActivate.post=0x80004005", "the kind in \"ViewActivate.post=0x80004005\" is not get, put or method"},
      {"ViewActivate@0=0x80004005", "the call number in \"ViewActivate@0=0x80004005\" is not a count from 1"},
      {"ViewActivate@-1=0x80004005", "the call number in \"ViewActivate@-1=0x80004005\" is not a count from 1"},
      {"ViewActivate=0x00000001", "\"0x00000001\" is not a failure HRESULT such as 0x80004005, nor null"},
      {"ViewActivate=0x800040051", "\"0x800040051\" is not a failure HRESULT such as 0x80004005, nor null"},
      {"ViewActivate=E_FAIL", "\"E_FAIL\" is not a failure HRESULT such as 0x80004005, nor null"},
      {"ViewActivate=null", "null is only for a role that gives an object or a string, not ViewActivate"},
      {"CameraEye.put=null", "null is only for a role that gives an object or a string, not CameraEye"},
      {"ApplicationModeFlag=null", "null is only for a role that gives an object or a string, not ApplicationModeFlag"},
  };
  for (const auto& c : cases) {
    HostSimFailures failures;
    std::string error;
    EXPECT_EQ(!*c.error, failures.Add(c.rule, error)) << c.rule;
    EXPECT_EQ(c.error, error) << c.rule;
  }
}

using HostSimFailureInjection = HostSimTest;

TEST_F(HostSimFailureInjection, FailsTheNthCallOfTheRoleOnly) {
  std::string error;
  // A role named without a kind counts its get and its put together.
  ASSERT_TRUE(model->failures.Add("ApplicationModeFlag@2=0x80004005", error));
  ASSERT_TRUE(model->failures.Add("ApplicationMainWindow.get@3=0x8000FFFF", error));
  IDispatch* application = Application();
  const struct {
    DISPID id;
    WORD kind;
    std::vector<VARIANT> args;
    HRESULT result;
    const char* line;
  } calls[] = {
      {0x3000115, kGet, {}, S_OK, "ApplicationModeFlag() -> 0x00000000 -1"},
      {0x3000115, kPut, {Bool(0)}, E_FAIL, "ApplicationModeFlag(0) -> 0x80004005"},
      {0x3000115, kGet, {}, S_OK, "ApplicationModeFlag() -> 0x00000000 -1"},
      {0x300012A, kGet, {}, S_OK, "ApplicationMainWindow() -> 0x00000000 4660"},
      {0x300012A, kGet, {}, S_OK, "ApplicationMainWindow() -> 0x00000000 4660"},
      {0x300012A, kGet, {}, E_UNEXPECTED, "ApplicationMainWindow() -> 0x8000FFFF"},
      {0x300012A, kGet, {}, S_OK, "ApplicationMainWindow() -> 0x00000000 4660"},
  };
  for (const auto& c : calls) {
    EXPECT_EQ(c.result, Call(application, c.id, c.kind, c.args)) << c.line;
    EXPECT_EQ(c.line, Last());
  }
  EXPECT_EQ(4, host->CallCount("ApplicationMainWindow"));
}

TEST_F(HostSimFailureInjection, AFailedCallChangesNothing) {
  std::string error;
  ASSERT_TRUE(model->failures.Add("ViewActivate=0x80004005", error));
  ASSERT_TRUE(model->failures.Add("CameraApply=0x80004005", error));
  IDispatch* view = Object(Object(Document(u"C:\\Models\\Bracket.gpt"), 0x3012701), 0, {I4(1)});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(E_FAIL, Call(view, 0x3000206, kMethod));
  EXPECT_EQ(model->documents[0].get(), model->activeDocument);
  IDispatch* camera = Object(view, 0x300040E);
  EXPECT_EQ(S_OK, Call(camera, 0x300360E, kPut, {Bool(-1)}));
  EXPECT_EQ(E_FAIL, Call(camera, 0x3003609, kMethod));
  EXPECT_EQ(0, model->documents[1]->views[0].perspective);
}

TEST_F(HostSimFailureInjection, NullGivesNoObjectThroughResultOrOutArgument) {
  Load("document C:\\a.gam assembly open\nview\noccurrence A:1\noccurrence A:1|B:1\n"
       "fail DocumentSelectSet=null\nfail FileServiceLevelOfDetailName=null\nfail OccurrenceContextFor@1=null\n");
  IDispatch* document = Document(u"C:\\a.gam");
  VARIANT result;
  EXPECT_EQ(S_OK, Call(document, 0x300023A, kGet, {}, &result));
  EXPECT_EQ(VT_DISPATCH, result.vt);
  EXPECT_EQ(nullptr, result.pdispVal);
  EXPECT_EQ("DocumentSelectSet() -> 0x00000000 null", Last());
  EXPECT_EQ(S_OK, Call(Object(Application(), 0x300014E), 0x300B613, kMethod, {Bstr(u"C:\\a.gam")}, &result));
  EXPECT_EQ(VT_BSTR, result.vt);
  EXPECT_EQ(nullptr, result.bstrVal);
  EXPECT_EQ("FileServiceLevelOfDetailName(\"C:\\a.gam\") -> 0x00000000 null", Last());

  IDispatch* top = Occurrence(document, {u"A:1"});
  IDispatch* nested = Occurrence(document, {u"A:1", u"B:1"});
  IDispatch* context = top;
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_BYREF | VT_DISPATCH;
  out.ppdispVal = &context;
  EXPECT_EQ(S_OK, Call(top, 0x4001337, kMethod, {Dispatch(nested), out}));
  EXPECT_EQ(nullptr, context);
  EXPECT_EQ("OccurrenceContextFor(Occurrence#2, *) -> 0x00000000 null", Last());
  EXPECT_EQ(S_OK, Call(top, 0x4001337, kMethod, {Dispatch(nested), out}));
  ASSERT_NE(nullptr, context);
  context->Release();
}
