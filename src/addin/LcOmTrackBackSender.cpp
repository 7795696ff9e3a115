#include "addin/LcOmTrackBackSender.h"

#include <cstdio>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/LcOmTrackBackSenderLock.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"

LcOmTrackBackRecord LcOmTrackBackSender::NewRecord() {
  LcOmTrackBackRecord record;
  record.setDocumentPath(nullptr);
  record.setItemFilePath(nullptr);
  record.hasItem = 0;
  return record;
}

bool LcOmTrackBackSender::GetRecordPath(LcUString& path) {
  LcUString folder;
  if (!LcOmTrackBackChannel::GetDefaultSharedFolder(folder)) return false;
  LcOmTrackBackChannel::GetRecordPath(folder.Get(), path);
  ToPlatformForm(path);
  return true;
}

bool LcOmTrackBackSender::GetItemFilePath(LcUString& path) {
  if (!GetRecordPath(path)) return false;
  path.Append(u"Item.txt");
  return true;
}

bool LcOmTrackBackSender::MakeAbsolute(const char16_t* path, LcUString& absolute) {
  if (LcUSysFile::IsAbsolute(path)) {
    absolute = path;
    return true;
  }
  LcUString current;
  if (!LcUSysFile::GetCurrentDirectory(current)) return false;
  LcUSysFile::Join(current.Get(), path, absolute);
  ToPlatformForm(absolute);
  return true;
}

LcOmTrackBackSender::Result LcOmTrackBackSender::Send(const LcOmTrackBackRecord& record, const char16_t* itemText,
                                                      int timeoutMs) {
  LcUString recordPath, itemPath;
  if (!GetRecordPath(recordPath) || !GetItemFilePath(itemPath)) return eWRITE_FAILED;
  LcOmTrackBackRecord sent(record);
  if (itemText) {
    if (!sent.setItemFilePath(itemPath.Get())) return eWRITE_FAILED;
    sent.hasItem = 1;
  }
  LcOmTrackBackSenderLock lock(timeoutMs);
  if (lock.IsBusy()) return eBUSY;
  if ((itemText && !WriteItemFile(itemPath.Get(), itemText)) || !WriteRecord(recordPath.Get(), sent))
    return eWRITE_FAILED;
  return Deliver(timeoutMs);
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
  LcUString item(record.itemFilePath, record.ItemFilePathLength());
  if (!record.hasItem || LcUSysFile::IsAbsolute(item.Get())) return WriteFile(path, &record, sizeof(record));
  LcOmTrackBackRecord absolute(record);
  LcUString made;
  if (!MakeAbsolute(item.Get(), made) || !absolute.setItemFilePath(made.Get())) return false;
  return WriteFile(path, &absolute, sizeof(absolute));
}

bool LcOmTrackBackSender::WriteItemFile(const char16_t* path, const char16_t* text) {
  LcUStringA narrow;
  if (!LcUString::WideToMultiByte(text, narrow)) return false;
  return WriteFile(path, narrow.Get(), size_t(narrow.Length()));
}
