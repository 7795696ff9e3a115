#include "addin/LcOmTrackBackChannel.h"

#include "environment/LcUSession.h"
#include "environment/LcUSysFile.h"

void LcOmTrackBackChannel::GetRecordPath(const char16_t* sharedFolder, LcUString& path) {
  LcUSysFile::Join(sharedFolder, u"trackback", path);
  LcUSysFile::Join(path.Get(), u"LcGlfPlugin", path);
}

bool LcOmTrackBackChannel::GetDefaultSharedFolder(LcUString& folder) {
  if (!LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_APPDATA, folder)) return false;
  LcUSysFile::Join(folder.Get(), LcUSession::GetProductLine(), folder);
  return true;
}
