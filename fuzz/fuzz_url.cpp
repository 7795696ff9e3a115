#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "filestream/LcUURL.h"

namespace {
// The input as UTF-16 units, split into up to three texts at NUL units.
int Split(const uint8_t* data, size_t size, LcUString (&texts)[3]) {
  int count = 0;
  size_t units = size / 2;
  size_t start = 0;
  for (size_t i = 0; i <= units && count < 3; ++i) {
    char16_t unit = i < units ? char16_t(data[2 * i] | (data[2 * i + 1] << 8)) : 0;
    if (unit != 0 && i < units) continue;
    texts[count].Clear();
    for (size_t j = start; j < i; ++j) texts[count].Append(char16_t(data[2 * j] | (data[2 * j + 1] << 8)));
    ++count;
    start = i + 1;
  }
  return count;
}

bool Same(const LcUString& a, const LcUString& b) {
  return LcUString::Equal(a.Get(), b.Get());
}
}  // namespace

// Parse, normalise, compose, resolve and rebase never crash or hang, and
// a second normalisation changes nothing that the first made.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LcUString texts[3];
  int count = Split(data, size, texts);
  LcUURL url(texts[0].Get(), false);
  LcUString composed;
  if (url.IsValid()) {
    LcUURL::Compose(url.GetParts(), composed);
    // Composing what was parsed and parsing it again is stable.
    LcUURL again(composed.Get(), false);
    LcUString twice;
    LcUURL::Compose(again.GetParts(), twice);
    if (again.IsValid() && !Same(composed, twice)) std::abort();
  }
  LcUURL normal(texts[0].Get(), true);
  LcUString first = normal.GetText();
  bool firstValid = normal.IsValid();
  // One exception: an empty authority alone composes to "//", which parses
  // back as a rooted path without a scheme, and that the next pass turns
  // into a file URL. A first pass leaves no other text like it.
  const LcUURLParts& once = normal.GetParts();
  bool rootedWithoutScheme = firstValid && once.scheme.IsNull() && once.path.Length() > 0 &&
                             (once.path[0] == '/' || (once.path.Length() >= 2 && once.path[1] == ':'));
  normal.Normalise();
  if (!rootedWithoutScheme && (!Same(first, normal.GetText()) || firstValid != normal.IsValid())) std::abort();
  LcUString out;
  normal.GetLocalPath(out);
  normal.GetPlainText(out);
  LcUURL::GetLeafName(texts[0].Get(), out);
  if (count >= 2) {
    LcUURL::Resolve(texts[0].Get(), texts[1].Get(), out);
    LcUURL::Equal(texts[0].Get(), texts[1].Get(), true);
  }
  if (count >= 3) LcUURL::Rebase(texts[0].Get(), texts[1].Get(), texts[2].Get(), out);
  return 0;
}
