#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"

namespace {
LcUFileProtocol* ProtocolFor(const char16_t* url) {
  return LcUFileProtocolRegistry::GetInstance()->FindForURL(url);
}
}  // namespace

bool LcUFileProtocol::GetFileSize(const char16_t* url, uint64_t* size, bool* readOnly) {
  LcUFileProtocol* protocol = ProtocolFor(url);
  if (!protocol) return false;
  LcUFileMetaData metadata;
  if (!protocol->GetFileInfo(url, metadata) || !metadata.Has(LcUFileMetaData::eFILE_SIZE)) return false;
  if (size) *size = metadata.GetFileSize();
  if (readOnly && metadata.Has(LcUFileMetaData::ePERMISSIONS))
    *readOnly = (metadata.GetPermissions() & LcUFileMetaData::ePERMISSION_WRITABLE) == 0;
  return true;
}

LcUFileProtocol::LocationKind LcUFileProtocol::GetLocationKind(const char16_t* url) {
  LcUFileProtocol* protocol = ProtocolFor(url);
  if (!protocol) return eLOCATION_NONE;
  return protocol->IsRemote() ? eLOCATION_REMOTE : eLOCATION_LOCAL;
}

void LcUFileProtocol::GetLeafNameOf(const char16_t* url, LcUString& out) {
  if (LcUFileProtocol* protocol = ProtocolFor(url))
    protocol->GetLeafName(url, out);
  else
    out.Assign(url);
}

void LcUFileProtocol::GetDisplayNameOf(const char16_t* url, LcUString& out) {
  if (LcUFileProtocol* protocol = ProtocolFor(url))
    protocol->GetDisplayName(url, out);
  else
    out.Assign(url);
}

bool LcUFileProtocol::Rebase(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                             LcUString& out) {
  out.Clear();
  LcUFileProtocol* protocol = ProtocolFor(newBase);
  return protocol && protocol->RebaseURL(oldBase, target, newBase, out);
}

bool LcUFileProtocol::Resolve(const char16_t* base, const char16_t* relative, LcUString& out) {
  out.Clear();
  LcUFileProtocol* protocol = ProtocolFor(base);
  return protocol && protocol->ResolveURL(base, relative, out);
}
