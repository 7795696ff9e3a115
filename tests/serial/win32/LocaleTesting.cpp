#include "LocaleTesting.h"

#include <clocale>
#include <initializer_list>

bool LocaleTesting::UseDecimalCommaLocale() {
  for (const char* name : {"German_Germany.1252", "German", "de-DE"})
    if (std::setlocale(LC_ALL, name) && std::localeconv()->decimal_point[0] == ',') return true;
  return false;
}
