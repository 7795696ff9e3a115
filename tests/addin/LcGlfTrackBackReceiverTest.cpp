#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "HostSim.h"
#include "HostSimDefaultModel.h"
#include "HostSimModelReader.h"
#include "TestProcess.h"
#include "addin/LcGlfTrackBackReceiver.h"
#include "environment/LcUResource.h"
#include "foundation/LcUSysError.h"

namespace {
const char16_t* const kGearbox = u"C:\\Models\\Gearbox.gam";
const char16_t* const kBracket = u"C:\\Models\\Bracket.gpt";

// The add-in's receiver on the simulated host, in one process: a record
// goes straight to onTrackBack and the host's journal tells what it did.
class Veerback : public ::testing::Test {
protected:
  void SetUp() override {
    LcUResource::Initialize();
    folder = TestProcess::MakeTempFolder("veerback");
    // The receiver listens in the test's folder, not where a real host may.
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", folder);
  }
  void TearDown() override {
    Stop();
    LcUResource::Terminate();
  }

  void Stop() {
    receiver.reset();
    if (application) application->Release();
    application = nullptr;
    host.reset();
    journal.reset();
  }

  // The built-in model plus extra lines (failures, mode flag, ...).
  void Start(const std::string& extra = "") {
    Stop();
    model = std::make_unique<HostSimModel>();
    std::string error;
    ASSERT_TRUE(HostSimModelReader::Read(std::string(HostSimDefaultModel::kText) + extra, *model, error)) << error;
    journalPath = folder + "/journal" + std::to_string(++starts) + ".txt";
    journal = std::make_unique<HostSimJournal>();
    ASSERT_TRUE(journal->Open(journalPath));
    host = std::make_unique<HostSim>(*model, *journal);
    VARIANT result;
    DISPPARAMS none = {nullptr, nullptr, 0, 0};
    ASSERT_EQ(S_OK, host->Site()->Invoke(0x3001401, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr,
                                         nullptr));
    application = result.pdispVal;
    receiver = std::make_unique<LcGlfTrackBackReceiver>();
    receiver->SetApplication(application);
    consumed = 0;
    Lines();
  }

  LcOmTrackBackRecord Record(const char16_t* document, const char* item = nullptr) {
    LcOmTrackBackRecord record;
    record.setDocumentPath(document);
    record.setItemFilePath(nullptr);
    record.hasItem = 0;
    record.camera.position = LcLPoint3f(0.0, 0.0, 50.0);
    record.camera.nearDistance = 10.0;
    record.camera.farDistance = 30.0;
    if (item) {
      std::string path = folder + "/item.txt";
      std::ofstream(path, std::ios::binary) << item;
      LcUString wide;
      LcUString::UTF8ToUTF16(path.c_str(), -1, wide);
      record.setItemFilePath(wide.Get());
      record.hasItem = 1;
    }
    return record;
  }

  // The journal lines written since the last look.
  std::vector<std::string> Lines() {
    std::ifstream in(journalPath);
    std::vector<std::string> lines;
    std::string line;
    for (size_t n = 0; std::getline(in, line); ++n)
      if (n >= consumed) lines.push_back(line);
    consumed += lines.size();
    return lines;
  }
  std::vector<std::string> Send(const LcOmTrackBackRecord& record) {
    const size_t logged = LogText().size();
    receiver->onTrackBack(record);
    raised = LogText().substr(logged);
    // Every path gives back each host object it was handed, the opened document included.
    EXPECT_EQ("", Unbalanced());
    return Lines();
  }

  static std::string LogText() {
    std::string text;
    LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                           &text);
    return text;
  }

  // Host objects whose count isn't back where it was: the test holds the application once.
  std::string Unbalanced() const {
    std::string text;
    for (const auto& object : host->Objects()) {
      const ULONG own = host->Find(application) == object.get() ? 1 : 0;
      if (object->refs != own || object->overReleased)
        text += object->Name() + " held " + std::to_string(object->refs) + " released too often " +
                std::to_string(object->overReleased) + "; ";
    }
    return text;
  }

  static std::vector<std::string> Roles(const std::vector<std::string>& lines) {
    std::vector<std::string> roles;
    for (const std::string& line : lines) roles.push_back(line.substr(0, line.find('(')));
    return roles;
  }
  static bool Has(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines)
      if (line.find(text) != std::string::npos) return true;
    return false;
  }

  std::string folder, journalPath;
  std::unique_ptr<HostSimModel> model;
  std::unique_ptr<HostSimJournal> journal;
  std::unique_ptr<HostSim> host;
  IDispatch* application = nullptr;
  std::unique_ptr<LcGlfTrackBackReceiver> receiver;
  size_t consumed = 0;
  int starts = 0;
  std::string raised;  // what the last Send logged
};
}  // namespace

TEST_F(Veerback, AGoodRunCallsTheHostInItsOrder) {
  Start();
  std::vector<std::string> roles = Roles(Send(Record(kGearbox, "Housing:1")));
  const std::vector<std::string> expected = {
      "ApplicationMainWindow", "ApplicationFileService", "FileServiceEntries", "EntriesItem", "DocumentViews",
      "ViewsItem", "ViewActivate", "ApplicationActiveView", "ViewCamera", "CameraGetExtents", "CameraEye",
      "CameraTarget", "CameraUpVector", "CameraPerspective", "CameraPerspectiveAngle", "PointX", "PointY", "PointZ",
      "UnitVectorX", "UnitVectorY", "UnitVectorZ", "CameraEye", "CameraUpVector", "PointX", "PointY", "PointZ",
      "CameraTarget", "CameraPerspectiveAngle", "CameraPerspective", "CameraApply", "ApplicationActiveDocument",
      "DocumentSelectSet", "SelectSetClear", "QueryInterface", "AssemblyDefinition", "DefinitionOccurrences",
      "OccurrencesItemByName", "DocumentSelectSet", "SelectSetSelect"};
  EXPECT_EQ(expected, roles);
  // Already open: no open, and the mode flag isn't touched.
  EXPECT_FALSE(Has(roles, "DocumentsOpen"));
  EXPECT_FALSE(Has(roles, "ApplicationModeFlag"));
}

TEST_F(Veerback, TheFailureTable) {
  struct Case {
    const char* name;
    const char* failure;
    const char16_t* document;
    const char* item;
    std::vector<const char*> present;
    std::vector<const char*> absent;
    const char* raised = nullptr;  // the COM error that ended the handler
  };
  const Case cases[] = {
      {"window handle", "ApplicationMainWindow=0x80004005", kGearbox, nullptr, {}, {"ApplicationFileService"}},
      {"neither open nor openable", "", u"C:\\Models\\Missing.gpt", nullptr,
       {"DocumentsOpen(\"c:\\models\\missing.gpt\", -1) -> 0x", "ApplicationModeFlag(-1)"},
       {"ApplicationActiveView", "SelectSetClear"}},
      {"active view", "ApplicationActiveView=0x80004005", kGearbox, nullptr, {"ViewActivate"}, {"ViewCamera", "SelectSetClear"}},
      {"camera", "ViewCamera=0x80004005", kGearbox, nullptr, {"ViewCamera"}, {"CameraGetExtents", "SelectSetClear"}},
      {"a camera write", "PointY=0x80004005", kGearbox, nullptr, {"PointY(0)"},
       {"PointZ", "CameraApply", "SelectSetClear"}},
      {"select set missing", "DocumentSelectSet=null", kGearbox, "Housing:1", {"CameraApply"},
       {"SelectSetClear", "SelectSetSelect"}},
      {"item name not found", "", kGearbox, "Nowhere:9", {"SelectSetClear", "OccurrencesItemByName(\"Nowhere:9\") -> 0x"},
       {"SelectSetSelect"}},
      {"item file empty", "", kGearbox, "", {"SelectSetClear"}, {"SelectSetSelect", "OccurrencesItemByName"}},
      // Raised, not returned: a null select set where the whole document is
      // to be selected, and the raising read of the transient factory.
      {"select set null, whole document", "DocumentSelectSet=null", kGearbox, nullptr, {"AssemblyDefinition()"},
       {"SelectSetClear", "SelectSetSelect"}, "0x80004003"},
      {"transient factory", "ApplicationTransientFactory=0x80004005", u"C:\\Models\\Pump.gam", nullptr,
       {"ApplicationTransientFactory() -> 0x80004005"}, {"DocumentsOpen", "ApplicationModeFlag(-1)", "CameraApply"},
       "0x80004005"},
      {"documents again", "ApplicationDocuments@2=0x80004005", u"C:\\Models\\Pump.gam", nullptr,
       {"OptionsValue(\"DesignViewRepresentation\""}, {"DocumentsOpen", "CameraApply"}, "0x80004005"},
      // A read that succeeds with nothing ends the step just as a failure does.
      {"active document fails", "ApplicationActiveDocument=0x80004005", kGearbox, "Housing:1", {"CameraApply"},
       {"DocumentSelectSet", "SelectSetClear"}},
      {"active document null", "ApplicationActiveDocument=null", kGearbox, "Housing:1", {"CameraApply"},
       {"DocumentSelectSet", "SelectSetClear"}},
      {"first view fails", "ViewsItem=0x80004005", kGearbox, nullptr, {"ApplicationModeFlag(0)", "DocumentsOpenWithOptions"},
       {"ViewActivate"}},
      {"first view null", "ViewsItem=null", kGearbox, nullptr, {"ApplicationModeFlag(0)", "DocumentsOpenWithOptions"},
       {"ViewActivate"}},
      {"occurrence fails", "OccurrencesItemByName=0x80004005", kGearbox, "Shaft:1|Bearing:2", {"SelectSetClear"},
       {"OccurrenceDefinition", "SelectSetSelect"}},
      {"occurrence null", "OccurrencesItemByName=null", kGearbox, "Shaft:1|Bearing:2", {"SelectSetClear"},
       {"OccurrenceDefinition", "SelectSetSelect"}},
      {"context fails", "OccurrenceContextFor=0x80004005", kGearbox, "Shaft:1|Bearing:2", {"OccurrenceContextFor("},
       {"SelectSetSelect"}},
      {"context null", "OccurrenceContextFor=null", kGearbox, "Shaft:1|Bearing:2", {"OccurrenceContextFor("},
       {"SelectSetSelect"}},
      // Of the up vector's writes only the y one goes unchecked.
      {"up x", "UnitVectorX=0x80004005", kGearbox, nullptr, {"UnitVectorX("}, {"UnitVectorY", "CameraApply"}},
      {"up y", "UnitVectorY=0x80004005", kGearbox, nullptr, {"UnitVectorZ(", "CameraApply"}, {}},
      {"up z", "UnitVectorZ=0x80004005", kGearbox, nullptr, {"UnitVectorZ("}, {"CameraEye(Point", "CameraApply"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Start(c.failure[0] ? std::string("fail ") + c.failure + "\n" : "");
    std::vector<std::string> lines = Send(Record(c.document, c.item));
    for (const char* text : c.present) EXPECT_TRUE(Has(lines, text)) << text;
    for (const char* text : c.absent) EXPECT_FALSE(Has(lines, text)) << text;
    if (c.raised)
      EXPECT_NE(std::string::npos, raised.find(std::string("COM error ") + c.raised + " raised")) << raised;
    else
      EXPECT_EQ(std::string::npos, raised.find("raised")) << raised;
  }
}

// These failures end the handler on the spot: the failed call is the host's last.
TEST_F(Veerback, AFailedLookUpViewsOrDocumentsReadIsTheLastCall) {
  const struct {
    const char* role;
    const char16_t* document;
  } cases[] = {{"FileServiceEntries", kGearbox}, {"DocumentViews", kGearbox}, {"ApplicationDocuments", u"C:\\Models\\Pump.gam"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.role);
    Start(std::string("fail ") + c.role + "=0x80004005\n");
    std::vector<std::string> lines = Send(Record(c.document, "Housing:1"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(std::string(c.role) + "() -> 0x80004005", lines.back());
    EXPECT_EQ(1, std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return Has({line}, c.role); }));
  }
  // Failing at the documents, the mode flag stays cleared.
  EXPECT_EQ(0, model->modeFlag);
}

TEST_F(Veerback, AMissingItemFileClearsAndSelectsNothing) {
  Start();
  LcOmTrackBackRecord record = Record(kGearbox);
  record.setItemFilePath(u"/nowhere/item.txt");
  record.hasItem = 1;
  std::vector<std::string> lines = Send(record);
  EXPECT_TRUE(Has(lines, "SelectSetClear"));
  EXPECT_FALSE(Has(lines, "SelectSetSelect"));
}

TEST_F(Veerback, TheModeFlagIsRestoredOnAFailedOpenOnly) {
  Start("fail DocumentsOpen@2=0x80004005\n");
  std::vector<std::string> good = Send(Record(kBracket));  // open: no open call at all
  EXPECT_FALSE(Has(good, "ApplicationModeFlag"));
  // A part that isn't open: the flag is cleared and stays cleared after a good open.
  model->Find(u"C:\\Models\\Bracket.gpt", false)->open = false;
  std::vector<std::string> opened = Send(Record(kBracket));
  EXPECT_TRUE(Has(opened, "ApplicationModeFlag() -> 0x00000000 -1"));
  EXPECT_TRUE(Has(opened, "ApplicationModeFlag(0)"));
  EXPECT_TRUE(Has(opened, "DocumentsOpen(\"c:\\models\\bracket.gpt\", -1) -> 0x00000000"));
  EXPECT_FALSE(Has(opened, "ApplicationModeFlag(-1)"));
  EXPECT_EQ(0, model->modeFlag);
  // The second open fails: the flag goes back to what was read (0 now).
  model->Find(u"C:\\Models\\Bracket.gpt", false)->open = false;
  model->modeFlag = -1;
  std::vector<std::string> failed = Send(Record(kBracket));
  EXPECT_TRUE(Has(failed, "DocumentsOpen(\"c:\\models\\bracket.gpt\", -1) -> 0x80004005"));
  EXPECT_TRUE(Has(failed, "ApplicationModeFlag(-1)"));
  EXPECT_EQ(-1, model->modeFlag);
}

TEST_F(Veerback, AnAssemblyOpensWithItsDesignViewAndLevelOfDetail) {
  struct Case {
    const char* name;
    const char* failure;
    bool withOptions;
    bool plainOpen;
    const char* levelOfDetail;
    const char* designView;
  };
  const Case cases[] = {
      {"with options", "", true, false, "\"Simplified\"", "\"Exploded\""},
      {"design view unreadable", "FileServiceDesignViewName=0x80004005", false, true, "\"Simplified\"", "null"},
      {"level of detail null", "FileServiceLevelOfDetailName=null", true, false, "null", "\"Exploded\""},
      {"open with options fails", "DocumentsOpenWithOptions=0x80004005", true, true, "\"Simplified\"", "\"Exploded\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Start(c.failure[0] ? std::string("fail ") + c.failure + "\n" : "");
    std::vector<std::string> lines = Send(Record(u"C:\\Models\\PUMP.GAM", "Motor:1"));
    // The look-up takes the path as it stands; the rest a lower-case copy.
    EXPECT_TRUE(Has(lines, "EntriesItem(\"C:\\Models\\PUMP.GAM\")")) << c.name;
    EXPECT_TRUE(Has(lines, "FileServiceDesignViewName(\"c:\\models\\pump.gam\")")) << c.name;
    // Level of detail first, then design view, each whatever was read.
    std::vector<std::string> options;
    for (const std::string& line : lines)
      if (line.rfind("OptionsValue(", 0) == 0) options.push_back(line.substr(0, line.find(')') + 1));
    const std::vector<std::string> expected = {
        std::string("OptionsValue(\"LevelOfDetailRepresentation\", ") + c.levelOfDetail + ")",
        std::string("OptionsValue(\"DesignViewRepresentation\", ") + c.designView + ")"};
    EXPECT_EQ(expected, options);
    EXPECT_EQ(c.withOptions, Has(lines, "DocumentsOpenWithOptions(\"c:\\models\\pump.gam\"")) << c.name;
    EXPECT_EQ(c.plainOpen, Has(lines, "DocumentsOpen(\"c:\\models\\pump.gam\", -1)")) << c.name;
    EXPECT_TRUE(Has(lines, "SelectSetSelect")) << c.name;
  }
}

TEST_F(Veerback, CameraValuesReachTheHost) {
  Start();
  LcOmTrackBackRecord ortho = Record(kGearbox);
  ortho.camera.projection = 1;
  ortho.camera.aspect = 2.0;
  ortho.camera.height = 10.0;
  std::vector<std::string> lines = Send(ortho);
  EXPECT_TRUE(Has(lines, "CameraSetExtents(20, 10)"));
  EXPECT_TRUE(Has(lines, "CameraPerspective(0)"));
  EXPECT_FALSE(Has(lines, "CameraPerspectiveAngle(1"));
  // The target lies on the far plane: 30 ahead of the eye at z = 50.
  EXPECT_TRUE(Has(lines, "PointZ(20)"));

  LcOmTrackBackRecord perspective = Record(kGearbox);
  perspective.camera.height = 0.5;
  lines = Send(perspective);
  EXPECT_TRUE(Has(lines, "CameraPerspectiveAngle(0.5)"));
  EXPECT_TRUE(Has(lines, "CameraPerspective(-1)"));
  EXPECT_FALSE(Has(lines, "CameraSetExtents"));
  EXPECT_TRUE(Has(lines, "PointZ(30)"));  // mid clip range: 20 ahead
  EXPECT_TRUE(Has(lines, "UnitVectorY(1)"));
}

// Half turns about each axis are exact, so the host must get exact numbers.
TEST_F(Veerback, ARotatedCameraReachesTheHostExactly) {
  struct Case {
    const char* axis;
    LcLRotation rotation;
    double target[3], up[3];
  };
  const Case cases[] = {{"x", LcLRotation(1, 0, 0, 0), {1, 2, 23}, {0, -1, 0}},
                        {"y", LcLRotation(0, 1, 0, 0), {1, 2, 23}, {0, 1, 0}},
                        {"z", LcLRotation(0, 0, 1, 0), {1, 2, -17}, {0, -1, 0}}};
  for (const Case& c : cases) {
    Start();
    LcOmTrackBackRecord record = Record(kGearbox);
    record.camera.position = LcLPoint3f(1.0, 2.0, 3.0);
    record.camera.rotation = c.rotation;
    Send(record);
    const HostSimModel::Camera& camera = model->activeDocument->views[size_t(model->activeView)];
    const double eye[3] = {1, 2, 3};
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(eye[i], camera.eye[i]) << c.axis << " eye " << i;
      EXPECT_EQ(c.target[i], camera.target[i]) << c.axis << " target " << i;
      EXPECT_EQ(c.up[i], camera.up[i]) << c.axis << " up " << i;
    }
  }
  // The y write of the up vector alone may fail and the camera still goes on.
  Start("fail UnitVectorY=0x80004005\n");
  std::vector<std::string> roles = Roles(Send(Record(kGearbox)));
  const std::vector<std::string> tail = {"UnitVectorY", "UnitVectorZ", "CameraEye", "CameraUpVector"};
  auto y = std::find(roles.begin(), roles.end(), "UnitVectorY");
  ASSERT_GE(std::distance(y, roles.end()), std::ptrdiff_t(tail.size()));
  EXPECT_TRUE(std::equal(tail.begin(), tail.end(), y));
  EXPECT_TRUE(Has(roles, "CameraApply"));
}

// A view direction of zero length meets neither clip plane: the target is
// then the near plane's point as it stood, the origin.
TEST_F(Veerback, ALineOfSightThatMeetsNoClipPlane) {
  Start();
  LcOmTrackBackRecord record = Record(kGearbox);
  record.camera.position = LcLPoint3f(1.0, 2.0, 3.0);
  record.camera.rotation = LcLRotation(0.5, 0.5, 0.0, 0.0);  // takes (0, 0, -1) to nothing
  std::vector<std::string> lines = Send(record);
  const std::vector<std::string> target = {"PointX(0)", "PointY(0)", "PointZ(0)", "CameraTarget(Point#"};
  auto put = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("CameraUpVector(UnitVector", 0) == 0; });
  ASSERT_GE(std::distance(put, lines.end()), std::ptrdiff_t(target.size() + 1));
  for (size_t i = 0; i < target.size(); ++i) EXPECT_EQ(0u, put[std::ptrdiff_t(i) + 1].rfind(target[i], 0)) << put[std::ptrdiff_t(i) + 1];
  EXPECT_TRUE(Has(lines, "CameraApply"));
}

TEST_F(Veerback, ItemPathsOfOneTwoAndThreeNames) {
  struct Case {
    const char* item;
    bool context;
    const char* selected;
  };
  const Case cases[] = {{"Housing:1", false, "Housing:1"},
                        {"Shaft:1|Bearing:2", true, "Shaft:1|Bearing:2"},
                        {"||Shaft:1||Gear:1|Tooth:2|", true, "Shaft:1|Gear:1|Tooth:2"}};
  for (const Case& c : cases) {
    Start();
    std::vector<std::string> lines = Send(Record(kGearbox, c.item));
    EXPECT_EQ(c.context, Has(lines, "OccurrenceContextFor(")) << c.item;
    ASSERT_FALSE(model->activeDocument->selection.empty()) << c.item;
    EXPECT_EQ(std::u16string(c.selected, c.selected + std::string(c.selected).size()),
              model->activeDocument->selection.back())
        << c.item;
  }
}

TEST_F(Veerback, GarbageRecordsNeverBreakTheHost) {
  Start();
  LcOmTrackBackRecord record = Record(kGearbox);
  for (char16_t& unit : record.documentPath) unit = u'\xD800';  // no terminator, lone surrogates
  for (char16_t& unit : record.itemFilePath) unit = u'x';
  record.hasItem = 7;
  record.camera.projection = 12345;
  record.camera.position = LcLPoint3f(std::nan(""), INFINITY, -INFINITY);
  record.camera.rotation = LcLRotation(std::nan(""), 0.0, 0.0, 0.0);
  record.camera.aspect = INFINITY;
  record.camera.height = std::numeric_limits<double>::quiet_NaN();
  Send(record);

  // An item file whose first line is longer than a line can be, and bytes that aren't text.
  std::string item = std::string(3000, 'A') + "\xFF\xFE\xC3";
  Send(Record(kGearbox, item.c_str()));
  Send(Record(kGearbox, "\xED\xA0\x80|\xC0\x80|\xFF"));
  Send(Record(kBracket, "Housing:1"));  // items on a part select nothing, silently
  EXPECT_EQ(u"C:\\Models\\Bracket.gpt", model->activeDocument->path);
}
