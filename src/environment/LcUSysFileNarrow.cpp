#include "environment/LcUSysFile.h"

#include <initializer_list>

// Narrow paths are UTF-8; a path that doesn't convert names no file.
namespace {
bool Widen(const char* path, LcUString& wide) {
  return path && LcUString::UTF8ToUTF16(path, -1, wide);
}

// A narrow argument of the path algebra, where null has a meaning of its own.
class WideArg {
public:
  explicit WideArg(const char* text) : isNull(!text), converted(isNull || Widen(text, wide)) {}
  const char16_t* Get() const { return isNull ? nullptr : wide.Get(); }
  bool Converted() const { return converted; }

private:
  LcUString wide;
  bool isNull;
  bool converted;
};

void ClearAll(LcUString* a, LcUString* b = nullptr, LcUString* c = nullptr) {
  for (LcUString* out : {a, b, c})
    if (out) out->Clear();
}
}  // namespace

bool LcUSysFile::IsAbsolute(const char* path) {
  WideArg wide(path);
  return wide.Converted() && IsAbsolute(wide.Get());
}

void LcUSysFile::Join(const char* a, const char* b, LcUString& out, bool forwardSlash) {
  WideArg wideA(a), wideB(b);
  if (wideA.Converted() && wideB.Converted())
    Join(wideA.Get(), wideB.Get(), out, forwardSlash);
  else
    out.Clear();
}

bool LcUSysFile::Resolve(const char* base, const char* relative, LcUString& out) {
  WideArg wideBase(base), wideRelative(relative);
  if (wideBase.Converted() && wideRelative.Converted()) return Resolve(wideBase.Get(), wideRelative.Get(), out);
  out.Clear();
  return false;
}

bool LcUSysFile::MakeRelative(const char* base, const char* path, LcUString& out, bool forwardSlash) {
  WideArg wideBase(base), widePath(path);
  if (wideBase.Converted() && widePath.Converted())
    return MakeRelative(wideBase.Get(), widePath.Get(), out, forwardSlash);
  out.Clear();
  return false;
}

void LcUSysFile::Canonicalise(const char* path, LcUString& out) {
  WideArg wide(path);
  if (wide.Converted())
    Canonicalise(wide.Get(), out);
  else
    out.Clear();
}

void LcUSysFile::Split(const char* path, LcUString* dirOut, LcUString* fileOut, LcUString* extOut) {
  WideArg wide(path);
  if (wide.Converted())
    Split(wide.Get(), dirOut, fileOut, extOut);
  else
    ClearAll(dirOut, fileOut, extOut);
}

void LcUSysFile::GetDirectory(const char* path, LcUString* dirOut, LcUString* fileOut) {
  WideArg wide(path);
  if (wide.Converted())
    GetDirectory(wide.Get(), dirOut, fileOut);
  else
    ClearAll(dirOut, fileOut);
}

void LcUSysFile::SetExtension(const char* path, const char* ext, LcUString& out) {
  WideArg widePath(path), wideExt(ext);
  if (widePath.Converted() && wideExt.Converted())
    SetExtension(widePath.Get(), wideExt.Get(), out);
  else
    out.Clear();
}

bool LcUSysFile::HasExtension(const char* path, const char* ext) {
  WideArg widePath(path), wideExt(ext);
  return widePath.Converted() && wideExt.Converted() && HasExtension(widePath.Get(), wideExt.Get());
}

bool LcUSysFile::Exists(const char* path) {
  LcUString wide;
  return Widen(path, wide) && Exists(wide.Get());
}

bool LcUSysFile::IsDirectory(const char* path) {
  LcUString wide;
  return Widen(path, wide) && IsDirectory(wide.Get());
}

bool LcUSysFile::Delete(const char* path, bool force) {
  LcUString wide;
  return Widen(path, wide) && Delete(wide.Get(), force);
}

bool LcUSysFile::EnsureDirectory(const char* path) {
  LcUString wide;
  return Widen(path, wide) && EnsureDirectory(wide.Get());
}

bool LcUSysFile::GetFileChecksum(const char* path, uint32_t& out) {
  LcUString wide;
  return Widen(path, wide) && GetFileChecksum(wide.Get(), out);
}

int LcUSysFile::GetPEImageType(const char* path) {
  LcUString wide;
  return Widen(path, wide) ? GetPEImageType(wide.Get()) : int(ePE_FAILED);
}
