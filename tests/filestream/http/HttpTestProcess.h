#pragma once
#include <string>
#include <vector>

// The test servers are Linux programs; under Wine a Windows test starts
// them and reads their files through drive Z:.
class HttpTestProcess {
public:
  // Starts a program without waiting for it; false if it can't start.
  static bool Start(const std::vector<std::string>& arguments);
  // A Linux path as this program opens it.
  static std::string LocalPath(const std::string& linuxPath);
  static int ProcessId();
};
