#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "TestHost.h"
#include "TestProcess.h"
#include "addin/ITWVeerbackGlfServer.h"
#include "addin/LcGlfGuids.h"
#include "addin/LcOmTrackBackSender.h"

namespace {
const std::wstring kClassKey = L"CLSID\\{4285DA55-60B0-4098-802D-93FB37FFBD68}";

std::wstring ReadString(const std::wstring& key, const wchar_t* name) {
  wchar_t data[1024] = {};
  DWORD bytes = sizeof(data) - sizeof(wchar_t);
  if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, data, &bytes) != ERROR_SUCCESS)
    return L"<missing>";
  return data;
}

bool KeyExists(const std::wstring& key) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) return false;
  RegCloseKey(handle);
  return true;
}

int Regsvr32(const std::vector<std::string>& arguments) {
  return TestProcess::Run("C:\\windows\\system32\\regsvr32.exe", arguments, nullptr);
}

std::wstring ModulePath() {
  std::string path = TestProcess::NativePath(TW_ADDIN_MODULE);
  return std::wstring(path.begin(), path.end());
}
}  // namespace

// The table itself is checked on both platforms; here regsvr32 drives it.
TEST(RegistrationByRegsvr32, WritesTheClassAndTypeLibraryAndTakesThemBack) {
  ASSERT_EQ(0, Regsvr32({"/s", TestProcess::NativePath(TW_ADDIN_MODULE)}));
  EXPECT_EQ(ModulePath(), ReadString(kClassKey + L"\\InprocServer32", nullptr));

  ITypeLib* library = nullptr;
  ASSERT_EQ(S_OK, LoadRegTypeLib(LIBID_TWVeerbackGlfLib, 1, 0, LOCALE_NEUTRAL, &library));
  ITypeInfo* info = nullptr;
  EXPECT_EQ(S_OK, library->GetTypeInfoOfGuid(IID_ITWVeerbackGlfServer, &info));
  BSTR help = nullptr;
  EXPECT_EQ(S_OK, library->GetDocumentation(-1, nullptr, &help, nullptr, nullptr));
  EXPECT_STREQ(L"twveerbackglf 1.0 Type Library", help);
  SysFreeString(help);
  if (info) info->Release();
  library->Release();

  ASSERT_EQ(0, Regsvr32({"/u", "/s", TestProcess::NativePath(TW_ADDIN_MODULE)}));
  EXPECT_FALSE(KeyExists(kClassKey));
  EXPECT_TRUE(KeyExists(L"CLSID"));
}

TEST(RegistrationByRegsvr32, AHostCreatesTheServerByItsClass) {
  ASSERT_EQ(0, Regsvr32({"/s", TestProcess::NativePath(TW_ADDIN_MODULE)}));
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
  {
    TestHost host;
    ITWVeerbackGlfServer* server = nullptr;
    ASSERT_EQ(S_OK, CoCreateInstance(CLSID_TWVeerbackGlfServer, nullptr, CLSCTX_INPROC_SERVER,
                                     IID_ITWVeerbackGlfServer, reinterpret_cast<void**>(&server)));
    // The type library answers for the dual interface.
    UINT count = 0;
    EXPECT_EQ(S_OK, server->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    ASSERT_EQ(S_OK, server->Activate(&host.site, VARIANT_TRUE));
    EXPECT_EQ(0, TestProcess::Run(TestProcess::NativePath(TW_VEERBACK), {"send", "--document", "C:\\a.gpt"},
                                  [] {
                                    MSG message;
                                    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
                                  }));
    EXPECT_EQ(1, host.CountCalls(0x300012A));
    EXPECT_EQ(S_OK, server->Deactivate());
    EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());
    server->Release();
  }
  CoUninitialize();
  Regsvr32({"/u", "/s", TestProcess::NativePath(TW_ADDIN_MODULE)});
}
