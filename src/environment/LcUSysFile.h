#pragma once
#include <cstdint>

#include "foundation/LcUString.h"

// The layer over the file system: path algebra, file and directory
// operations, temporary names and the shell folders. Both separators are
// accepted everywhere; narrow paths are UTF-8 and call the wide forms.
class LcUSysFile {
public:
  enum { eFOLDER_PROFILE = 0, eFOLDER_APPDATA = 1, eFOLDER_LOCAL_APPDATA = 2, eFOLDER_COMMON_APPDATA = 3 };
  enum PEImageType { ePE_FAILED = 0, ePE_32 = 1, ePE_32_PLUS = 2, ePE_ROM = 3, ePE_UNKNOWN = 4 };

  static bool IsSeparator(char16_t c) { return c == '\\' || c == '/'; }

  // Paths. Roots: "/" is 1 long, "X:\" 3 and "\\" 2; nothing else is absolute.
  static bool IsAbsolute(const char16_t* path);
  static bool IsAbsolute(const char16_t* path, int32_t& rootLength);
  // The length of the parent of path's first `length` units, root kept.
  static int32_t GetParentLength(const char16_t* path, int32_t length);
  static int32_t CountComponents(const char16_t* path);
  // An empty side gives the other; a separator ("\", or "/" with the flag)
  // goes between unless a already ends in one, and one leading separator
  // of b is dropped. out may alias b.
  static void Join(const char16_t* a, const char16_t* b, LcUString& out, bool forwardSlash = false);
  static void Join3(const char16_t* a, const char16_t* b, const char16_t* c, LcUString& out);
  static void Join4(const char16_t* a, const char16_t* b, const char16_t* c, const char16_t* d, LcUString& out);
  // False, with out empty, unless base is absolute and ".." stays inside it.
  static bool Resolve(const char16_t* base, const char16_t* relative, LcUString& out);
  // False, with out empty, when the two have no common root.
  static bool MakeRelative(const char16_t* base, const char16_t* path, LcUString& out, bool forwardSlash = false);
  static void Canonicalise(const char16_t* path, LcUString& out);
  // Of the canonical path. Any output may be null; the directory has no
  // trailing separator but a root's, the extension no dot.
  static void Split(const char16_t* path, LcUString* dirOut, LcUString* fileOut, LcUString* extOut);
  static void SplitExtension(const char16_t* name, LcUString* stemOut, LcUString* extOut);
  static void StripExtension(const char16_t* path, LcUString& out);
  static void GetDirectory(const char16_t* path, LcUString* dirOut, LcUString* fileOut);
  static void SetExtension(const char16_t* path, const char16_t* ext, LcUString& out);
  static bool HasExtension(const char16_t* path, const char16_t* ext);
  static void JoinSearchPath(const char16_t* a, const char16_t* b, LcUString& out);
  static bool FindInSearchPath(const char16_t* pathList, const char16_t* relative, LcUString& out);
  // True when a character that can't be in a file name was replaced by "_".
  static bool SanitiseFileName(const char16_t* name, LcUString& out);
  // Windows rules: "*" and "?", no regard to case, ";" between patterns.
  static bool MatchesPattern(const char16_t* name, const char16_t* pattern);

  // The same on UTF-8 paths. A path that doesn't convert gives false, or an
  // empty out; a null one is passed on as null.
  static bool IsAbsolute(const char* path);
  static void Join(const char* a, const char* b, LcUString& out, bool forwardSlash = false);
  static bool Resolve(const char* base, const char* relative, LcUString& out);
  static bool MakeRelative(const char* base, const char* path, LcUString& out, bool forwardSlash = false);
  static void Canonicalise(const char* path, LcUString& out);
  static void Split(const char* path, LcUString* dirOut, LcUString* fileOut, LcUString* extOut);
  static void GetDirectory(const char* path, LcUString* dirOut, LcUString* fileOut);
  static void SetExtension(const char* path, const char* ext, LcUString& out);
  static bool HasExtension(const char* path, const char* ext);

  // Files. Exists is true for anything but "not found".
  static bool Exists(const char16_t* path);
  static bool Exists(const char* path);
  static bool IsDirectory(const char16_t* path);
  static bool IsDirectory(const char* path);
  static bool IsReadable(const char16_t* path);
  static bool IsWritable(const char16_t* path);
  static bool IsNewerThan(const char16_t* a, const char16_t* b);
  static bool Copy(const char16_t* from, const char16_t* to, bool failIfExists);
  static bool Rename(const char16_t* from, const char16_t* to);
  // Without force a read-only file stays.
  static bool Delete(const char16_t* path, bool force);
  static bool Delete(const char* path, bool force);
  static bool Remove(const char16_t* path, bool force, bool recursive);
  static bool RemoveFolder(const char16_t* path);  // only an empty one
  static bool RemoveContents(const char16_t* folder);
  static bool GetSize(const char16_t* path, int64_t& size);
  // Seconds since 1970.
  static bool GetTimes(const char16_t* path, int64_t& modified, int64_t& accessed);
  static bool Flush(const char16_t* path);
  // Creates path, failing if it exists, and reserves size bytes.
  static bool Truncate(const char16_t* path, int64_t size);
  static bool Fill(const char16_t* path, int64_t size);
  // On Linux without a shell: the parameters are split as a Windows program
  // splits its command line.
  static bool Execute(const char16_t* file, const char16_t* parameters, bool wait);
  static bool GetEnvironment(const char16_t* name, LcUString& out);
  static bool GetCurrentDirectory(LcUString& out);
  static bool GetExecutablePath(LcUString& out);
  // The file of the module holding `address` in this process; null is the program.
  static bool GetModulePath(const void* address, LcUString& out);
  static bool GetFileChecksum(const char16_t* path, uint32_t& out);
  static bool GetFileChecksum(const char* path, uint32_t& out);
  static int GetPEImageType(const char16_t* path);
  static int GetPEImageType(const char* path);

  // Directories. The failures reach the user.
  static bool EnsureDirectoryAccess(const char16_t* path);
  static bool EnsureDirectory(const char16_t* path);
  static bool EnsureDirectory(const char* path);
  // With parents; a folder that is already there counts as made.
  static bool CreateDirectories(const char16_t* path);

  // Temporary names: "prefix_pid_xxxxyyyy.ext" in folder, or in the
  // override, or in the system's temporary folder.
  static bool MakeTempName(const char16_t* folder, const char16_t* prefix, const char16_t* extension,
                           LcUString& out);
  static bool MakeTempFile(const char16_t* folder, const char16_t* prefix, const char16_t* extension, int64_t size,
                           LcUString& out);
  // A new empty folder under the default temporary folder.
  static bool MakeTempFolder(LcUString& out);
  static void SetTempFolderOverride(const char16_t* folder);
  static bool GetTempFolder(LcUString& out);

  // 0 user profile, 1 roaming application data, 2 local application data,
  // 3 common application data. Logs and answers false when unavailable.
  static bool GetShellFolder(int kind, LcUString& out);

private:
  static bool GetSystemTempFolder(LcUString& out);
  static uint32_t GetProcessId();
};
