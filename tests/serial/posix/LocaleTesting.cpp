#include "LocaleTesting.h"

#include <clocale>
#include <cstdlib>
#include <initializer_list>

// The build makes a German locale in the build tree, so that the test does
// not depend on the locales the machine has.
bool LocaleTesting::UseDecimalCommaLocale() {
  setenv("LOCPATH", TW_TEST_LOCALES, 1);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8"})
    if (std::setlocale(LC_ALL, name) && std::localeconv()->decimal_point[0] == ',') return true;
  return false;
}
