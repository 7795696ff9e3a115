#pragma once
#include <string>
#include <vector>

// Test-side process and path services.
class TestProcess {
public:
  // Runs a program to its end while handling TrackBack notifications on this
  // thread (through pump), and answers its exit code, or -1 if it can't start.
  // With output, its standard output goes to output + ".out" and its
  // standard error to output + ".err".
  static int Run(const std::string& program, const std::vector<std::string>& arguments, void (*pump)(),
                 const std::string& output = std::string());
  // A build-tree path as the program under test sees it.
  static std::string NativePath(const std::string& buildPath);
  // A fresh empty folder for one test, removed when the program ends.
  static std::string MakeTempFolder(const char* name);
  static void RemoveAtExit(const std::string& folder);
  static void SetEnvironment(const char* name, const std::string& value);
};
