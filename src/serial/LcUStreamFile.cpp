#include "serial/LcUStreamFile.h"

#include "environment/LcUSysFileHandle.h"
#include "serial/LcUStream.h"

LcUStreamFile::LcUStreamFile(const char16_t* path) : LcUStreamFileHandle(nullptr), path(path) {}

LcUStreamFile::~LcUStreamFile() {
  Close();
}

bool LcUStreamFile::Open(LcUStream* stream, bool write) {
  Close();
  LcUSysFileHandle handle;
  int mode = stream && stream->ascii ? LcUSysFileHandle::eMODE_TEXT : LcUSysFileHandle::eMODE_BINARY;
  if (!handle.Open(path.Get(), write ? LcUSysFileHandle::eACCESS_WRITE : LcUSysFileHandle::eACCESS_READ,
                   write ? LcUSysFileHandle::eCREATE_ALWAYS : LcUSysFileHandle::eOPEN_EXISTING, mode,
                   LcUSysFileHandle::eDENY_NONE, 0,
                   LcUSysFileHandle::ePERMISSION_WRITE | LcUSysFileHandle::ePERMISSION_READ))
    return false;
  file = handle.Detach();
  return true;
}

bool LcUStreamFile::Close() {
  if (!file) return true;
  bool closed = std::fclose(file) == 0;
  file = nullptr;
  return closed;
}

bool LcUStreamFile::WriteBegin(LcUStream* stream) {
  if (!Open(stream, true)) return false;
  if (LcUStreamFileHandle::WriteBegin(stream)) return true;
  Close();
  return false;
}

bool LcUStreamFile::WriteEnd() {
  bool ended = LcUStreamFileHandle::WriteEnd();
  return Close() && ended;
}

bool LcUStreamFile::ReadBegin(LcUStream* stream) {
  if (!Open(stream, false)) return false;
  if (LcUStreamFileHandle::ReadBegin(stream)) return true;
  Close();
  return false;
}

bool LcUStreamFile::ReadEnd() {
  return Close();
}
