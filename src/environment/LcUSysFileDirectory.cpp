#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"
#include "foundation/LcUError.h"

namespace {
// The built-in texts: users see these until a string table can replace them.
void Tell(const char* builtIn, const char16_t* path) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(path, narrow, true);
  LcUStringA text;
  text.Format(builtIn, narrow.Get());
  LcUError::FatalText(text.Get(), false);
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
    Tell(kFailedToRead, path);
    return false;
  }
  if (!IsWritable(path)) {
    Tell(kFailedToWrite, path);
    return false;
  }
  return true;
}

bool LcUSysFile::EnsureDirectory(const char16_t* path) {
  if (!path || !*path) return false;
  if (Exists(path)) return EnsureDirectoryAccess(path);
  if (!CreateDirectories(path)) {
    Tell(kFailedToCreate, path);
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
