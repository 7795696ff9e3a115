#include "addin/LcOmTrackBackSender.h"

#include <cstdio>

#include "addin/LcOmTrackBackChannel.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"

bool LcOmTrackBackSender::GetRecordPath(LcUString& path) {
  LcUString folder;
  if (!LcOmTrackBackChannel::GetDefaultSharedFolder(folder)) return false;
  LcOmTrackBackChannel::GetRecordPath(folder.Get(), path);
  return true;
}

bool LcOmTrackBackSender::GetItemFilePath(LcUString& path) {
  if (!GetRecordPath(path)) return false;
  path.Append(u"Item.txt");
  return true;
}

bool LcOmTrackBackSender::WriteFile(const char16_t* path, const void* data, size_t bytes) {
  if (!EnsureFolderOf(path)) return false;
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_WRITE, 0,
                 LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE))
    return false;
  bool written = bytes == 0 || std::fwrite(data, bytes, 1, file.GetStream()) == 1;
  return file.Close() && written;
}

bool LcOmTrackBackSender::WriteRecord(const char16_t* path, const LcOmTrackBackRecord& record) {
  return WriteFile(path, &record, sizeof(record));
}

bool LcOmTrackBackSender::WriteItemFile(const char16_t* path, const char16_t* text) {
  LcUStringA narrow;
  if (!LcUString::WideToMultiByte(text, narrow)) return false;
  return WriteFile(path, narrow.Get(), size_t(narrow.Length()));
}
