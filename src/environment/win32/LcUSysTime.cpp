#include "environment/LcUSysTime.h"

#include <windows.h>

#include <ctime>

int64_t LcUSysTime::QueryFrequency() {
  LARGE_INTEGER frequency;
  return QueryPerformanceFrequency(&frequency) ? frequency.QuadPart : 0;
}

int64_t LcUSysTime::QueryLowResolution() {
  DWORD adjustment = 0, increment = 0;
  BOOL disabled = FALSE;
  // In 100 ns units.
  return GetSystemTimeAdjustment(&adjustment, &increment, &disabled) ? int64_t(increment / 10) : 0;
}

uint64_t LcUSysTime::ReadCounter() {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return uint64_t(now.QuadPart);
}

uint64_t LcUSysTime::ReadLowTicks() {
  return GetTickCount64();
}

int64_t LcUSysTime::ReadTime() {
  return _time64(nullptr);
}

bool LcUSysTime::FormatPart(int64_t time, bool date, char16_t* out, int32_t size, bool local) {
  __time64_t seconds = time;
  tm parts{};
  if ((local ? _localtime64_s(&parts, &seconds) : _gmtime64_s(&parts, &seconds)) != 0) return false;
  SYSTEMTIME when{};
  when.wYear = WORD(parts.tm_year + 1900);
  when.wMonth = WORD(parts.tm_mon + 1);
  when.wDayOfWeek = WORD(parts.tm_wday);
  when.wDay = WORD(parts.tm_mday);
  when.wHour = WORD(parts.tm_hour);
  when.wMinute = WORD(parts.tm_min);
  when.wSecond = WORD(parts.tm_sec);
  wchar_t* target = reinterpret_cast<wchar_t*>(out);
  int written = date ? GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &when, nullptr, target, size, nullptr)
                     : GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &when, nullptr, target, size);
  return written > 0;
}
