#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

class LcUName;
class LcUNameTable;
class LcUXMLDOMStream;

// Version numbers and schema names of the XML exchange format, its text
// escapes, and the element forms that many objects share. Each element
// form reads or writes as its stream does.
class LcUXMLStream {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  static int32_t GetCurrentVersion() { return 441; }
  // False, `out` empty, below version 50.
  static bool GetSchemaName(int32_t version, LcUString& out);
  // -1 unless the URL names a schema of the table.
  static int32_t GetVersionFromSchemaURL(const char16_t* url);
  static bool GetSchemaNameFromURL(const char16_t* url, LcUString& out);
  static void GetSchemaURL(const char16_t* name, LcUString& out);

  static void EscapeText(LcUStringA& text);
  static void EscapeText(LcUString& text);
  static void EscapeToUTF8(const char16_t* text, LcUStringA& out);
  static void EscapeToUTF8(const char* text, LcUStringA& out);

  // "date" with year, month, day, hour, minute and second in UTC.
  static bool SerialiseDate(LcUXMLDOMStream& stream, int64_t& time, int32_t flag);
  // "time" with hour, minute and second of a count of seconds.
  static bool SerialiseTime(LcUXMLDOMStream& stream, int32_t& seconds, int32_t flag);
  // "name" with its internal name as an attribute and its user name as
  // text; names read go through `table` when there is one. Writing a null
  // name writes nothing.
  static bool SerialiseName(LcUXMLDOMStream& stream, LcUName*& name, int32_t flag, LcUNameTable* table = nullptr);

  // Code 0 clears the error; otherwise the first error stays.
  static void SetError(LcUXMLDOMStream& stream, int32_t code, const char16_t* text);
};
