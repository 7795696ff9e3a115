// Arbitrary bytes as veerback send's arguments (split at NUL, read as
// UTF-8): the parser either names what is wrong or gives a record whose
// camera the host can use, never anything in between.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "VeerbackSendOptions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<LcUString> words(1);
  std::string word;
  for (size_t i = 0; i <= size; ++i) {
    if (i < size && data[i]) {
      word += char(data[i]);
      continue;
    }
    LcUString::UTF8ToUTF16(word.c_str(), -1, words.back());
    words.emplace_back();
    word.clear();
  }
  words.pop_back();
  std::vector<const char16_t*> arguments;
  for (const LcUString& w : words) arguments.push_back(w.Get() ? w.Get() : u"");
  VeerbackSendOptions options;
  std::string error;
  if (!options.Parse(arguments, error)) {
    if (error.empty()) std::abort();
    return 0;
  }
  const LcNvCamera& c = options.record.camera;
  const double all[] = {c.position.x, c.position.y, c.position.z, c.rotation.x, c.rotation.y, c.rotation.z,
                        c.rotation.w, c.aspect, c.height, c.nearDistance, c.farDistance};
  for (double value : all)
    if (!std::isfinite(value)) std::abort();
  if (!(c.aspect > 0 && c.height > 0 && c.nearDistance < c.farDistance) || options.timeoutMs <= 0) std::abort();
  if (c.rotation.x == 0 && c.rotation.y == 0 && c.rotation.z == 0 && c.rotation.w == 0) std::abort();
  if (options.record.DocumentPathLength() == 0) std::abort();
  return 0;
}
