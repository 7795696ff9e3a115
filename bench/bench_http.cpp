// A 256 MiB file served by nginx on loopback, read cold through the block
// cache and through its peers in the same run: sequentially against one
// libcurl GET of the whole file, and by 2,000 random 64 KiB reads against
// GDAL's /vsicurl/ (libgdal loaded at run time) on the same offsets; then
// both again with 20 ms added to every answer by the test proxy.
#include <dlfcn.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <curl/curl.h>

#include "environment/LcUSysFile.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLImpl.h"
#include "http/TestHttpServer.h"

namespace {
const size_t kSize = size_t(256) << 20;
const uint32_t kPiece = 65536;
const int kReads = 2000;
// Reads prepared ahead of the one being read: what a viewer that knows its
// next pieces does, and what lets four workers and combined ranges tell.
const size_t kAhead = 8;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::string Narrow(const std::u16string& text) { return std::string(text.begin(), text.end()); }

long PeakMegabytes() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

size_t Discard(char*, size_t unit, size_t count, void*) { return unit * count; }

double CurlWhole(const std::u16string& url) {
  CURL* easy = curl_easy_init();
  curl_easy_setopt(easy, CURLOPT_URL, Narrow(url).c_str());
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Discard);
  double start = Now();
  CURLcode code = curl_easy_perform(easy);
  double seconds = Now() - start;
  curl_easy_cleanup(easy);
  return code == CURLE_OK ? seconds : -1;
}

double OursSequential(LcUFileURLImpl* engine, const std::u16string& url) {
  double start = Now();
  LcUFileURLFile* file = engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE);
  if (!file) return -1;
  std::vector<uint8_t> chunk(1u << 20);
  const uint64_t window = 32u << 20;
  for (uint64_t at = 0; at < kSize; at += chunk.size()) {
    if (at % window == 0) engine->PrepareRead(file, at, std::min<uint64_t>(window, kSize - at));
    if (engine->Read(file, LcUFileURLImpl::eBLOCKING, at, chunk.data(), uint32_t(chunk.size())) != 0) return -1;
  }
  engine->Close(file);
  return Now() - start;
}

double OursRandom(LcUFileURLImpl* engine, const std::u16string& url, const std::vector<uint64_t>& offsets) {
  double start = Now();
  LcUFileURLFile* file = engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE);
  if (!file) return -1;
  std::vector<uint8_t> piece(kPiece);
  for (size_t i = 0; i < offsets.size(); ++i) {
    if (i == 0)
      for (size_t k = 0; k < kAhead && k < offsets.size(); ++k) engine->PrepareRead(file, offsets[k], kPiece);
    else if (i + kAhead - 1 < offsets.size())
      engine->PrepareRead(file, offsets[i + kAhead - 1], kPiece);
    if (engine->Read(file, LcUFileURLImpl::eBLOCKING, offsets[i], piece.data(), kPiece) != 0) return -1;
  }
  engine->Close(file);
  return Now() - start;
}

struct Gdal {
  void* (*open)(const char*, const char*) = nullptr;
  int (*seek)(void*, uint64_t, int) = nullptr;
  size_t (*read)(void*, size_t, size_t, void*) = nullptr;
  int (*close)(void*) = nullptr;
  void (*config)(const char*, const char*) = nullptr;

  bool Load() {
    void* library = dlopen("libgdal.so", RTLD_NOW);
    if (!library) library = dlopen("libgdal.so.32", RTLD_NOW);
    if (!library) return false;
    open = reinterpret_cast<decltype(open)>(dlsym(library, "VSIFOpenL"));
    seek = reinterpret_cast<decltype(seek)>(dlsym(library, "VSIFSeekL"));
    read = reinterpret_cast<decltype(read)>(dlsym(library, "VSIFReadL"));
    close = reinterpret_cast<decltype(close)>(dlsym(library, "VSIFCloseL"));
    config = reinterpret_cast<decltype(config)>(dlsym(library, "CPLSetConfigOption"));
    if (!open || !seek || !read || !close || !config) return false;
    // Its usual setting for single files: no listing of the folder.
    config("GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR");
    return true;
  }

  double Random(const std::u16string& url, const std::vector<uint64_t>& offsets) {
    double start = Now();
    void* file = open(("/vsicurl/" + Narrow(url)).c_str(), "rb");
    if (!file) return -1;
    std::vector<uint8_t> piece(kPiece);
    for (uint64_t at : offsets)
      if (seek(file, at, SEEK_SET) != 0 || read(piece.data(), 1, kPiece, file) != kPiece) return -1;
    close(file);
    return Now() - start;
  }
};

int CountGets(const TestHttpServer& server, size_t& seen) {
  auto log = server.AccessLog();
  int gets = 0;
  for (size_t i = seen; i < log.size(); ++i) gets += log[i].method == "GET";
  seen = log.size();
  return gets;
}
}  // namespace

int main() {
  TestHttpServer server;
  if (!server.Failure().empty()) {
    std::fprintf(stderr, "%s\n", server.Failure().c_str());
    return 1;
  }
  std::vector<uint8_t> data = TestHttpServer::Pattern(kSize);
  server.Serve("seq-ours.bin", data);
  for (const char* name : {"seq-curl.bin", "rnd-ours.bin", "rnd-gdal.bin", "lat-seq-ours.bin", "lat-seq-curl.bin",
                           "lat-rnd-ours.bin", "lat-rnd-gdal.bin"})
    server.Link(name, "seq-ours.bin");
  data.clear();
  data.shrink_to_fit();
  std::vector<uint64_t> offsets(kReads);
  std::mt19937_64 random(2026);
  for (uint64_t& at : offsets) at = random() % (kSize - kPiece);

  LcUString folder;
  LcUSysFile::MakeTempFolder(folder);
  LcUSysFile::SetTempFolderOverride(folder.Get());
  if (!LcUFileURL::Initialize()) return 1;
  LcUFileURLImpl* engine = LcUFileURL::GetInstance();
  Gdal gdal;
  bool haveGdal = gdal.Load();
  curl_global_init(CURL_GLOBAL_DEFAULT);
  size_t seen = 0;
  CountGets(server, seen);

  for (bool latency : {false, true}) {
    TestHttpServer::Route route = latency ? TestHttpServer::ePROXY : TestHttpServer::eDIRECT;
    server.SetRules(latency ? R"([{"latency_ms": 20}])" : "[]");
    std::string p = latency ? "lat-" : "";
    std::printf("== %s\n", latency ? "20 ms added to every answer" : "loopback");
    double ours = OursSequential(engine, server.Url(p + "seq-ours.bin", route));
    int oursGets = CountGets(server, seen);
    long oursPeak = PeakMegabytes();
    double curl = CurlWhole(server.Url(p + "seq-curl.bin", route));
    CountGets(server, seen);
    double mb = double(kSize) / (1 << 20);
    std::printf("  sequential: ours %.0f MB/s (%d GETs, peak RSS %ld MB), one curl GET %.0f MB/s: ratio %.2fx\n",
                mb / ours, oursGets, oursPeak, mb / curl, curl / ours);
    double oursRandom = OursRandom(engine, server.Url(p + "rnd-ours.bin", route), offsets);
    int randomGets = CountGets(server, seen);
    if (haveGdal) {
      double gdalRandom = gdal.Random(server.Url(p + "rnd-gdal.bin", route), offsets);
      int gdalGets = CountGets(server, seen);
      std::printf("  %d random 64 KiB reads: ours %.2f s (%d GETs), GDAL /vsicurl/ %.2f s (%d GETs): ratio %.2fx\n",
                  kReads, oursRandom, randomGets, gdalRandom, gdalGets, gdalRandom / oursRandom);
    } else {
      std::printf("  %d random 64 KiB reads: ours %.2f s (%d GETs); GDAL not found, no ratio\n", kReads, oursRandom,
                  randomGets);
    }
  }
  std::printf("peak resident memory of the whole run: %ld MB\n", PeakMegabytes());
  LcUFileURL::Terminate();
  LcUSysFile::SetTempFolderOverride(nullptr);
  LcUSysFile::Remove(folder.Get(), true, true);
  return 0;
}
