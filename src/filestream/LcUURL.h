#pragma once
#include <cstdint>
#include "filestream/LcUURLParts.h"
#include "foundation/LcUString.h"

// A URL or a plain local path, kept as its text and its parsed parts. The
// percent encoding covers only the eleven characters of the table below;
// "%" itself is never encoded.
class LcUURL {
public:
  enum { eMAX_LENGTH = 8192 };
  static const char16_t kEncodedSet[12];

  LcUURL() = default;
  LcUURL(const char16_t* text, bool normalise);
  // Stores and parses text, normalising it when asked; the validity.
  bool Set(const char16_t* text, bool normalise);
  // Composes parts, stores and parses the result.
  bool SetParts(const LcUURLParts& parts);
  bool Normalise();

  bool IsValid() const { return valid != 0; }
  const LcUString& GetText() const { return text; }
  const LcUURLParts& GetParts() const { return parts; }
  // Path, params, query and fragment: what an HTTP request asks for.
  const LcUString& GetRequestPath() const { return requestPath; }
  bool IsFileScheme() const;
  void GetLocalPath(LcUString& out) const;
  // A file URL gives its local path, percent encoded; any other its text.
  void GetPlainText(LcUString& out) const;

  static bool Parse(const char16_t* text, LcUURLParts& parts);
  static void Compose(const LcUURLParts& parts, LcUString& out);
  // 0 for a scheme without one.
  static int32_t GetDefaultPort(const char16_t* scheme);
  static void Encode(const char16_t* text, LcUString& out);
  // Only upper-case hexadecimal forms are decoded.
  static void Decode(const char16_t* text, bool backslashToSlash, LcUString& out);
  // Normalised texts compared, the paths without regard to case if asked.
  static bool Equal(const char16_t* a, const char16_t* b, bool ignoreCase);

  // The shared routines of the protocols; out is a plain text.
  static bool Resolve(const char16_t* base, const char16_t* relative, LcUString& out);
  static bool Rebase(const char16_t* oldBase, const char16_t* target, const char16_t* newBase, LcUString& out);
  static void GetLeafName(const char16_t* url, LcUString& out);

private:
  void Reparse();
  LcUString text;
  LcUURLParts parts;
  LcUString requestPath;
  uint8_t valid = 0;
};
