#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "environment/LcUResource.h"
#include "environment/LcUResourceParseState.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

namespace {
int Quiet(int, LcUComponent*, int32_t, void*, const char16_t*) {
  return 1;
}
}  // namespace

// Byte 0 picks an end token and a prefix; the rest is a name table. Then
// the rest, as UTF-16, goes through substitution by DefineString.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 || size > 65536) return 0;
  LcUResource::Initialize();
  LcUSysError::SetHandler(-1, &LcUResource::component, -1, Quiet);
  const char* endToken = data[0] & 1 ? "END" : nullptr;
  const char* prefix = data[0] & 2 ? "p." : nullptr;
  std::string table(reinterpret_cast<const char*>(data + 1), size - 1);
  if (FILE* stream = fmemopen(table.data(), table.size() + 1, "r")) {
    LcUResourceParseState state;
    LcUResource::ReadNameTable(stream, endToken, state, prefix);
    std::fclose(stream);
  }
  std::u16string value((size - 1) / 2, u'\0');
  for (size_t i = 0; i < value.size(); ++i) value[i] = char16_t(data[1 + 2 * i] | data[2 + 2 * i] << 8);
  LcUResource::DefineString(data[0] & 4 ? "v" : "vnosub", value.c_str());
  LcUResource::DefineString("p.a", value.c_str());
  LcUResource::Terminate();
  return 0;
}
