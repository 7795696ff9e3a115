#include "environment/LcUCivilTime.h"
#include "serial/LcUName.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLStream.h"

bool LcUXMLStream::SerialiseDate(LcUXMLDOMStream& stream, int64_t& time, int32_t flag) {
  LcUCivilTime t = LcUCivilTime::FromSeconds(time);
  int32_t f[6] = {int32_t(t.year), t.month, t.day, t.hour, t.minute, t.second};
  static const char* const names[6] = {"year", "month", "day", "hour", "minute", "second"};
  // Every call runs whatever the others gave.
  bool ok = stream.BeginElement("date", flag);
  for (int i = 0; i < 6; ++i) ok = stream.IntAttribute(names[i], f[i]) && ok;
  stream.EndElement("date");
  if (ok && !stream.IsWriting()) time = LcUCivilTime{f[0], f[1], f[2], f[3], f[4], f[5]}.ToSeconds();
  return ok;
}

bool LcUXMLStream::SerialiseTime(LcUXMLDOMStream& stream, int32_t& seconds, int32_t flag) {
  int32_t hour = seconds / 3600;
  int32_t minute = seconds % 3600 / 60;
  int32_t second = seconds % 60;
  bool ok = stream.BeginElement("time", flag);
  ok = stream.IntAttribute("hour", hour) && ok;
  ok = stream.IntAttribute("minute", minute) && ok;
  ok = stream.IntAttribute("second", second) && ok;
  stream.EndElement("time");
  if (ok && !stream.IsWriting()) seconds = int32_t((int64_t(hour) * 60 + minute) * 60 + second);
  return ok;
}

bool LcUXMLStream::SerialiseName(LcUXMLDOMStream& stream, LcUName*& name, int32_t flag, LcUNameTable* table) {
  bool writing = stream.IsWriting();
  if (writing && !name) return true;
  LcUStringA internal(writing ? name->GetInternalName() : nullptr);
  LcUString user(writing ? name->GetUserName() : nullptr);
  bool ok = stream.BeginElement("name", flag);
  ok = ok && stream.NarrowAttribute("internal", internal);
  ok = ok && stream.ElementText(user);
  stream.EndElement("name");
  if (writing || !ok || (internal.IsEmpty() && user.IsEmpty())) return ok;
  const char* key = internal.IsEmpty() ? nullptr : internal.Get();
  if (table) {
    name = table->Intern(user.Get(), key);
    if (name) name->AddRef();
  } else {
    name = new LcUName(key, user.Get());
  }
  return name != nullptr;
}
