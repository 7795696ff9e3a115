#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "environment/LcUSysRegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

namespace {
bool refused = false;

int Refused(int, LcUComponent*, int32_t, void*, const char16_t*) {
  refused = true;
  return 1;
}

std::string ReadAll(const std::string& path) {
  std::string bytes;
  if (FILE* file = std::fopen(path.c_str(), "rb")) {
    char chunk[4096];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) bytes.append(chunk, got);
    std::fclose(file);
  }
  return bytes;
}

// Each folder made is removed when the run ends.
std::vector<std::string> made;

std::string MakeFolder() {
  char name[] = "/tmp/fuzz-registry-XXXXXX";
  if (!mkdtemp(name)) return "/nonexistent";
  if (made.empty())
    std::atexit([] {
      std::error_code ignored;
      for (const std::string& folder : made) std::filesystem::remove_all(folder, ignored);
    });
  made.push_back(name);
  return name;
}

void WriteAll(const std::string& path, const std::string& bytes) {
  if (FILE* file = std::fopen(path.c_str(), "wb")) {
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
}

// A sound store with a few keys and values, as its file reads once closed.
std::string MakeTemplate() {
  const std::string folder = MakeFolder();
  setenv("TW_REGISTRY_DIR", folder.c_str(), 1);
  for (int i = 0; i < 40; ++i) {
    std::u16string key = u"Software\\Template\\k" + std::u16string(1, char16_t(u'a' + i % 26));
    LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_CURRENT_USER, key.c_str(), u"n", i);
    LcUSysRegistry::SetTextValue(LcUSysRegistry::eHIVE_CURRENT_USER, key.c_str(), u"t", u"some text");
  }
  // Moving away closes the store, which folds its log into the file.
  setenv("TW_REGISTRY_DIR", "/nonexistent", 1);
  LcUSysRegistry::KeyExists(LcUSysRegistry::eHIVE_CURRENT_USER, u"Software");
  return ReadAll(folder + "/user.db");
}

// The file to try: with byte 0 even, the rest as it is; with it odd, the
// template cut to the length in bytes 1-2 (in 64-byte steps, 0 keeps it
// whole) and patched by (offset 2 bytes, value 1 byte) triples.
std::string Candidate(const uint8_t* data, size_t size) {
  static const std::string sound = MakeTemplate();
  if (size == 0 || !(data[0] & 1)) return std::string(reinterpret_cast<const char*>(data), size);
  std::string file = sound;
  size_t cut = size >= 3 ? (size_t(data[1]) | size_t(data[2]) << 8) * 64 : 0;
  if (cut && cut < file.size()) file.resize(cut);
  for (size_t i = 3; i + 2 < size && !file.empty(); i += 3)
    file[(size_t(data[i]) | size_t(data[i + 1]) << 8) % file.size()] = char(data[i + 2]);
  return file;
}
}  // namespace

// The input makes a hive's database file. The store either takes it and
// works, or reports it and leaves it byte for byte as it was.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string folders[2] = {MakeFolder(), MakeFolder()};
  static int turn = 0;
  static bool started = [] {
    LcUSysRegistry::Initialize();
    LcUSysError::SetHandler(-1, &LcUSysRegistry::component, -1, Refused);
    return true;
  }();
  (void)started;
  // The store in use stays open; the file written is in the other folder,
  // and moving there closes the first.
  turn ^= 1;
  const std::string& folder = folders[turn];
  const std::string path = folder + "/user.db";
  const std::string file = Candidate(data, size);
  for (const char* suffix : {"", "-wal", "-shm"}) unlink((path + suffix).c_str());
  WriteAll(path, file);
  setenv("TW_REGISTRY_DIR", folder.c_str(), 1);
  refused = false;
  int32_t value = 0;
  LcUSysRegistry::SetInt32Value(LcUSysRegistry::eHIVE_CURRENT_USER, u"Software\\Fuzz", u"v", 7);
  LcUSysRegistry::GetInt32Value(LcUSysRegistry::eHIVE_CURRENT_USER, u"Software\\Fuzz", u"v", value);
  LcUSysRegistry::CountSubKeys(LcUSysRegistry::eHIVE_CURRENT_USER, u"Software");
  if (refused && ReadAll(path) != file) __builtin_trap();
  return 0;
}
