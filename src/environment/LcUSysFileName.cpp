#include "environment/LcUSysFile.h"

namespace {
int32_t NameStart(const char16_t* path, int32_t length) {
  int32_t i = length;
  while (i > 0 && !LcUSysFile::IsSeparator(path[i - 1])) --i;
  return i;
}

// The index of the extension's dot in the last component, or -1.
int32_t ExtensionDot(const char16_t* path, int32_t length) {
  for (int32_t i = length; i > 0 && !LcUSysFile::IsSeparator(path[i - 1]); --i)
    if (path[i - 1] == '.') return i - 1;
  return -1;
}

void AssignPart(LcUString* out, const char16_t* text, int32_t count) {
  if (out) {
    LcUString part(text, count);
    out->Swap(part);
  }
}
}  // namespace

void LcUSysFile::GetDirectory(const char16_t* path, LcUString* dirOut, LcUString* fileOut) {
  if (!path) path = u"";
  int32_t length = LcUString::Len(path);
  int32_t start = NameStart(path, length);
  int32_t root = 0;
  IsAbsolute(path, root);
  int32_t dir = start;
  while (dir > root && IsSeparator(path[dir - 1])) --dir;
  LcUString file(path + start, length - start);
  AssignPart(dirOut, path, dir);
  if (fileOut) fileOut->Swap(file);
}

void LcUSysFile::Split(const char16_t* path, LcUString* dirOut, LcUString* fileOut, LcUString* extOut) {
  LcUString canonical;
  Canonicalise(path, canonical);
  LcUString file;
  GetDirectory(canonical.Get(), dirOut, &file);
  SplitExtension(file.Get(), fileOut, extOut);
}

void LcUSysFile::SplitExtension(const char16_t* name, LcUString* stemOut, LcUString* extOut) {
  if (!name) name = u"";
  int32_t length = LcUString::Len(name);
  int32_t dot = ExtensionDot(name, length);
  LcUString ext(dot < 0 ? u"" : name + dot + 1);
  AssignPart(stemOut, name, dot < 0 ? length : dot);
  if (extOut) extOut->Swap(ext);
}

void LcUSysFile::StripExtension(const char16_t* path, LcUString& out) {
  SplitExtension(path, &out, nullptr);
}

void LcUSysFile::SetExtension(const char16_t* path, const char16_t* ext, LcUString& out) {
  LcUString result(path ? path : u"");
  if (ext && ext[0] == '.') ++ext;
  if (ext && *ext) {
    result.Append(char16_t('.'));
    result.Append(ext);
  }
  out.Swap(result);
}

bool LcUSysFile::HasExtension(const char16_t* path, const char16_t* ext) {
  if (!path) return false;
  if (ext && ext[0] == '.') ++ext;
  int32_t dot = ExtensionDot(path, LcUString::Len(path));
  // Only a null extension matches a path without one.
  if (dot < 0) return !ext;
  return ext && LcUString::CompareNoCase(path + dot + 1, ext) == 0;
}

void LcUSysFile::JoinSearchPath(const char16_t* a, const char16_t* b, LcUString& out) {
  LcUString result(a ? a : u"");
  if (b && *b) {
    if (!result.IsEmpty()) result.Append(char16_t(';'));
    result.Append(b);
  }
  out.Swap(result);
}

bool LcUSysFile::FindInSearchPath(const char16_t* pathList, const char16_t* relative, LcUString& out) {
  for (const char16_t* p = pathList; p && *p;) {
    int32_t n = 0;
    while (p[n] && p[n] != ';') ++n;
    LcUString folder(p, n);
    if (Resolve(folder.Get(), relative, out) && Exists(out.Get())) return true;
    p += p[n] ? n + 1 : n;
  }
  out.Clear();
  return false;
}

bool LcUSysFile::SanitiseFileName(const char16_t* name, LcUString& out) {
  LcUString result(name ? name : u"");
  bool replaced = false;
  for (int32_t i = 0; i < result.Length(); ++i) {
    for (const char16_t* bad = u"\\/:*?\"<>|"; *bad; ++bad)
      if (result[i] == *bad) {
        result.SetAt(i, '_');
        replaced = true;
      }
  }
  out.Swap(result);
  return replaced;
}
