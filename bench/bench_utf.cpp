// UTF-8 <-> UTF-16 conversion against glibc's iconv on the same inputs, in
// one run. Prints each case's throughput ratio (ours / iconv) at the end.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <cstdio>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "foundation/LcUString.h"

namespace {
std::string MakeText(bool mixed, size_t bytes) {
  static const char* const kWords[] = {"Gr\xC3\xBC\xC3\x9F" "e", "ma\xC3\xB1" "ana", "caf\xC3\xA9",
                                       "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "\xE4\xB8\xAD\xE6\x96\x87",
                                       "\xEA\xB0\x80\xEB\x82\x98", "Stra\xC3\x9F" "e", "\xC3\xA0 la"};
  static const char* const kAscii[] = {"assembly", "camera", "select", "document", "view", "part"};
  std::string text;
  size_t i = 0;
  while (text.size() < bytes) {
    std::string word = mixed ? kWords[i % 8] : kAscii[i % 6];
    if (text.size() + word.size() + 1 > bytes) word = std::string(bytes - text.size(), 'x');
    text += word;
    if (text.size() < bytes) text += ' ';
    ++i;
  }
  return text;
}

struct Case {
  const char* name;
  bool mixed;
  size_t bytes;
};
const Case kCases[] = {{"ascii_1MiB", false, 1 << 20}, {"ascii_64B", false, 64},
                       {"mixed_1MiB", true, 1 << 20}, {"mixed_64B", true, 64}};

std::u16string ToUTF16(const std::string& text) {
  LcUString wide;
  LcUString::UTF8ToUTF16(text.c_str(), -1, wide);
  return std::u16string(wide.Get(), size_t(wide.Length()));
}

void OursToUTF16(benchmark::State& state, Case c) {
  std::string text = MakeText(c.mixed, c.bytes);
  LcUString target;
  for (auto _ : state) {
    bool ok = LcUString::UTF8ToUTF16(text.c_str(), int32_t(text.size()), target);
    benchmark::DoNotOptimize(ok);
    benchmark::DoNotOptimize(target.Get());
  }
  state.SetBytesProcessed(int64_t(state.iterations() * text.size()));
}

void OursToUTF8(benchmark::State& state, Case c) {
  std::u16string text = ToUTF16(MakeText(c.mixed, c.bytes));
  LcUStringA target;
  for (auto _ : state) {
    bool ok = LcUString::UTF16ToUTF8(text.c_str(), target, true);
    benchmark::DoNotOptimize(ok);
    benchmark::DoNotOptimize(target.Get());
  }
  state.SetBytesProcessed(int64_t(state.iterations() * text.size() * 2));
}

void IconvRun(benchmark::State& state, const char* to, const char* from, const char* input, size_t inBytes,
              size_t outBytes) {
  iconv_t cd = iconv_open(to, from);
  std::vector<char> out(outBytes);
  for (auto _ : state) {
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(input);
    size_t inLeft = inBytes;
    char* o = out.data();
    size_t outLeft = out.size();
    size_t r = iconv(cd, &in, &inLeft, &o, &outLeft);
    benchmark::DoNotOptimize(r);
    benchmark::DoNotOptimize(out.data());
  }
  iconv_close(cd);
  state.SetBytesProcessed(int64_t(state.iterations() * inBytes));
}

void IconvToUTF16(benchmark::State& state, Case c) {
  std::string text = MakeText(c.mixed, c.bytes);
  IconvRun(state, "UTF-16LE", "UTF-8", text.data(), text.size(), text.size() * 2 + 16);
}

void IconvToUTF8(benchmark::State& state, Case c) {
  std::u16string text = ToUTF16(MakeText(c.mixed, c.bytes));
  IconvRun(state, "UTF-8", "UTF-16LE", reinterpret_cast<const char*>(text.data()), text.size() * 2,
           text.size() * 3 + 16);
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& c : kCases) {
    std::string name = c.name;
    benchmark::RegisterBenchmark(("ours/UTF8ToUTF16/" + name).c_str(), OursToUTF16, c);
    benchmark::RegisterBenchmark(("iconv/UTF8ToUTF16/" + name).c_str(), IconvToUTF16, c);
    benchmark::RegisterBenchmark(("ours/UTF16ToUTF8/" + name).c_str(), OursToUTF8, c);
    benchmark::RegisterBenchmark(("iconv/UTF16ToUTF8/" + name).c_str(), IconvToUTF8, c);
  }
  benchmark::Initialize(&argc, argv);
  std::vector<std::string> cases;
  for (const char* direction : {"UTF8ToUTF16/", "UTF16ToUTF8/"})
    for (const Case& c : kCases) cases.push_back(direction + std::string(c.name));
  BenchRatioReporter reporter("iconv", "bytes_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios(cases);
  benchmark::Shutdown();
  return 0;
}
