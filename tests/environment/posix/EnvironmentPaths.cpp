#include "EnvironmentTesting.h"

std::string EnvironmentTesting::BuildPath(const char* path) {
  return path;
}
