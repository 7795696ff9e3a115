#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "environment/LcURegistry.h"
#include "environment/LcUSysRegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOptInt32MinValidator.h"
#include "options/LcUOption.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"

// Saved options from outside, in each of their three forms, into a live
// tree: registry keys and values the input names, XML text, stream bytes.
// The first byte picks the form.
namespace {
const char16_t kBase[] = u"Software\\TwFuzz\\Options";
std::string folder;

int Quiet(int, LcUComponent*, int32_t, void*, const char16_t*) {
  return 1;
}

bool Start() {
  char name[] = "/tmp/fuzz-options-XXXXXX";
  folder = mkdtemp(name) ? name : "/nonexistent";
  std::atexit([] {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  });
  setenv("TW_REGISTRY_DIR", folder.c_str(), 1);
  LcUXMLDOMStream::Initialize();
  LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get());
  for (LcUComponent* component : {&LcUOption::component, &LcURegistry::component, &LcUSysRegistry::component})
    for (int severity = 0; severity < 5; ++severity) LcUSysError::SetHandler(severity, component, -1, Quiet);
  LcUOption::DefineInt32("a.size", 4, 0, 0, nullptr, new LcUOptInt32MinValidator(1));
  LcUOption::DefineFloat("a.scale", 1.0);
  LcUOption::DefineWideString("b", u"text");
  LcUExOptionSet* list = new LcUExOptionSet(LcUOptionSet::eARRAY);
  LcUOption::DefineInt32(list, "0", 1);
  LcUOption::DefineSet("c.list", list);
  return true;
}

// Pieces of the input: a length byte, then that many bytes.
std::u16string Piece(const uint8_t*& at, const uint8_t* end, bool keyPath) {
  std::u16string text;
  if (at >= end) return text;
  size_t length = *at++ % 12;
  for (size_t k = 0; k < length && at < end; ++k, ++at) {
    uint8_t c = *at;
    // Key paths keep to a small alphabet with separators, so keys nest.
    text += keyPath ? u"ab01\\\\x9"[c % 8] : char16_t(c < 32 ? '0' + c % 10 : c);
  }
  return text;
}

LcUExOptionSet* FromRegistry(const uint8_t* at, const uint8_t* end) {
  LcUString base;
  LcUSysRegistry::JoinKey(kBase, nullptr, nullptr, nullptr, base);
  while (at < end) {
    uint8_t kind = *at++;
    std::u16string key = Piece(at, end, true);
    LcUString path;
    LcUSysRegistry::JoinKey(kBase, key.empty() ? nullptr : key.c_str(), nullptr, nullptr, path);
    if (kind & 1) {
      LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_CURRENT_USER, path.Get(), nullptr, (kind >> 1) & 1);
      continue;
    }
    std::u16string name = Piece(at, end, false);
    std::u16string value = Piece(at, end, false);
    LcUSysRegistry::SetTextValue(LcUSysRegistry::eHIVE_CURRENT_USER, path.Get(), name.c_str(), value.c_str());
  }
  LcUExOptionSet* set = LcUOption::ReadFromRegistry(u"Options", 0);
  LcUSysRegistry::DeleteKey(LcUSysRegistry::eHIVE_CURRENT_USER, kBase, true);
  return set;
}

// The registry's root for the reads: the base above "Options".
class Location : public LcURegistryLocationProvider {
public:
  int32_t GetLocationCount() const override { return 1; }
  const char16_t* GetLocation(int32_t) const override { return u"Software\\TwFuzz"; }
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 || size > 8192) return 0;
  static bool started = Start();
  static Location location;
  (void)started;
  LcURegistry::SetRegistryLocationProvider(&location);
  const uint8_t* body = data + 1;
  const uint8_t* end = data + size;
  LcUExOptionSet* set = nullptr;
  switch (data[0] % 3) {
    case 0: set = FromRegistry(body, end); break;
    case 1: {
      LcUString text;
      LcUString::UTF8ToUTF16(reinterpret_cast<const char*>(body), int32_t(size - 1), text);
      LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(text.Get() ? text.Get() : u"", 0);
      if (stream) set = LcUOption::ReadFromXML(*stream);
      LcUXMLDOMStream::DestroyStream(stream);
      break;
    }
    default: {
      LcUStreamBuffer buffer;
      buffer.SetData(body, uint32_t(size - 1), 1);
      LcUStreamReader reader(&buffer);
      reader.ascii = (data[0] & 4) != 0;
      reader.ReadBegin(false);
      set = LcUOption::ReadFromStream(reader);
      break;
    }
  }
  LcUOption::SetSavedOptions(set);
  LcUOption::SetSavedOptions(nullptr);
  return 0;
}
