#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "environment/LcUSysFile.h"

// The input as UTF-16 units, cut in two at the first NUL: a path and a
// second argument (relative part, pattern or extension).
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<char16_t> units(size / 2 + 2, 0);
  std::memcpy(units.data(), data, size / 2 * 2);
  const char16_t* a = units.data();
  const char16_t* b = a + LcUString::Len(a) + 1;

  LcUString out, dir, file, ext;
  int32_t root = 0;
  LcUSysFile::IsAbsolute(a, root);
  LcUSysFile::GetParentLength(a, LcUString::Len(a));
  LcUSysFile::CountComponents(a);
  LcUSysFile::Join(a, b, out, size & 1);
  LcUSysFile::Join4(a, b, a, b, out);
  LcUSysFile::Resolve(a, b, out);
  LcUSysFile::MakeRelative(a, b, out, size & 1);
  LcUSysFile::Canonicalise(a, out);
  LcUSysFile::Split(a, &dir, &file, &ext);
  LcUSysFile::StripExtension(a, out);
  LcUSysFile::SetExtension(a, b, out);
  LcUSysFile::HasExtension(a, b);
  LcUSysFile::JoinSearchPath(a, b, out);
  LcUSysFile::SanitiseFileName(a, out);
  LcUSysFile::MatchesPattern(a, b);
  out.Assign(b);
  LcUSysFile::Resolve(a, out.Get(), out);
  return 0;
}
