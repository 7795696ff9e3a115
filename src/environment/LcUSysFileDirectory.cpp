#include <string>

#include "environment/LcUResource.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"
#include "foundation/LcUError.h"

namespace {
// The string table's text for key, or the built-in one until a table is
// loaded. The path goes in place of the first %s by hand: a table's text is
// no format to trust.
void Tell(const char* key, const char* builtIn, const char16_t* path) {
  LcUStringA text(builtIn);
  LcUString found;
  if (LcUResource::IsInitialised() && LcUResource::FindString(key, found)) {
    LcUStringA table;
    if (LcUString::UTF16ToUTF8(found.Get(), table, true)) text.Assign(table.Get());
  }
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(path, narrow, true);
  std::string message(text.Get());
  size_t at = message.find("%s");
  if (at != std::string::npos) message.replace(at, 2, narrow.Get());
  LcUError::FatalText(message.c_str(), false);
}

const char kFailedToCreate[] =
    "Failed to create directory: %s.  Please ask your administrator to ensure you have full permissions to this "
    "folder.";
const char kFailedToRead[] =
    "Unable to read directory: %s.  Please ask your administrator to ensure you have full permissions to this "
    "folder.";
const char kFailedToWrite[] =
    "Unable to write directory: %s.  Please ask your administrator to ensure you have full permissions to this "
    "folder.";
}  // namespace

bool LcUSysFile::EnsureDirectoryAccess(const char16_t* path) {
  if (!path || !*path) return false;
  if (!IsReadable(path)) {
    Tell("lcufileutils_failed_to_read_dir", kFailedToRead, path);
    return false;
  }
  if (!IsWritable(path)) {
    Tell("lcufileutils_failed_to_write_dir", kFailedToWrite, path);
    return false;
  }
  return true;
}

bool LcUSysFile::EnsureDirectory(const char16_t* path) {
  if (!path || !*path) return false;
  if (Exists(path)) return EnsureDirectoryAccess(path);
  if (!CreateDirectories(path)) {
    Tell("lcufileutils_failed_to_create_dir", kFailedToCreate, path);
    return false;
  }
  return EnsureDirectoryAccess(path);
}

bool LcUSysFile::Remove(const char16_t* path, bool force, bool recursive) {
  if (!IsDirectory(path)) return Delete(path, force);
  if (recursive && !RemoveContents(path)) return false;
  return RemoveFolder(path);
}

bool LcUSysFile::RemoveContents(const char16_t* folder) {
  if (!IsDirectory(folder)) return false;
  bool removed = true;
  LcUString path;
  for (LcUSysFileIterator entries(folder); entries.IsValid(); entries.Next()) {
    entries.GetPath(path);
    removed = Remove(path.Get(), true, true) && removed;
  }
  return removed;
}
