#include "environment/LcUSessionProvider.h"

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"

namespace {
LcUSessionVerifier verifier = nullptr;
void* verifierContext = nullptr;
}  // namespace

void LcUSessionFileProvider::SetVerifier(LcUSessionVerifier next, void* context) {
  verifier = next;
  verifierContext = context;
}

bool LcUSessionFileProvider::Verify(const LcUSessionRecord& record) {
  return verifier && verifier(verifierContext, record);
}

bool LcUSessionFileProvider::Load(LcUSessionRecordList& records) {
  FILE* file = Open();
  if (!file) {
    LcUError::LogF("LcUSession: Can't open session file.\n");
    return false;
  }
  // A session file is small: anything past the limit is not one.
  LcUSessionRecord::Bytes text;
  char chunk[4096];
  size_t got;
  while (text.size() <= size_t(eMAX_FILE_BYTES) && (got = std::fread(chunk, 1, sizeof chunk, file)) > 0)
    text.insert(text.end(), chunk, chunk + got);
  bool readable = !std::ferror(file);
  Close(file);
  if (!readable || text.size() > size_t(eMAX_FILE_BYTES)) return false;
  size_t length = text.size();
  LcUStringA error;
  if (LcUSessionRecord::Read(reinterpret_cast<const char*>(text.data()), length, records, error)) return true;
  LcUError::LogF("LcUSession- session file: %s\n", error.Get());
  records.clear();
  return false;
}

FILE* LcUSessionDefaultFileProvider::Open() {
  LcUString path;
  LcUSysFile::Join(folder.Get(), u"session.twlic", path);
  LcUSysFileHandle file;
  if (!file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0, 0))
    return nullptr;
  return file.Detach();
}

void LcUSessionDefaultFileProvider::Close(FILE* file) {
  if (file) std::fclose(file);
}
