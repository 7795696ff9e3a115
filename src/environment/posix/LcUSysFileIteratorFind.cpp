#include <dirent.h>
#include <sys/stat.h>

#include "environment/LcUSysFileIterator.h"
#include "environment/posix/LcUSysPath.h"

bool LcUSysFileIterator::Step(LcUString& name, uint32_t& attributes) {
  LcUStringA native;
  if (!LcUSysPath::ToNative(folder.Get(), native)) return false;
  if (!find) find = opendir(native.Get());
  dirent* next = find ? readdir(static_cast<DIR*>(find)) : nullptr;
  if (!next || !LcUString::UTF8ToUTF16(next->d_name, -1, name)) return false;
  bool directory = next->d_type == DT_DIR;
  bool link = next->d_type == DT_LNK;
  if (next->d_type == DT_UNKNOWN) {
    // A link stays a link, so that a recursive removal never leaves the tree.
    struct stat info;
    native.Append('/');
    native.Append(next->d_name);
    bool known = lstat(native.Get(), &info) == 0;
    directory = known && S_ISDIR(info.st_mode);
    link = known && S_ISLNK(info.st_mode);
  }
  attributes = (directory ? LcUSysFileEntry::eATTRIBUTE_DIRECTORY : 0) |
               (link ? LcUSysFileEntry::eATTRIBUTE_REPARSE_POINT : 0);
  return true;
}

void LcUSysFileIterator::CloseFind() {
  if (find) closedir(static_cast<DIR*>(find));
  find = nullptr;
}
