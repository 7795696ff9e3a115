#pragma once
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <utility>

namespace EnvironmentTesting {
// Clears the locale variables and sets LOCPATH to the test's own locales
// and TZ to UTC for one test, and puts all back afterwards, so nothing of
// the machine's settings leaks in.
class LocaleEnvironment {
public:
  LocaleEnvironment() {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_CTYPE", "LC_NUMERIC", "LC_TIME", "LANG",
                             "LOCPATH", "TZ"}) {
      const char* value = std::getenv(name);
      saved[name] = {value != nullptr, value ? value : ""};
      unsetenv(name);
    }
    setenv("LOCPATH", TW_TEST_LOCALES, 1);
    Set("TZ", "UTC");
  }
  ~LocaleEnvironment() {
    for (const auto& [name, value] : saved) {
      if (value.first) setenv(name.c_str(), value.second.c_str(), 1);
      else unsetenv(name.c_str());
    }
    tzset();
  }
  LocaleEnvironment(const LocaleEnvironment&) = delete;
  LocaleEnvironment& operator=(const LocaleEnvironment&) = delete;

  void Set(const char* name, const char* value) {
    if (value) setenv(name, value, 1);
    else unsetenv(name);
    tzset();
  }

private:
  std::map<std::string, std::pair<bool, std::string>> saved;
};
}  // namespace EnvironmentTesting
