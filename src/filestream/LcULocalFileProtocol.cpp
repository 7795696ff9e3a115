#include "filestream/LcULocalFileProtocol.h"

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUSizedObject.h"
#include "filestream/LcUSysFilePosition.h"
#include "filestream/LcUURL.h"

namespace {
// The local path of a URL taken as it stands; false when it isn't one.
bool LocalPathOf(const char16_t* url, LcUString& path) {
  LcUURL parsed(url, false);
  if (!parsed.IsValid()) return false;
  parsed.GetLocalPath(path);
  return true;
}

FILE* StreamOf(void* handle) {
  return static_cast<LcUSysFileHandle*>(handle)->GetStream();
}
}  // namespace

bool LcULocalFileProtocol::GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) {
  LcUString path;
  if (!LocalPathOf(url, path)) return false;
  int64_t modified = 0, accessed = 0, size = 0;
  if (!LcUSysFile::GetTimes(path.Get(), modified, accessed) || !LcUSysFile::GetSize(path.Get(), size)) return false;
  metadata.SetModificationTime(modified);
  metadata.SetFileSize(uint64_t(size));
  return true;
}

void* LcULocalFileProtocol::OpenHandle(const char16_t* url, bool forWriting) {
  LcUString path;
  if (!LocalPathOf(url, path)) return nullptr;
  LcUSysFileHandle* handle = LcUSizedObject::New<LcUSysFileHandle>();
  if (!handle) return nullptr;
  int access = forWriting ? LcUSysFileHandle::eACCESS_READ_WRITE : LcUSysFileHandle::eACCESS_READ;
  int creation = forWriting ? LcUSysFileHandle::eOPEN_ALWAYS : LcUSysFileHandle::eOPEN_EXISTING;
  int permission = LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE;
  if (handle->Open(path.Get(), access, creation, LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0,
                   permission))
    return handle;
  CloseHandle(handle);
  return nullptr;
}

bool LcULocalFileProtocol::ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                                    void* buffer) {
  if (!handle || (size && !buffer)) return false;
  lock.Lock();
  FILE* stream = StreamOf(handle);
  bool ok = LcUSysFilePosition::Seek(stream, offset) && fread(buffer, 1, size, stream) == size;
  lock.Unlock();
  return ok;
}

bool LcULocalFileProtocol::WriteFile(void* handle, int64_t offset, uint32_t size, const void* buffer) {
  if (!handle || (size && !buffer)) return false;
  lock.Lock();
  FILE* stream = StreamOf(handle);
  bool ok = LcUSysFilePosition::Seek(stream, offset) && fwrite(buffer, 1, size, stream) == size;
  lock.Unlock();
  return ok;
}

bool LcULocalFileProtocol::CloseHandle(void* handle) {
  if (!handle) return false;
  LcUSysFileHandle* file = static_cast<LcUSysFileHandle*>(handle);
  // A read or write that failed has reported so already; the close tells
  // only of its own flush.
  if (file->IsOpen()) clearerr(file->GetStream());
  bool ok = file->IsOpen() && file->Close();
  LcUSizedObject::Delete(file);
  return ok;
}

bool LcULocalFileProtocol::RebaseURL(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                                     LcUString& out) {
  return LcUURL::Rebase(oldBase, target, newBase, out);
}

bool LcULocalFileProtocol::ResolveURL(const char16_t* base, const char16_t* relative, LcUString& out) {
  return LcUURL::Resolve(base, relative, out);
}
