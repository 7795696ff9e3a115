#include "EnvironmentTesting.h"

// Wine shows the Linux root as drive Z:.
std::string EnvironmentTesting::BuildPath(const char* path) {
  return std::string("Z:") + path;
}
