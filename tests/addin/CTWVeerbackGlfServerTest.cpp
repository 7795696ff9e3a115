#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "TestHost.h"
#include "TestModule.h"
#include "TestProcess.h"
#include "addin/ITWVeerbackGlfServer.h"
#include "addin/LcGlfGuids.h"
#include "addin/LcOmTrackBackSender.h"

namespace {
constexpr DISPID kApplicationMainWindow = 0x300012A;

TestModule* loaded = nullptr;
void PumpModule() {
  loaded->Pump();
}

class AddInModule : public ::testing::Test {
protected:
  void SetUp() override {
    home = TestProcess::MakeTempFolder("module");
    TestProcess::SetEnvironment("XDG_CONFIG_HOME", home);
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", home);
    module = new TestModule(TestProcess::NativePath(TW_ADDIN_MODULE));
    loaded = module;
    ASSERT_TRUE(module->IsLoaded());
    ASSERT_EQ(S_OK, module->GetClassObject(CLSID_TWVeerbackGlfServer, IID_IClassFactory,
                                           reinterpret_cast<void**>(&factory)));
  }
  void TearDown() override {
    if (factory) factory->Release();
    delete module;
  }

  ITWVeerbackGlfServer* Create() {
    ITWVeerbackGlfServer* server = nullptr;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_ITWVeerbackGlfServer, reinterpret_cast<void**>(&server)));
    return server;
  }

  int Send() {
    return TestProcess::Run(TestProcess::NativePath(TW_VEERBACK), {"send", "--document", "C:\\parts\\gear.gpt"},
                            &PumpModule);
  }

  std::string home;
  TestModule* module = nullptr;
  IClassFactory* factory = nullptr;
};
}  // namespace

TEST_F(AddInModule, ServesOneClassAndCountsItsLocks) {
  void* object = nullptr;
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, module->GetClassObject(IID_IDispatch, IID_IClassFactory, &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(S_FALSE, module->CanUnloadNow());  // the factory is held
  ITWVeerbackGlfServer* server = Create();
  ASSERT_NE(nullptr, server);
  IDispatch* dispatch = nullptr;
  EXPECT_EQ(S_OK, server->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)));
  EXPECT_EQ(static_cast<IDispatch*>(server), dispatch);
  dispatch->Release();
  EXPECT_EQ(E_NOINTERFACE, server->QueryInterface(IID_IClassFactory, &object));
  server->Release();
  factory->Release();
  factory = nullptr;
  EXPECT_EQ(S_OK, module->CanUnloadNow());
  EXPECT_EQ(0, module->PurifyIsRunning());
}

TEST_F(AddInModule, AggregationHandsOutTheInnerIdentityOnly) {
  TestDispatch outer;
  void* object = nullptr;
  EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, IID_ITWVeerbackGlfServer, &object));
  IUnknown* inner = nullptr;
  ASSERT_EQ(S_OK, factory->CreateInstance(&outer, IID_IUnknown, reinterpret_cast<void**>(&inner)));
  ITWVeerbackGlfServer* server = nullptr;
  ASSERT_EQ(S_OK, inner->QueryInterface(IID_ITWVeerbackGlfServer, reinterpret_cast<void**>(&server)));
  // The server's own IUnknown delegates to the outer object.
  ULONG before = outer.GetRefs();
  server->AddRef();
  EXPECT_EQ(before + 1, outer.GetRefs());
  server->Release();
  server->Release();
  inner->Release();
}

TEST_F(AddInModule, ActivateRefusesBadSites) {
  ITWVeerbackGlfServer* server = Create();
  ASSERT_NE(nullptr, server);
  EXPECT_EQ(E_INVALIDARG, server->Activate(nullptr, VARIANT_TRUE));
  TestDispatch notASite;
  EXPECT_EQ(E_NOINTERFACE, server->Activate(&notASite, VARIANT_TRUE));
  EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());
  EXPECT_EQ(S_OK, server->Deactivate());
  // A site whose application can't be read: its result comes back, the site
  // stays held until Deactivate, and nothing listens.
  TestHost host;
  host.site.SetException(0x3001401, E_FAIL);
  EXPECT_EQ(E_FAIL, server->Activate(&host.site, VARIANT_TRUE));
  EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());
  EXPECT_EQ(2u, host.site.GetRefs());
  EXPECT_EQ(1u, host.application.GetRefs());
  EXPECT_EQ(S_OK, server->Deactivate());
  EXPECT_EQ(1u, host.site.GetRefs());
  server->Release();
}

TEST_F(AddInModule, ActivateListensAndDeactivateStops) {
  TestHost host;
  ITWVeerbackGlfServer* server = Create();
  ASSERT_NE(nullptr, server);
  for (VARIANT_BOOL firstTime : {VARIANT_TRUE, VARIANT_FALSE}) {
    ASSERT_EQ(S_OK, server->Activate(&host.site, firstTime));
    EXPECT_TRUE(LcOmTrackBackSender::IsListenerRunning());
    int before = host.CountCalls(kApplicationMainWindow);
    EXPECT_EQ(0, Send());
    EXPECT_EQ(0, Send());
    // Each message brings the host forward once.
    EXPECT_EQ(before + 2, host.CountCalls(kApplicationMainWindow));
    EXPECT_EQ(S_OK, server->Deactivate());
    EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());
    EXPECT_EQ(2, Send());
  }
  // The site and the application are released again.
  EXPECT_EQ(1u, host.site.GetRefs());
  EXPECT_EQ(1u, host.application.GetRefs());
  server->Release();
}

TEST_F(AddInModule, ActivateThroughInvoke) {
  TestHost host;
  ITWVeerbackGlfServer* server = Create();
  ASSERT_NE(nullptr, server);
  VARIANT args[2];
  VariantInit(&args[0]);
  VariantInit(&args[1]);
  args[1].vt = VT_DISPATCH;  // pDisp comes last-first
  args[1].pdispVal = &host.site;
  args[0].vt = VT_BOOL;
  args[0].boolVal = VARIANT_TRUE;
  DISPPARAMS params = {args, nullptr, 2, 0};
  UINT argError = 99;
  EXPECT_EQ(S_OK, server->Invoke(eDISPID_ACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, &argError));
  EXPECT_TRUE(LcOmTrackBackSender::IsListenerRunning());
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  EXPECT_EQ(S_OK, server->Invoke(eDISPID_DEACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
  EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());

  args[0].vt = VT_BSTR;
  args[0].bstrVal = nullptr;
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            server->Invoke(eDISPID_ACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, &argError));
  EXPECT_EQ(0u, argError);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT,
            server->Invoke(eDISPID_ACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, server->Invoke(7, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));

  // A failing Activate comes back as an exception carrying its result. An
  // empty argument is no object at all, as VariantChangeType has it.
  args[1].vt = VT_EMPTY;
  args[0].vt = VT_BOOL;
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            server->Invoke(eDISPID_ACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, &argError));
  EXPECT_EQ(1u, argError);
  args[1].vt = VT_DISPATCH;
  args[1].pdispVal = nullptr;
  args[0].vt = VT_BOOL;
  EXCEPINFO exception = {};
  EXPECT_EQ(DISP_E_EXCEPTION,
            server->Invoke(eDISPID_ACTIVATE, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, &exception, nullptr));
  EXPECT_EQ(E_INVALIDARG, exception.scode);

  LPOLESTR names[] = {const_cast<LPOLESTR>(reinterpret_cast<const OLECHAR*>(u"deactivate"))};
  DISPID id = 0;
  EXPECT_EQ(S_OK, server->GetIDsOfNames(IID_NULL, names, 1, 0, &id));
  EXPECT_EQ(eDISPID_DEACTIVATE, id);
  server->Release();
}

namespace {
// A copy of the module whose full path is exactly units characters long.
std::string CopyModuleToPathOf(size_t units, const std::string& base) {
  namespace fs = std::filesystem;
  std::string file = "/twveerbackglf.module";
  std::string folder = base;
  while (folder.size() + 1 + 100 + file.size() < units) folder += "/" + std::string(100, 'd');
  size_t last = units - folder.size() - file.size() - 1;
  if (last == 0 || last > 200) return "";
  folder += "/" + std::string(last, 'e');
  std::error_code error;
  fs::create_directories(folder, error);
  std::string path = folder + file;
  if (error || !fs::copy_file(TestProcess::NativePath(TW_ADDIN_MODULE), path, fs::copy_options::overwrite_existing, error))
    return "";
  return path;
}
}  // namespace

TEST(AddInModulePath, APathThatFillsTheBufferLeavesTheAddInSilent) {
  std::string base = TestProcess::MakeTempFolder("longpath");
  TestProcess::SetEnvironment("XDG_CONFIG_HOME", base);
  TestProcess::SetEnvironment("XDG_RUNTIME_DIR", base);
  for (size_t units : {511u, 512u}) {
    std::string path = CopyModuleToPathOf(units, base);
    if (path.empty()) GTEST_SKIP() << "this file system takes no path of " << units << " characters";
    ASSERT_EQ(units, path.size());
    TestModule module(path);
    if (!module.IsLoaded()) GTEST_SKIP() << "the loader takes no path of " << units << " characters";
    IClassFactory* factory = nullptr;
    ASSERT_EQ(S_OK, module.GetClassObject(CLSID_TWVeerbackGlfServer, IID_IClassFactory, reinterpret_cast<void**>(&factory)));
    ITWVeerbackGlfServer* server = nullptr;
    ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, IID_ITWVeerbackGlfServer, reinterpret_cast<void**>(&server)));
    TestHost host;
    EXPECT_EQ(S_OK, server->Activate(&host.site, VARIANT_TRUE));
    // 511 characters fit the buffer of 512; 512 fill it and are not trusted.
    EXPECT_EQ(units == 511, LcOmTrackBackSender::IsListenerRunning()) << units;
    EXPECT_EQ(S_OK, server->Deactivate());
    server->Release();
    factory->Release();
  }
}
