#include <gtest/gtest.h>

#include "HostSimTesting.h"
#include "addin/LcGlfGuids.h"

namespace {
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;
const char16_t* const kGearbox = u"C:\\Models\\Gearbox.gam";
const char16_t* const kBracket = u"C:\\Models\\Bracket.gpt";
}  // namespace

using HostSimObjects = HostSimTest;

// Identifiers are the published numbers, written out here rather than taken
// from the add-in's list, so that a slip in either shows.
TEST_F(HostSimObjects, AnswersThePublishedIdentifiersWithJournalLines) {
  IDispatch* application = Application();
  IDispatch* service = Object(application, 0x300014E);
  IDispatch* entries = Object(service, 0x300B608);
  IDispatch* gearbox = Document(kGearbox);
  IDispatch* camera = Object(Object(Object(gearbox, 0x3012701), 0, {I4(1)}), 0x300040E);
  const struct {
    IDispatch* object;
    DISPID id;
    WORD kind;
    std::vector<VARIANT> args;
    HRESULT result;
    const char* line;
  } cases[] = {
      {application, 0x300012A, kGet, {}, S_OK, "ApplicationMainWindow() -> 0x00000000 4660"},
      {application, 0x3000115, kGet, {}, S_OK, "ApplicationModeFlag() -> 0x00000000 -1"},
      {application, 0x3000115, kPut, {Bool(0)}, S_OK, "ApplicationModeFlag(0) -> 0x00000000"},
      {application, 0x3000115, kGet, {}, S_OK, "ApplicationModeFlag() -> 0x00000000 0"},
      {application, 0x3000101, kGet, {}, S_OK, "ApplicationActiveDocument() -> 0x00000000 Document#1"},
      {application, 0x3000106, kGet, {}, S_OK, "ApplicationActiveView() -> 0x00000000 View#1"},
      {application, 0x3000103, kGet, {}, S_OK, "ApplicationDocuments() -> 0x00000000 Documents#1"},
      {application, 0x3000139, kGet, {}, S_OK, "ApplicationTransientFactory() -> 0x00000000 TransientFactory#1"},
      {service, 0x300B615, kMethod, {Bstr(u"c:\\models\\PUMP.gam")}, S_OK,
       "FileServiceDesignViewName(\"c:\\models\\PUMP.gam\") -> 0x00000000 \"Exploded\""},
      {service, 0x300B613, kMethod, {Bstr(u"c:\\models\\pump.gam")}, S_OK,
       "FileServiceLevelOfDetailName(\"c:\\models\\pump.gam\") -> 0x00000000 \"Simplified\""},
      {service, 0x300B613, kMethod, {Bstr(kBracket)}, S_OK,
       "FileServiceLevelOfDetailName(\"C:\\Models\\Bracket.gpt\") -> 0x00000000 \"\""},
      {service, 0x300B615, kMethod, {Bstr(u"C:\\nowhere.gam")}, HRESULT(0x80070002),
       "FileServiceDesignViewName(\"C:\\nowhere.gam\") -> 0x80070002"},
      // Entries give open documents only, by their path as it stands.
      {entries, 0, kGet, {Bstr(kBracket)}, S_OK, "EntriesItem(\"C:\\Models\\Bracket.gpt\") -> 0x00000000 Document#2"},
      {entries, 0, kGet, {Bstr(u"c:\\models\\bracket.gpt")}, E_INVALIDARG,
       "EntriesItem(\"c:\\models\\bracket.gpt\") -> 0x80070057"},
      {entries, 0, kGet, {Bstr(u"C:\\Models\\Pump.gam")}, E_INVALIDARG,
       "EntriesItem(\"C:\\Models\\Pump.gam\") -> 0x80070057"},
      {entries, 0, kGet, {I4(1)}, DISP_E_TYPEMISMATCH, "EntriesItem(1) -> 0x80020005"},
      {camera, 0x300360F, kGet, {}, S_OK, "CameraPerspectiveAngle() -> 0x00000000 0.78539816339744828"},
      {camera, 0x300360F, kPut, {R8(0.1)}, S_OK, "CameraPerspectiveAngle(0.10000000000000001) -> 0x00000000"},
      {camera, 0x300360E, kPut, {Bool(1)}, S_OK, "CameraPerspective(1) -> 0x00000000"},
      {camera, 0x300360E, kGet, {}, S_OK, "CameraPerspective() -> 0x00000000 1"},
      {camera, 0x3003611, kMethod, {R8(20), R8(10)}, S_OK, "CameraSetExtents(20, 10) -> 0x00000000"},
      {camera, 0x3003609, kMethod, {}, S_OK, "CameraApply() -> 0x00000000"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.result, Call(c.object, c.id, c.kind, c.args)) << c.line;
    EXPECT_EQ(c.line, Last());
  }
  double extents[2] = {};
  VARIANT out[2];
  for (int i = 0; i < 2; ++i) {
    VariantInit(&out[i]);
    out[i].vt = VT_BYREF | VT_R8;
    out[i].pdblVal = &extents[i];
  }
  EXPECT_EQ(S_OK, Call(camera, 0x3003612, kMethod, {out[0], out[1]}));
  EXPECT_EQ("CameraGetExtents(*, *) -> 0x00000000 20 10", Last());
  EXPECT_EQ(20, extents[0]);
  EXPECT_EQ(10, extents[1]);
}

TEST_F(HostSimObjects, ChecksArgumentsAsTheTableGivesThem) {
  IDispatch* application = Application();
  IDispatch* documents = Object(application, 0x3000103);
  IDispatch* views = Object(Document(kGearbox), 0x3012701);
  IDispatch* camera = Object(Object(views, 0, {I4(1)}), 0x300040E);
  const struct {
    IDispatch* object;
    DISPID id;
    WORD kind;
    std::vector<VARIANT> args;
    HRESULT result;
    UINT argError;  // where DISPPARAMS holds the bad argument, last first
  } cases[] = {
      {views, 0, kGet, {}, DISP_E_BADPARAMCOUNT, 99},
      {views, 0, kGet, {I4(1), I4(2)}, DISP_E_BADPARAMCOUNT, 99},
      {views, 0, kGet, {R8(1)}, DISP_E_TYPEMISMATCH, 0},
      {documents, 0x3000302, kMethod, {Bstr(kGearbox), I4(-1)}, DISP_E_TYPEMISMATCH, 0},
      {documents, 0x3000302, kMethod, {I4(1), Bool(-1)}, DISP_E_TYPEMISMATCH, 1},
      {application, 0x3000115, kPut, {I4(0)}, DISP_E_TYPEMISMATCH, 0},
      {application, 0x3000999, kGet, {}, DISP_E_MEMBERNOTFOUND, 99},
      // A role answers only on its own kind of object and with its own invoke kind.
      {views, 0x300012A, kGet, {}, DISP_E_MEMBERNOTFOUND, 99},
      {Document(kGearbox), 0x5000102, kGet, {}, DISP_E_MEMBERNOTFOUND, 99},
      {application, 0x3000206, kMethod, {}, DISP_E_MEMBERNOTFOUND, 99},
      {application, 0x300012A, kPut, {I4(1)}, DISP_E_MEMBERNOTFOUND, 99},
      {camera, 0x3003612, kMethod, {R8(1), R8(1)}, DISP_E_TYPEMISMATCH, 1},
  };
  for (const auto& c : cases) {
    std::vector<VARIANT> packed(c.args.rbegin(), c.args.rend());
    DISPID named = DISPID_PROPERTYPUT;
    bool put = c.kind == kPut;
    DISPPARAMS params = {packed.data(), put ? &named : nullptr, UINT(packed.size()), put ? 1u : 0u};
    UINT argError = 99;
    VARIANT result;
    EXPECT_EQ(c.result, c.object->Invoke(c.id, IID_NULL, 0, c.kind, &params, &result, nullptr, &argError)) << Last();
    EXPECT_EQ(c.argError, argError) << Last();
  }
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Call(application, 0x3000999, kGet));
  EXPECT_EQ("Invoke(Application#1, 0x3000999, 2) -> 0x80020003", Last());
  // A put names its value; nothing else names any argument.
  VARIANT flag = Bool(0);
  DISPPARAMS unnamed = {&flag, nullptr, 1, 0};
  EXPECT_EQ(DISP_E_PARAMNOTFOUND,
            application->Invoke(0x3000115, IID_NULL, 0, kPut, &unnamed, nullptr, nullptr, nullptr));
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS namedGet = {&flag, &named, 1, 1};
  EXPECT_EQ(DISP_E_NONAMEDARGS, views->Invoke(0, IID_NULL, 0, kGet, &namedGet, nullptr, nullptr, nullptr));
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE,
            application->Invoke(0x300012A, IID_IDispatch, 0, kGet, &unnamed, nullptr, nullptr, nullptr));
  EXPECT_EQ(-1, model->modeFlag);
}

TEST_F(HostSimObjects, QueryInterfaceAnswersTheHostInterfacesWhereTheyApply) {
  IDispatch* gearbox = Document(kGearbox);
  IDispatch* bracket = Document(kBracket);
  IDispatch* shaft = Object(Occurrence(gearbox, {u"Shaft:1"}), 0x4001333);
  IDispatch* housing = Object(Occurrence(gearbox, {u"Housing:1"}), 0x4001333);
  const struct {
    IDispatch* object;
    const IID& iid;
    const char* line;
  } cases[] = {
      {host->Site(), IID_GlfAddInSite, "QueryInterface(AddInSite) -> 0x00000000 AddInSite#1"},
      {Application(), IID_GlfAddInSite, "QueryInterface(AddInSite) -> 0x80004002"},
      {gearbox, IID_GlfPartDocument, "QueryInterface(PartDocument) -> 0x80004002"},
      {gearbox, IID_GlfAssemblyDocument, "QueryInterface(AssemblyDocument) -> 0x00000000 Document#1"},
      {bracket, IID_GlfPartDocument, "QueryInterface(PartDocument) -> 0x00000000 Document#2"},
      {bracket, IID_GlfAssemblyDocument, "QueryInterface(AssemblyDocument) -> 0x80004002"},
      {shaft, IID_GlfAssemblyDefinition, "QueryInterface(AssemblyDefinition) -> 0x00000000 Definition#2"},
      {housing, IID_GlfAssemblyDefinition, "QueryInterface(AssemblyDefinition) -> 0x80004002"},
      {gearbox, IID_GlfAssemblyDefinition, "QueryInterface(AssemblyDefinition) -> 0x80004002"},
      {gearbox, IID_IClassFactory, "QueryInterface({00000001-0000-0000-C000-000000000046}) -> 0x80004002"},
  };
  for (const auto& c : cases) {
    void* answer = reinterpret_cast<void*>(1);
    HRESULT hr = c.object->QueryInterface(c.iid, &answer);
    EXPECT_EQ(c.line, Last());
    EXPECT_EQ(SUCCEEDED(hr) ? static_cast<void*>(c.object) : nullptr, answer) << c.line;
    if (answer) c.object->Release();
  }
  // The plain interfaces go unjournaled.
  long lines = journal.Count();
  void* answer = nullptr;
  EXPECT_EQ(S_OK, gearbox->QueryInterface(IID_IDispatch, &answer));
  gearbox->Release();
  EXPECT_EQ(lines, journal.Count());
}

TEST_F(HostSimObjects, OpensByAPathInAnyCaseAndMakesItActive) {
  IDispatch* documents = Object(Application(), 0x3000103);
  EXPECT_EQ(HRESULT(0x80070002), Call(documents, 0x3000302, kMethod, {Bstr(u"C:\\Models\\None.gam"), Bool(-1)}));
  EXPECT_EQ(model->documents[0].get(), model->activeDocument);

  VARIANT opened;
  EXPECT_EQ(S_OK, Call(documents, 0x3000302, kMethod, {Bstr(u"c:\\models\\PUMP.GAM"), Bool(-1)}, &opened));
  EXPECT_EQ("DocumentsOpen(\"c:\\models\\PUMP.GAM\", -1) -> 0x00000000 Document#3", Last());
  VariantClear(&opened);
  EXPECT_EQ(model->documents[2].get(), model->activeDocument);
  EXPECT_EQ(0, model->activeView);
  Document(u"C:\\Models\\Pump.gam");
  EXPECT_NE(std::string::npos, State().find("document C:\\Models\\Pump.gam (assembly, opened plain)"));

  // An invisible open opens without bringing the document forward.
  Load("document C:\\a.gpt part open\nview\ndocument C:\\b.gpt part\nview\n");
  documents = Object(Application(), 0x3000103);
  EXPECT_EQ(S_OK, Call(documents, 0x3000302, kMethod, {Bstr(u"C:\\b.gpt"), Bool(0)}));
  EXPECT_TRUE(model->documents[1]->open);
  EXPECT_EQ(model->documents[0].get(), model->activeDocument);
}

TEST_F(HostSimObjects, OpensWithTheOptionsItWasGiven) {
  IDispatch* application = Application();
  IDispatch* options = Object(Object(application, 0x3000139), 0x3004903, {}, kMethod);
  VARIANT none;
  VariantInit(&none);
  none.vt = VT_BSTR;
  none.bstrVal = nullptr;
  EXPECT_EQ(S_OK, Call(options, 0x3004C02, kPut, {Bstr(u"LevelOfDetailRepresentation"), none}));
  EXPECT_EQ("OptionsValue(\"LevelOfDetailRepresentation\", null) -> 0x00000000", Last());
  EXPECT_EQ(S_OK, Call(options, 0x3004C02, kPut, {Bstr(u"DesignViewRepresentation"), Bstr(u"Say \"hi\"\n")}));
  EXPECT_EQ("OptionsValue(\"DesignViewRepresentation\", \"Say \\\"hi\\\"\\n\") -> 0x00000000", Last());
  IDispatch* documents = Object(application, 0x3000103);
  VARIANT pump = Bstr(u"c:\\models\\pump.gam");
  EXPECT_EQ(E_INVALIDARG, Call(documents, 0x3000303, kMethod, {pump, Dispatch(documents), Bool(-1)}));
  EXPECT_EQ(S_OK, Call(documents, 0x3000303, kMethod, {pump, Dispatch(options), Bool(-1)}));
  EXPECT_EQ("DocumentsOpenWithOptions(\"c:\\models\\pump.gam\", OptionsMap#1, -1) -> 0x00000000 Document#3", Last());
  EXPECT_NE(std::string::npos, State().find("(assembly, opened with options "
                                            "DesignViewRepresentation=\"Say \\\"hi\\\"\\n\" "
                                            "LevelOfDetailRepresentation=null)"));
}

TEST_F(HostSimObjects, ACameraReachesItsViewOnlyOnApply) {
  IDispatch* view = Object(Object(Document(kBracket), 0x3012701), 0, {I4(1)});
  EXPECT_EQ(S_OK, Call(view, 0x3000206, kMethod));
  EXPECT_EQ(model->documents[1].get(), model->activeDocument);
  IDispatch* camera = Object(view, 0x300040E);
  IDispatch* eye = Object(camera, 0x300360B);
  IDispatch* up = Object(camera, 0x300360D);
  EXPECT_EQ(S_OK, Call(eye, 0x4000933, kPut, {R8(5)}));
  EXPECT_EQ(S_OK, Call(up, 0x4000B35, kPut, {R8(1)}));
  // The host takes a point for a point and a unit vector for a unit vector.
  EXPECT_EQ(E_INVALIDARG, Call(camera, 0x300360D, kPut, {Dispatch(eye)}));
  EXPECT_EQ(E_INVALIDARG, Call(camera, 0x300360B, kPut, {Dispatch(nullptr)}));
  EXPECT_EQ(S_OK, Call(camera, 0x300360B, kPut, {Dispatch(eye)}));
  EXPECT_EQ(S_OK, Call(camera, 0x300360D, kPut, {Dispatch(up)}));
  EXPECT_EQ(S_OK, Call(camera, 0x300360E, kPut, {Bool(-1)}));
  const char* before = "view 1: eye (0, 0, 80) target (0, 0, 0) up (0, 1, 0) perspective 0 extents 60 x 40";
  EXPECT_NE(std::string::npos, State().find(before)) << State();
  EXPECT_EQ(S_OK, Call(camera, 0x3003609, kMethod));
  EXPECT_NE(std::string::npos,
            State().find("view 1: eye (5, 0, 80) target (0, 0, 0) up (0, 1, 1) perspective -1 angle 0.7853981634"))
      << State();
}

TEST_F(HostSimObjects, SelectsOnlyWhatStandsAtTheTopOfTheDocument) {
  IDispatch* gearbox = Document(kGearbox);
  IDispatch* selectSet = Object(gearbox, 0x300023A);
  IDispatch* shaft = Occurrence(gearbox, {u"Shaft:1"});
  IDispatch* tooth = Occurrence(gearbox, {u"Shaft:1", u"Gear:1", u"Tooth:1"});
  IDispatch* gear = Occurrence(gearbox, {u"Shaft:1", u"Gear:1"});
  IDispatch* housing = Occurrence(gearbox, {u"Housing:1"});
  EXPECT_EQ(E_INVALIDARG, Call(Object(Object(gearbox, 0x6000102), 0x4001134), 0x7F000027, kGet, {Bstr(u"Tooth:1")}));

  auto contextFor = [&](IDispatch* top, IDispatch* nested, IDispatch** context) {
    VARIANT out;
    VariantInit(&out);
    out.vt = VT_BYREF | VT_DISPATCH;
    out.ppdispVal = context;
    *context = nullptr;
    HRESULT hr = Call(top, 0x4001337, kMethod, {Dispatch(nested), out});
    if (*context) held.push_back(*context);
    return hr;
  };
  IDispatch* context = nullptr;
  EXPECT_EQ(E_INVALIDARG, Call(selectSet, 0x3008801, kMethod, {Dispatch(tooth)}));
  EXPECT_EQ(E_INVALIDARG, contextFor(gear, tooth, &context));     // not at the top
  EXPECT_EQ(E_INVALIDARG, contextFor(housing, tooth, &context));  // not beneath it
  EXPECT_EQ(E_INVALIDARG, contextFor(shaft, shaft, &context));
  EXPECT_EQ(S_OK, contextFor(shaft, tooth, &context));
  EXPECT_EQ("OccurrenceContextFor(Occurrence#3, *) -> 0x00000000 Occurrence#5", Last());
  EXPECT_EQ(S_OK, Call(selectSet, 0x3008801, kMethod, {Dispatch(context)}));
  EXPECT_EQ(S_OK, Call(selectSet, 0x3008801, kMethod, {Dispatch(housing)}));
  EXPECT_NE(std::string::npos, State().find("selected: Shaft:1|Gear:1|Tooth:1, Housing:1")) << State();

  // Another document's select set takes nothing of this one's.
  IDispatch* bracket = Document(kBracket);
  IDispatch* otherSet = Object(bracket, 0x300023A);
  EXPECT_EQ(E_INVALIDARG, Call(otherSet, 0x3008801, kMethod, {Dispatch(housing)}));
  EXPECT_EQ(S_OK, Call(otherSet, 0x3008801, kMethod, {Dispatch(Object(bracket, 0x5000102))}));
  EXPECT_NE(std::string::npos, State().find("selected: the whole document")) << State();
  EXPECT_EQ(S_OK, Call(selectSet, 0x3008804, kMethod));
  EXPECT_NE(std::string::npos, State().find("selected: nothing")) << State();
}

TEST_F(HostSimObjects, TheStateShowsReferencesKeptAndReleasedTooOften) {
  auto line = [&](const std::string& start) {
    std::string state = State();
    size_t at = state.find("\n" + start) + 1;
    return state.substr(at, state.find('\n', at) - at);
  };
  VARIANT point;
  IDispatch* camera = Object(Object(Object(Document(kGearbox), 0x3012701), 0, {I4(1)}), 0x300040E);
  ASSERT_EQ(S_OK, Call(camera, 0x300360C, kGet, {}, &point));
  EXPECT_NE(std::string::npos, line("references held: ").find("Point#1 x1")) << State();
  point.pdispVal->Release();
  point.pdispVal->Release();
  EXPECT_EQ(std::string::npos, line("references held: ").find("Point#1")) << State();
  EXPECT_EQ("released too often: Point#1 x1", line("released too often: "));
}
