#pragma once
#include <gtest/gtest.h>

#include <string>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

namespace EnvironmentTesting {
// A path the build wrote, as this platform's programs name it.
std::string BuildPath(const char* path);

inline LcUString Wide(const std::string& text) {
  LcUString wide;
  LcUString::UTF8ToUTF16(text.c_str(), -1, wide);
  return wide;
}

inline std::string Narrow(const LcUString& text) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(text.Get() ? text.Get() : u"", narrow, true);
  return narrow.Get() ? narrow.Get() : "";
}

inline std::string LogText() {
  std::string text;
  LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                         &text);
  return text;
}

inline bool WriteFile(const LcUString& path, const std::string& bytes, int permission = 384) {
  LcUSysFileHandle file;
  return file.Open(path.Get(), LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                   LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, permission) &&
         std::fwrite(bytes.data(), 1, bytes.size(), file.GetStream()) == bytes.size() && file.Close();
}

// Each test works in a fresh folder under the temporary folder.
class TempFolderTest : public ::testing::Test {
protected:
  void SetUp() override {
    LcUError::Initialize();
    ASSERT_TRUE(LcUSysFile::MakeTempFolder(folder));
  }
  void TearDown() override {
    LcUSysFile::Remove(folder.Get(), true, true);
    LcUError::Terminate();
  }
  LcUString In(const char16_t* name) const {
    LcUString path;
    LcUSysFile::Join(folder.Get(), name, path);
    return path;
  }

  LcUString folder;
};
}  // namespace EnvironmentTesting
