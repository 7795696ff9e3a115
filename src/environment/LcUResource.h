#pragma once
#include <cstdint>
#include <cstdio>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

struct LcUResourceParseState;

// Answers a key the table doesn't hold; the text it gives joins the table.
typedef const char16_t* (*LcUResourceFallback)(void* context, const char* key);

// The process-wide table of user-visible text and the nine search
// directories. Set up on the start-up thread and read afterwards: no locks.
class LcUResource {
public:
  // In order of precedence; the index is also the bit of a search mask.
  enum {
    eDIR_USER = 0,
    eDIR_LOCAL,
    eDIR_PROJECT,
    eDIR_SITE,
    eDIR_APP,
    eDIR_INSTALL,
    eDIR_USER_APP_SHARED,
    eDIR_USER_INHERIT,
    eDIR_LOCAL_INHERIT,
    eDIR_COUNT
  };

  static bool Initialize();
  static void Terminate();
  // The use count: callers that can run before the component exists test it.
  static int32_t IsInitialised();
  static LcUComponent component;

  static void SetSearchDir(int kind, const char16_t* path);
  // Joins relative under a shell folder; changes nothing if the folder can't be had.
  static void SetSearchDirFromFolder(int kind, int folder, const char16_t* relative);
  static const LcUString& GetSearchDir(int kind);
  static const char* GetSearchDirName(int kind);

  // Strings. The pointer forms stay good until the entry is replaced.
  static const char16_t* FindString(const char* key, const char16_t* fallback);
  // An unknown key gives the key itself in out, and false.
  static bool FindString(const char* key, LcUString& out);
  static const char16_t* FindStringRequired(const char* key);
  static bool HasString(const char* key);
  static bool DefineString(const char* key, const char16_t* text);
  static bool DefineSourceString(const char* sourceFile, int32_t line, const char16_t* text);
  static void SetFallback(LcUResourceFallback fallback, void* context);

  // Name tables. prefix, when not null, goes before each internal name.
  static bool LoadNameFile(const char16_t* path, const char* prefix);
  static bool ReadNameFile(const char16_t* path, const char* prefix, LcUResourceParseState& state);
  // Up to end of file, or to a line equal to endToken when that isn't null.
  static bool ReadNameTable(FILE* stream, const char* endToken, LcUResourceParseState& state, const char* prefix);
  static void LoadNameFolder(const char16_t* folder, const char* prefix);

  // Files through the search directories; bit n of mask selects index n.
  // out may alias subdir or name.
  static bool FindDataFile(const char16_t* subdir, const char16_t* name, LcUString& out, uint32_t mask);
  // The language outranks the search directory.
  static bool FindLocalisedDataFile(const char16_t* subdir, const char16_t* name, LcUString& out, uint32_t mask);
  static bool FindLocalisedFile(const char16_t* folder, const char16_t* name, LcUString& out);
  // out gets the language tag whose folder holds name.
  static bool FindLanguageOfFile(const char16_t* name, LcUString& out);
  // Opened for its data only; null when not found or not loadable.
  static void* LoadLocalisedLibrary(const char16_t* name, const char16_t* folder);
};
