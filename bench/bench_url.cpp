// One million URLs of mixed shapes parsed, normalised and composed by
// LcUURL against libcurl's URL API on the same texts, in one run. Prints
// the throughput ratio (ours / libcurl) at the end.
#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <cstdio>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "filestream/LcUURL.h"

namespace {
const size_t kCount = 1000000;

// Shapes a file streaming session meets: plain and ported hosts, users,
// params, queries, fragments, encoded blanks, files on drives and roots.
std::string Shape(size_t i) {
  std::string n = std::to_string(i);
  switch (i % 10) {
    case 0: return "http://server" + n + ".example.com/models/part" + n + ".gam";
    case 1: return "https://cdn.example.com:8443/a/b/c/asm" + n + ".twz?rev=" + n;
    case 2: return "http://user" + n + ":secret@host/share/x%20y/" + n + ".bin#top";
    case 3: return "ftp://anon@ftp.example.org/pub/" + n + "/README";
    case 4: return "file:///c:/Projects/Gearbox/Shaft" + n + ".gam";
    case 5: return "file:///home/user/models/" + n + "/assembly.twz";
    case 6: return "HTTP://WWW.Example.COM:80/Index" + n + ".html;type=a?q=" + n;
    case 7: return "https://h/" + n + "/../up/./here%5Bx%5D";
    case 8: return "http://10.0.0." + std::to_string(i % 250) + ":8080/api/v1/files/" + n;
    default: return "https://example.net/deep/path/with/many/segments/" + n + "/file.dat#frag" + n;
  }
}

struct Texts {
  std::vector<std::string> narrow;
  std::vector<std::u16string> wide;
};

const Texts& AllTexts() {
  static const Texts texts = [] {
    Texts t;
    t.narrow.reserve(kCount);
    t.wide.reserve(kCount);
    for (size_t i = 0; i < kCount; ++i) {
      t.narrow.push_back(Shape(i));
      t.wide.emplace_back(t.narrow.back().begin(), t.narrow.back().end());
    }
    return t;
  }();
  return texts;
}

void Ours(benchmark::State& state) {
  const Texts& texts = AllTexts();
  // A session holds URLs of its own. Without a live block of a size, the
  // allocator hands that size's region back at every free, which only a
  // fresh process would meet.
  std::vector<LcUURL> session(1000);
  for (size_t i = 0; i < session.size(); ++i) session[i].Set(texts.wide[i].c_str(), true);
  LcUURL url;
  for (auto _ : state) {
    size_t total = 0;
    for (const std::u16string& text : texts.wide) {
      url.Set(text.c_str(), true);
      total += size_t(url.GetText().Length());
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(int64_t(state.iterations() * kCount));
}

void Curl(benchmark::State& state) {
  const Texts& texts = AllTexts();
  CURLU* handle = curl_url();
  for (auto _ : state) {
    size_t total = 0;
    for (const std::string& text : texts.narrow) {
      char* out = nullptr;
      if (curl_url_set(handle, CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME) == CURLUE_OK &&
          curl_url_get(handle, CURLUPART_URL, &out, 0) == CURLUE_OK) {
        total += std::char_traits<char>::length(out);
        curl_free(out);
      }
    }
    benchmark::DoNotOptimize(total);
  }
  curl_url_cleanup(handle);
  state.SetItemsProcessed(int64_t(state.iterations() * kCount));
}
}  // namespace

int main(int argc, char** argv) {
  LcUString::Initialize();
  curl_global_init(CURL_GLOBAL_DEFAULT);
  benchmark::RegisterBenchmark("ours/url_1M", Ours)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("libcurl/url_1M", Curl)->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("libcurl", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"url_1M"});
  benchmark::Shutdown();
  curl_global_cleanup();
  LcUString::Terminate();
  return 0;
}
