#include "environment/LcUSysFile.h"

#include <initializer_list>

namespace {
const int32_t kComponentCapacity = 1024;

char16_t SeparatorOf(const char16_t* path) {
  for (; *path; ++path)
    if (LcUSysFile::IsSeparator(*path)) return *path;
  return '\\';
}

// Component boundaries are compared with either separator equal.
bool SamePrefix(const char16_t* a, const char16_t* b, int32_t length) {
  for (int32_t i = 0; i < length; ++i)
    if (a[i] != b[i] && !(LcUSysFile::IsSeparator(a[i]) && LcUSysFile::IsSeparator(b[i]))) return false;
  return true;
}

int32_t RootLength(const char16_t* path) {
  int32_t root = 0;
  LcUSysFile::IsAbsolute(path, root);
  return root;
}
}  // namespace

bool LcUSysFile::IsAbsolute(const char16_t* path) {
  int32_t root = 0;
  return IsAbsolute(path, root);
}

bool LcUSysFile::IsAbsolute(const char16_t* path, int32_t& rootLength) {
  rootLength = 0;
  if (!path || !path[0]) return false;
  if (path[1] == ':' && IsSeparator(path[2]))
    rootLength = 3;
  else if (path[0] == '/')
    rootLength = 1;
  else if (path[0] == '\\' && path[1] == '\\')
    rootLength = 2;
  return rootLength != 0;
}

int32_t LcUSysFile::GetParentLength(const char16_t* path, int32_t length) {
  if (!path || length <= 0) return 0;
  int32_t root = RootLength(path);
  if (length <= root) return length;
  int32_t i = length;
  while (i > root && IsSeparator(path[i - 1])) --i;
  while (i > root && !IsSeparator(path[i - 1])) --i;
  while (i > root && IsSeparator(path[i - 1])) --i;
  return i;
}

int32_t LcUSysFile::CountComponents(const char16_t* path) {
  if (!path) return 0;
  int32_t count = 0;
  bool inComponent = false;
  for (const char16_t* p = path + RootLength(path); *p; ++p) {
    if (!inComponent && !IsSeparator(*p)) ++count;
    inComponent = !IsSeparator(*p);
  }
  return count;
}

void LcUSysFile::Join(const char16_t* a, const char16_t* b, LcUString& out, bool forwardSlash) {
  if (!a || !*a) {
    out.Assign(b ? b : u"");
    return;
  }
  if (!b || !*b) {
    out.Assign(a);
    return;
  }
  LcUString joined(a);
  if (!IsSeparator(a[joined.Length() - 1])) joined.Append(char16_t(forwardSlash ? '/' : '\\'));
  joined.Append(IsSeparator(b[0]) ? b + 1 : b);
  out.Swap(joined);
}

void LcUSysFile::Join3(const char16_t* a, const char16_t* b, const char16_t* c, LcUString& out) {
  Join4(a, b, c, nullptr, out);
}

void LcUSysFile::Join4(const char16_t* a, const char16_t* b, const char16_t* c, const char16_t* d, LcUString& out) {
  LcUString joined;
  for (const char16_t* part : {a, b, c, d})
    if (part) Join(joined.Get(), part, joined);
  out.Swap(joined);
}

bool LcUSysFile::Resolve(const char16_t* base, const char16_t* relative, LcUString& out) {
  int32_t root = 0;
  if (!IsAbsolute(base, root)) {
    out.Clear();
    return false;
  }
  if (!relative) relative = u"";
  LcUString result(base);
  if (IsSeparator(relative[0])) {
    // The drive or share root, keeping its separator.
    int32_t keep = IsSeparator(base[1]) ? 2 : root == 1 ? 1 : 3;
    if (keep < result.Length()) result.SetLength(keep);
    result.Append(relative + 1);
    out.Swap(result);
    return true;
  }
  const bool forwardSlash = SeparatorOf(base) == '/';
  const char16_t* p = relative;
  while (*p) {
    int32_t n = 0;
    while (p[n] && !IsSeparator(p[n])) ++n;
    if (n >= kComponentCapacity) {
      out.Clear();
      return false;
    }
    if (n == 2 && p[0] == '.' && p[1] == '.') {
      if (result.Length() <= root) {
        out.Clear();
        return false;
      }
      result.SetLength(GetParentLength(result.Get(), result.Length()));
    } else if (n > 0 && !(n == 1 && p[0] == '.')) {
      LcUString component(p, n);
      Join(result.Get(), component.Get(), result, forwardSlash);
    }
    p += n;
    while (IsSeparator(*p)) ++p;
  }
  out.Swap(result);
  return true;
}

bool LcUSysFile::MakeRelative(const char16_t* base, const char16_t* path, LcUString& out, bool forwardSlash) {
  int32_t baseRoot = 0, pathRoot = 0;
  out.Clear();
  if (!IsAbsolute(base, baseRoot) || !IsAbsolute(path, pathRoot) || baseRoot != pathRoot || base[0] != path[0])
    return false;
  const char16_t separator = forwardSlash ? '/' : '\\';
  int32_t baseCount = CountComponents(base), pathCount = CountComponents(path);
  int32_t baseLength = LcUString::Len(base), pathLength = LcUString::Len(path);
  int32_t ups = 0;
  LcUString tail;
  // Walks from the deeper path upward until both name the same folder.
  auto takePathComponent = [&]() {
    int32_t parent = GetParentLength(path, pathLength);
    int32_t start = parent;
    while (start < pathLength && IsSeparator(path[start])) ++start;
    int32_t end = pathLength;
    while (end > start && IsSeparator(path[end - 1])) --end;
    LcUString piece(path + start, end - start);
    if (!tail.IsEmpty()) piece.Append(separator);
    piece.Append(tail);
    tail.Swap(piece);
    pathLength = parent;
  };
  for (; baseCount > pathCount; --baseCount, ++ups) baseLength = GetParentLength(base, baseLength);
  for (; pathCount > baseCount; --pathCount) takePathComponent();
  auto trimmed = [](const char16_t* p, int32_t length, int32_t root) {
    while (length > root && IsSeparator(p[length - 1])) --length;
    return length;
  };
  while (true) {
    int32_t b = trimmed(base, baseLength, baseRoot), p = trimmed(path, pathLength, pathRoot);
    if (b == p && SamePrefix(base, path, b)) break;
    if (baseCount == 0) return false;
    baseLength = GetParentLength(base, baseLength);
    takePathComponent();
    --baseCount;
    ++ups;
  }
  LcUString result;
  for (int32_t i = 0; i < ups; ++i) {
    if (!result.IsEmpty()) result.Append(separator);
    result.Append(u"..");
  }
  if (!result.IsEmpty() && !tail.IsEmpty()) result.Append(separator);
  result.Append(tail);
  out.Swap(result);
  return true;
}

void LcUSysFile::Canonicalise(const char16_t* path, LcUString& out) {
  LcUString result(path ? path : u"");
  result.Trim();
  int32_t root = RootLength(result.Get());
  int32_t n = result.Length();
  while (n > 0 && IsSeparator(result[n - 1])) --n;
  // A root keeps its own separator: "C:\", "/", "\\".
  result.SetLength(n < root ? root : n);
  out.Swap(result);
}
