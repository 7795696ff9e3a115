#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUSysError.h"

using ErrorTesting::ChildChecks;
using ErrorTesting::EndsWith;
using ErrorTesting::LogText;

namespace {
// Handler slots of the dispatch table, as the recorder names them.
enum Slot { eID, eCOMPONENT_SEVERITY, eCOMPONENT_ANY, eGLOBAL_SEVERITY, eGLOBAL_ANY, eSLOT_COUNT };

std::vector<int> calls;
int answering = -1;
std::u16string lastMessage;

template <int S>
int Record(int, LcUComponent*, int32_t, void*, const char16_t* message) {
  calls.push_back(S);
  lastMessage = message ? message : u"";
  return S == answering ? 1 : 0;
}

class LcUSysErrorTest : public testing::Test {
protected:
  void SetUp() override {
    LcUSysError::InitSysError();
    savedPreHandler = LcUSysError::GetPreHandler();
    LcUSysError::SetPreHandler(nullptr);
    calls.clear();
    answering = -1;
    lastMessage.clear();
  }

  void TearDown() override {
    for (LcUComponent* record : {&first, &second}) {
      while (record->initCount) LcUSysError::UnregisterComponent(record);
      *record = LcUComponent{};
    }
    for (int severity = -1; severity <= 5; ++severity) LcUSysError::RemoveHandler(severity, nullptr, -1);
    LcUSysError::RemoveHandler(0, &LcUSysError::component, -1);
    LcUSysError::SetPreHandler(savedPreHandler);
    LcUSysError::TermSysError();
  }

  void InstallAllSlots(LcUComponent* record) {
    LcUSysError::SetHandler(0, record, 7, Record<eID>);
    LcUSysError::SetHandler(-1, record, -1, Record<eCOMPONENT_ANY>);
    LcUSysError::SetHandler(-1, nullptr, -1, Record<eGLOBAL_ANY>);
    for (int severity = 0; severity <= 5; ++severity) {
      LcUSysError::SetHandler(severity, record, -1, Record<eCOMPONENT_SEVERITY>);
      LcUSysError::SetHandler(severity, nullptr, -1, Record<eGLOBAL_SEVERITY>);
    }
  }

  LcUComponent first{};
  LcUComponent second{};
  LcUErrorHandler savedPreHandler = nullptr;
};
}  // namespace

TEST_F(LcUSysErrorTest, RegistrationCountsReferencesAndLinksInOrder) {
  EXPECT_EQ(1, LcUSysError::RegisterComponent(&first, "First"));
  EXPECT_EQ(0, LcUSysError::RegisterComponent(&first, "First"));
  EXPECT_EQ(2, first.initCount);
  EXPECT_EQ(1, LcUSysError::RegisterComponent(&second, "Second"));
  EXPECT_EQ(&second, first.next);
  EXPECT_EQ(&first, second.previous);

  EXPECT_EQ(0, LcUSysError::UnregisterComponent(&first));
  EXPECT_EQ(1, LcUSysError::UnregisterComponent(&first));
  EXPECT_EQ(0, LcUSysError::UnregisterComponent(&first));
  EXPECT_EQ(0, first.initCount);
  // Unlinked: the second now follows whatever came before the first.
  EXPECT_NE(&first, second.previous);
  EXPECT_EQ(nullptr, second.next);
}

// Survived: logged, and no handler decides on it, so none being set is not
// the fatal stop.
TEST_F(LcUSysErrorTest, SameNameOnAnotherRecordIsLoggedAndStillLinked) {
  LcUSysError::SetHandler(0, nullptr, -1, Record<eGLOBAL_SEVERITY>);
  ASSERT_EQ(1, LcUSysError::RegisterComponent(&first, "Twin"));
  size_t before = LogText().size();
  EXPECT_EQ(1, LcUSysError::RegisterComponent(&second, "Twin"));
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(LogText().substr(before),
            "LcUSysError::PostFixed: LcUSysError: \"Component with name already registered.\"\n");
  EXPECT_EQ(&second, first.next);
  LcUSysError::RemoveHandler(0, nullptr, -1);
}

TEST_F(LcUSysErrorTest, LastUnregisterClearsHandlersAndFreesIdNodes) {
  LcUSysError::RegisterComponent(&first, "Handled");
  LcUSysError::RegisterComponent(&first, "Handled");
  for (int32_t id : {1, 2, 3}) EXPECT_TRUE(LcUSysError::SetHandler(0, &first, id, Record<eID>));
  EXPECT_TRUE(LcUSysError::SetHandler(2, &first, -1, Record<eCOMPONENT_SEVERITY>));

  LcUSysError::RemoveHandler(0, &first, 2);
  EXPECT_EQ(nullptr, LcUSysError::GetHandler(0, &first, 2));
  EXPECT_EQ(&Record<eID>, LcUSysError::GetHandler(0, &first, 1));
  EXPECT_EQ(&Record<eID>, LcUSysError::GetHandler(0, &first, 3));

  LcUSysError::UnregisterComponent(&first);
  EXPECT_NE(nullptr, first.idHandlers) << "handlers stay until the last reference";
  LcUSysError::UnregisterComponent(&first);
  EXPECT_EQ(nullptr, first.idHandlers);
  EXPECT_EQ(nullptr, first.severityHandlers[2]);
}

TEST_F(LcUSysErrorTest, HandlerSlotsRejectWhatTheyCannotHold) {
  EXPECT_FALSE(LcUSysError::SetHandler(0, nullptr, 7, Record<eID>)) << "an id needs a component";
  EXPECT_FALSE(LcUSysError::SetHandler(6, nullptr, -1, Record<eID>));
  EXPECT_FALSE(LcUSysError::SetHandler(-2, &first, -1, Record<eID>));
  EXPECT_EQ(nullptr, LcUSysError::GetHandler(6, nullptr, -1));
}

// Every handler declines unless it is the one answering; the list is the
// order in which they were asked.
TEST_F(LcUSysErrorTest, DispatchTriesHandlersFromExactToGeneral) {
  struct Case {
    const char* what;
    int severity;
    bool withComponent;
    int32_t id;
    bool withData;
    int answer;
    std::vector<int> expected;
  };
  const std::vector<Case> cases = {
      {"warning with id", 1, true, 7, false, -1,
       {eID, eCOMPONENT_SEVERITY, eCOMPONENT_ANY, eGLOBAL_SEVERITY, eGLOBAL_ANY}},
      {"warning without id", 1, true, -1, false, -1,
       {eCOMPONENT_SEVERITY, eCOMPONENT_SEVERITY, eCOMPONENT_ANY, eGLOBAL_SEVERITY, eGLOBAL_ANY}},
      {"warning without component", 1, false, -1, false, -1,
       {eGLOBAL_SEVERITY, eGLOBAL_SEVERITY, eGLOBAL_ANY, eGLOBAL_SEVERITY, eGLOBAL_ANY}},
      {"debug, plain", 4, true, -1, false, -1, {eCOMPONENT_SEVERITY, eCOMPONENT_SEVERITY}},
      {"debug with id", 4, true, 7, false, -1, {eID}},
      {"debug with data", 4, true, -1, true, -1, {eCOMPONENT_SEVERITY}},
      {"severity 5 skips the general handlers", 5, true, -1, false, -1,
       {eCOMPONENT_SEVERITY, eCOMPONENT_SEVERITY}},
      {"error stops at the first taker", 0, true, 7, false, eCOMPONENT_ANY,
       {eID, eCOMPONENT_SEVERITY, eCOMPONENT_ANY}},
      {"all severities", -1, true, -1, false, eGLOBAL_ANY,
       {eCOMPONENT_ANY, eCOMPONENT_ANY, eCOMPONENT_ANY, eGLOBAL_ANY}},
  };
  LcUSysError::RegisterComponent(&first, "Dispatch");
  InstallAllSlots(&first);
  int data = 0;
  for (const Case& c : cases) {
    calls.clear();
    answering = c.answer;
    int handled = LcUSysError::Post(c.severity, c.withComponent ? &first : nullptr, c.id,
                                    c.withData ? &data : nullptr, u"dispatch");
    EXPECT_EQ(c.expected, calls) << c.what;
    EXPECT_EQ(c.answer >= 0, handled != 0) << c.what;
  }
}

TEST_F(LcUSysErrorTest, UnhandledWarningIsLoggedRawAndNotFatal) {
  LcUSysError::RegisterComponent(&first, "Raw");
  std::u16string message = u"caf\u00e9 ";
  message.append(2100, u'x');
  EXPECT_EQ(0, LcUSysError::Post(1, &first, -1, nullptr, message.c_str()));
  // Cut to 1999 units, and no conversion: a unit beyond ASCII is '?'.
  std::string expected = "LcUSysError::PostFixed: Raw: \"caf? " + std::string(1999 - 5, 'x') + "\"\n";
  EXPECT_TRUE(EndsWith(LogText(), expected));
}

TEST(LcUSysErrorDeathTest, UnhandledErrorLogsAndTakesTheFatalStop) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        static LcUComponent record;
        LcUSysError::RegisterComponent(&record, "Doomed");
        LcUSysError::SetFatalHook(ErrorTesting::LogToStderr);
        LcUSysError::Post(0, &record, -1, nullptr, u"boom");
      },
      "PostFixed: Doomed: \"boom\"\nLcUSysError: No handler for error\n");
}

TEST(LcUSysErrorDeathTest, ShutdownReportsLeftoversWithoutTerminatingThem) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        static LcUComponent leftover;
        LcUSysError::InitSysError();
        LcUSysError::RegisterComponent(&leftover, "Leftover");
        checks.Expect(LcUSysError::TermSysError() == 1, "the last reference stops LcUSysError");
        checks.Expect(EndsWith(LogText(), "*** Component Leftoverstill initialised\n"), "leftover reported");
        checks.Expect(leftover.initCount == 1, "leftover keeps its count");
        checks.Expect(LcUSysError::UnregisterComponent(&leftover) == 1, "and can still stop itself");
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}
