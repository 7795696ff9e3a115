#include "filestream/LcUFileProtocol.h"

#include "filestream/LcUURL.h"

LcUFileProtocol::~LcUFileProtocol() = default;

bool LcUFileProtocol::UsesLocalCache() {
  return IsRemote();
}

int32_t LcUFileProtocol::GetPrefetchRange(void* handle, int32_t block, int32_t& first, int32_t& last) {
  first = block > ePREFETCH_BLOCKS ? block - ePREFETCH_BLOCKS : 0;
  last = block + ePREFETCH_BLOCKS;
  return last;
}

bool LcUFileProtocol::HasThreadHandles() {
  return false;
}

int32_t LcUFileProtocol::ReadRange(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                                   void* buffer, int64_t* totalSize) {
  return -1;
}

void* LcUFileProtocol::CreateThreadHandle(void* handle) {
  return nullptr;
}

bool LcUFileProtocol::DestroyThreadHandle(void* threadHandle) {
  return false;
}

void* LcUFileProtocol::CreateRequest(void* handle, int64_t offset, uint32_t size) {
  return nullptr;
}

bool LcUFileProtocol::DestroyRequest(void* request) {
  return false;
}

void LcUFileProtocol::GetLeafName(const char16_t* url, LcUString& out) {
  LcUURL::GetLeafName(url, out);
}

void LcUFileProtocol::GetDisplayName(const char16_t* url, LcUString& out) {
  out.Assign(url);
}
