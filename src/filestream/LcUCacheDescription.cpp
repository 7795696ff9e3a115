#include "filestream/LcUCacheDescription.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileMetaData.h"
#include "foundation/LcUAllocator.h"
#include "serial/LcUJsonStream.h"

namespace {
const char kMetaData[] = "MetaData";
const char kVersionKey[] = "TWVersion";
const char kURIKey[] = "URI";
const char kFileInfo[] = "FileInfo";
const int64_t kLargest = 1 << 20;
const int32_t kFileMode = 384;

// "13", "." and "0".
void Version(LcUStringA& out) {
  out.Assign("13");
  out.Append(".");
  out.Append("0");
}
}  // namespace

bool LcUCacheDescription::Compose(const char16_t* url, const LcUFileMetaData& info, LcUStringA& out) {
  LcUStringA version;
  Version(version);
  LcUJsonStream stream;
  stream.BeginObject();
  stream.SetKey(kMetaData);
  stream.BeginObject();
  stream.SetKey(kVersionKey);
  stream.WriteText(version.Get());
  stream.SetKey(kURIKey);
  stream.WriteWideText(url);
  stream.LeaveObject();
  stream.SetKey(kFileInfo);
  info.Save(stream);
  stream.LeaveObject();
  return stream.PrintText(false, out);
}

bool LcUCacheDescription::Parse(const char* text, LcUString& uri, LcUFileMetaData& info) {
  uri.Clear();
  info.Clear();
  LcUJsonStream stream;
  if (!text || !stream.LoadText(text) || !stream.EnterObject() || !stream.FindKey(kMetaData) ||
      !stream.EnterObject())
    return false;
  LcUStringA version;
  if (!stream.FindKey(kVersionKey) || !stream.ReadText(version) || !stream.FindKey(kURIKey) ||
      !stream.ReadWideText(uri) || uri.IsEmpty())
    return false;
  stream.LeaveObject();
  int32_t length = version.Length();
  if (length < 3 || std::strncmp(version.Get(), "13", 2) != 0 || version.Get()[length - 1] != '0') return false;
  return stream.FindKey(kFileInfo) && info.Load(stream) && !stream.Failed();
}

bool LcUCacheDescription::Read(const char16_t* path, LcUString& uri, LcUFileMetaData& info) {
  int64_t size = 0;
  LcUSysFileHandle file;
  if (!LcUSysFile::GetSize(path, size) || size <= 0 || size > kLargest ||
      !file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, 0))
    return false;
  std::vector<char, LcUAllocator<char>> text(size_t(size) + 1, 0);
  size_t read = std::fread(text.data(), 1, size_t(size), file.GetStream());
  // A zero byte would end the text early: that is no description either.
  if (read != size_t(size) || std::memchr(text.data(), 0, read)) return false;
  return Parse(text.data(), uri, info);
}

bool LcUCacheDescription::Write(const char16_t* path, const LcUStringA& text) {
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, kFileMode))
    return false;
  size_t length = size_t(text.Length());
  bool written = std::fwrite(text.Get(), 1, length, file.GetStream()) == length;
  return file.Close() && written;
}
