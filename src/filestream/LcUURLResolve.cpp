#include "environment/LcUSysFile.h"
#include "filestream/LcUURL.h"
#include "serial/LcUVector.h"

namespace {
bool IsEmpty(const LcUString& s) {
  return s.Length() == 0;
}

// A piece of the merged path, keeping its trailing "/"; only the last may
// lack one.
struct Segment {
  int32_t start;
  int32_t length;
};

void SplitSegments(const LcUString& path, LcUVector<Segment>& segments) {
  int32_t start = path.Length() > 0 && path[0] == '/' ? 1 : 0;
  while (start < path.Length()) {
    int32_t slash = path.FindChar('/', start);
    int32_t end = slash < 0 ? path.Length() : slash + 1;
    segments.Add(Segment{start, end - start});
    start = end;
  }
}

bool Is(const LcUString& path, const Segment& segment, const char16_t* text) {
  int32_t length = LcUString::Len(text);
  return segment.length == length && LcUString::Equal(path.Get() + segment.start, text, length);
}

// The directory of base's path joined with the relative path, its dot
// segments removed as RFC 1808 removes them: ".." beyond the root stays.
void MergePaths(const LcUString& basePath, const LcUString& relative, LcUString& out) {
  LcUString merged;
  int32_t slash = -1;
  for (int32_t i = 0; i < basePath.Length(); ++i)
    if (basePath[i] == '/') slash = i;
  merged.Clear();
  if (slash >= 0) merged.Assign(basePath.Get(), slash + 1);
  merged.Append(relative);
  LcUVector<Segment> s;
  SplitSegments(merged, s);
  for (int32_t i = s.Size() - 1; i >= 0; --i)
    if (Is(merged, s[i], u"./")) s.RemoveAt(i);
  if (s.Size() > 0 && Is(merged, s[s.Size() - 1], u".")) s.RemoveAt(s.Size() - 1);
  for (int32_t i = s.Size() - 2; i >= 0; --i) {
    if (i + 1 < s.Size() && Is(merged, s[i + 1], u"../") && !Is(merged, s[i], u"../")) {
      s.RemoveAt(i + 1);
      s.RemoveAt(i);
      // The pairs above were checked already; the next step tries the
      // segment before against the "../" that moved down to i.
    }
  }
  int32_t n = s.Size();
  if (n >= 2 && Is(merged, s[n - 1], u"..") && !Is(merged, s[n - 2], u"../")) {
    s.RemoveAt(n - 1);
    s.RemoveAt(n - 2);
  }
  out.Assign(u"/");
  for (int32_t i = 0; i < s.Size(); ++i) out.Append(merged.Get() + s[i].start, s[i].length);
}
}  // namespace

bool LcUURL::Resolve(const char16_t* base, const char16_t* relative, LcUString& out) {
  if (!base || !*base) {
    out.Assign(relative ? relative : u"");
    return true;
  }
  if (!relative || !*relative) {
    out.Assign(base);
    return true;
  }
  LcUURL baseURL(base, true);
  LcUURL relativeURL(relative, true);
  const LcUURLParts& b = baseURL.parts;
  LcUURLParts r = relativeURL.parts;
  if (r.scheme.IsNull()) {
    r.scheme = b.scheme;
    if (r.host.IsNull()) {
      r.user = b.user;
      r.password = b.password;
      r.host = b.host;
      r.port = b.port;
      bool merge = !(r.path.Length() > 0 && r.path[0] == '/');
      if (merge && IsEmpty(r.path)) {
        r.path = b.path;
        if (IsEmpty(r.params)) {
          r.params = b.params;
          if (IsEmpty(r.query)) {
            r.query = b.query;
            if (IsEmpty(r.fragment)) r.fragment = b.fragment;
          }
        }
      }
      if (merge && !LcUString::Equal(r.path.Get(), b.path.Get())) {
        LcUString path;
        MergePaths(b.path, r.path, path);
        r.path.Swap(path);
      }
    }
  }
  LcUURL result;
  result.SetParts(r);
  result.GetPlainText(out);
  return result.IsValid();
}

bool LcUURL::Rebase(const char16_t* oldBase, const char16_t* target, const char16_t* newBase, LcUString& out) {
  out.Clear();
  if (!oldBase || !*oldBase) return false;
  LcUURL from(oldBase, true);
  LcUURL to(target, true);
  if (!LcUString::Equal(from.parts.scheme.Get(), to.parts.scheme.Get())) return false;
  LcUString directory;
  LcUString relative;
  LcUSysFile::GetDirectory(from.parts.path.Get(), &directory, nullptr);
  if (!LcUSysFile::MakeRelative(directory.Get(), to.parts.path.Get(), relative, true)) return false;
  LcUURLParts parts;
  parts.path.Swap(relative);
  parts.params = to.parts.params;
  parts.query = to.parts.query;
  parts.fragment = to.parts.fragment;
  LcUString composed;
  Compose(parts, composed);
  Resolve(newBase, composed.Get(), out);
  return true;
}

void LcUURL::GetLeafName(const char16_t* url, LcUString& out) {
  LcUURL parsed(url, true);
  if (!parsed.IsValid()) {
    out.Assign(url);
    return;
  }
  LcUString local;
  parsed.GetLocalPath(local);
  LcUSysFile::GetDirectory(local.Get(), nullptr, &out);
  if (IsEmpty(out)) out = parsed.parts.host;
  if (IsEmpty(out)) out.Assign(url);
}
