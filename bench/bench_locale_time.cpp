// Natural ordering against glibc's strverscmp and ICU's numeric collation,
// and ISO times against strptime/timegm and gmtime_r/strftime.
#include <unicode/ucol.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "environment/LcUSysLocale.h"
#include "environment/LcUSysTime.h"

namespace {
constexpr size_t kNames = 200000;
constexpr size_t kTimes = 1000000;

struct Names {
  std::vector<std::string> narrow;
  std::vector<std::u16string> wide;
};

// File names as a drawing office makes them: words, revisions, part numbers
// with and without leading zeros, and extensions.
const Names& AllNames() {
  static const Names names = [] {
    static const char* const kWords[] = {"part", "Assembly", "gear", "shaft", "housing", "Drawing", "rev", "v"};
    static const char* const kExtensions[] = {".gam", ".gpt", ".dwg", ".pdf"};
    std::mt19937 random(20);
    Names n;
    for (size_t i = 0; i < kNames; ++i) {
      std::string name = kWords[random() % 8];
      name += std::to_string(random() % 2000);
      name += random() % 2 ? "_" : "-";
      name += kWords[random() % 8];
      name += random() % 3 ? std::to_string(random() % 100) : "0" + std::to_string(random() % 100);
      name += kExtensions[random() % 4];
      n.narrow.push_back(name);
      n.wide.emplace_back(name.begin(), name.end());
    }
    return n;
  }();
  return names;
}

template <typename Item, typename Less>
void SortAll(benchmark::State& state, const std::vector<Item>& items, Less less) {
  for (auto _ : state) {
    std::vector<const Item*> order;
    order.reserve(items.size());
    for (const Item& item : items) order.push_back(&item);
    std::sort(order.begin(), order.end(), less);
    benchmark::DoNotOptimize(order.data());
  }
  state.SetItemsProcessed(int64_t(state.iterations() * items.size()));
}

void OursSort(benchmark::State& state) {
  SortAll(state, AllNames().wide, [](const std::u16string* a, const std::u16string* b) {
    return LcUSysLocale::CompareNatural(a->c_str(), b->c_str(), false) < 0;
  });
}

void StrverscmpSort(benchmark::State& state) {
  SortAll(state, AllNames().narrow,
          [](const std::string* a, const std::string* b) { return strverscmp(a->c_str(), b->c_str()) < 0; });
}

void IcuSort(benchmark::State& state) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* collator = ucol_open("en_US", &status);
  ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("no ICU collator");
    return;
  }
  SortAll(state, AllNames().wide, [collator](const std::u16string* a, const std::u16string* b) {
    return ucol_strcoll(collator, a->c_str(), int32_t(a->size()), b->c_str(), int32_t(b->size())) == UCOL_LESS;
  });
  ucol_close(collator);
}

struct Times {
  std::vector<int64_t> seconds;
  std::vector<std::string> narrow;
  std::vector<std::u16string> wide;
};

const Times& AllTimes() {
  static const Times times = [] {
    std::mt19937_64 random(35);
    Times t;
    for (size_t i = 0; i < kTimes; ++i) {
      int64_t seconds = int64_t(random() % 4102444800ULL);  // up to 2100
      time_t value = time_t(seconds);
      tm parts{};
      gmtime_r(&value, &parts);
      char text[32];
      std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S", &parts);
      t.seconds.push_back(seconds);
      t.narrow.push_back(text);
      t.wide.emplace_back(t.narrow.back().begin(), t.narrow.back().end());
    }
    return t;
  }();
  return times;
}

void OursParse(benchmark::State& state) {
  const Times& times = AllTimes();
  for (auto _ : state) {
    int64_t total = 0;
    for (const std::u16string& text : times.wide) {
      int64_t time = 0;
      LcUSysTime::ParseISOTime(text.c_str(), time);
      total += time;
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(int64_t(state.iterations() * kTimes));
}

void LibcParse(benchmark::State& state) {
  const Times& times = AllTimes();
  for (auto _ : state) {
    int64_t total = 0;
    for (const std::string& text : times.narrow) {
      tm parts{};
      if (strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &parts)) total += int64_t(timegm(&parts));
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(int64_t(state.iterations() * kTimes));
}

void OursFormat(benchmark::State& state) {
  const Times& times = AllTimes();
  LcUString text;
  for (auto _ : state) {
    size_t total = 0;
    for (int64_t seconds : times.seconds) {
      LcUSysTime::FormatISOTime(seconds, text);
      total += size_t(text.Get()[18]);
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(int64_t(state.iterations() * kTimes));
}

void LibcFormat(benchmark::State& state) {
  const Times& times = AllTimes();
  char text[32];
  for (auto _ : state) {
    size_t total = 0;
    for (int64_t seconds : times.seconds) {
      time_t value = time_t(seconds);
      tm parts{};
      gmtime_r(&value, &parts);
      total += std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S", &parts);
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(int64_t(state.iterations() * kTimes));
}
}  // namespace

int main(int argc, char** argv) {
  LcUString::Initialize();
  benchmark::RegisterBenchmark("ours/sort_200k", OursSort)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("strverscmp/sort_200k", StrverscmpSort)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("icu/sort_200k", IcuSort)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("ours/iso_parse_1M", OursParse)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("libc/iso_parse_1M", LibcParse)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("ours/iso_format_1M", OursFormat)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("libc/iso_format_1M", LibcFormat)->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("strverscmp", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"sort_200k"});
  reporter.PrintRatios("icu", {"sort_200k"});
  reporter.PrintRatios("libc", {"iso_parse_1M", "iso_format_1M"});
  benchmark::Shutdown();
  LcUString::Terminate();
  return 0;
}
