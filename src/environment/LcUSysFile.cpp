#include "environment/LcUSysFile.h"

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
