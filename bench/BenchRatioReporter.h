#pragma once
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// Collects each run's throughput by name and prints last, for every case,
// the ratio of "ours/<case>" to "<peer>/<case>" measured in the same run.
class BenchRatioReporter : public benchmark::ConsoleReporter {
public:
  BenchRatioReporter(std::string peer, std::string counter) : peer_(std::move(peer)), counter_(std::move(counter)) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      auto it = run.counters.find(counter_);
      // Cases that count items rather than bytes compare by items.
      if (it == run.counters.end()) it = run.counters.find("items_per_second");
      if (it != run.counters.end()) rates_[run.benchmark_name()] = it->second.value;
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void PrintRatios(const std::vector<std::string>& cases) const { PrintRatios(peer_, cases); }

  // For a benchmark with several peers.
  void PrintRatios(const std::string& peerName, const std::vector<std::string>& cases) const {
    std::printf("\nratio (ours / %s, throughput):\n", peerName.c_str());
    int width = 28;
    for (const std::string& name : cases) width = std::max(width, int(name.size()));
    for (const std::string& name : cases) {
      auto ours = rates_.find("ours/" + name);
      auto peer = rates_.find(peerName + "/" + name);
      if (ours == rates_.end() || peer == rates_.end() || peer->second <= 0) continue;
      // Three significant digits, so that a ratio far below 1 still shows.
      std::printf("  %-*s %6.3gx\n", width, name.c_str(), ours->second / peer->second);
    }
  }

private:
  std::string peer_;
  std::string counter_;
  std::map<std::string, double> rates_;
};
