#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "TestProcess.h"

void TestProcess::RemoveAtExit(const std::string& folder) {
  static std::vector<std::string> folders;
  if (folders.empty())
    std::atexit([] {
      std::error_code ignored;
      for (const std::string& made : folders) std::filesystem::remove_all(std::filesystem::u8path(made), ignored);
    });
  folders.push_back(folder);
}
