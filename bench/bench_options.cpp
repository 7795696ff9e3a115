#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <random>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "options/LcUOption.h"
#include "serial/LcUData.h"

// 5,000 leaves: 10 groups of 10 subgroups of 50 options of four kinds, read
// and set by shuffled dotted path, and subgroups reset to their defaults.
namespace {
namespace pt = boost::property_tree;

struct Leaf {
  std::string path;
  int kind;  // 0 float, 1 int32, 2 boolean, 3 text
};

std::vector<Leaf> MakeLeaves() {
  std::vector<Leaf> leaves;
  for (int g = 0; g < 10; ++g)
    for (int s = 0; s < 10; ++s)
      for (int o = 0; o < 50; ++o)
        leaves.push_back({"group" + std::to_string(g) + ".sub" + std::to_string(s) + ".option" + std::to_string(o),
                          o % 4});
  std::shuffle(leaves.begin(), leaves.end(), std::mt19937(7));
  return leaves;
}

const std::vector<Leaf>& Leaves() {
  static const std::vector<Leaf> leaves = MakeLeaves();
  return leaves;
}

std::vector<std::string> Subgroups() {
  std::vector<std::string> paths;
  for (int g = 0; g < 10; ++g)
    for (int s = 0; s < 10; ++s) paths.push_back("group" + std::to_string(g) + ".sub" + std::to_string(s));
  std::shuffle(paths.begin(), paths.end(), std::mt19937(9));
  return paths;
}

void DefineOurs() {
  LcUData::Initialize();
  LcUOption::Initialize();
  for (const Leaf& leaf : Leaves()) {
    const char* p = leaf.path.c_str();
    switch (leaf.kind) {
      case 0: LcUOption::DefineFloat(p, 1.5); break;
      case 1: LcUOption::DefineInt32(p, 7); break;
      case 2: LcUOption::DefineBoolean(p, true); break;
      default: LcUOption::DefineWideString(p, u"text value"); break;
    }
  }
}

pt::ptree& Peer() {
  static pt::ptree tree = [] {
    pt::ptree t;
    for (const Leaf& leaf : Leaves()) {
      switch (leaf.kind) {
        case 0: t.put(leaf.path, 1.5); break;
        case 1: t.put(leaf.path, 7); break;
        case 2: t.put(leaf.path, true); break;
        default: t.put(leaf.path, std::string("text value")); break;
      }
    }
    return t;
  }();
  return tree;
}

void OursRead(benchmark::State& state) {
  double sum = 0;
  LcUString text;
  for (auto _ : state) {
    for (const Leaf& leaf : Leaves()) {
      const char* p = leaf.path.c_str();
      switch (leaf.kind) {
        case 0: sum += LcUOption::GetFloat(p); break;
        case 1: sum += LcUOption::GetInt32(p); break;
        case 2: sum += LcUOption::GetBoolean(p); break;
        default: LcUOption::GetWideString(p, text); sum += text.Length(); break;
      }
    }
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void PeerRead(benchmark::State& state) {
  double sum = 0;
  const pt::ptree& tree = Peer();
  for (auto _ : state) {
    for (const Leaf& leaf : Leaves()) {
      switch (leaf.kind) {
        case 0: sum += tree.get<double>(leaf.path); break;
        case 1: sum += tree.get<int>(leaf.path); break;
        case 2: sum += tree.get<bool>(leaf.path); break;
        default: sum += tree.get<std::string>(leaf.path).size(); break;
      }
    }
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void OursSet(benchmark::State& state) {
  int round = 0;
  for (auto _ : state) {
    ++round;
    for (const Leaf& leaf : Leaves()) {
      const char* p = leaf.path.c_str();
      switch (leaf.kind) {
        case 0: LcUOption::SetFloat(p, round * 0.5); break;
        case 1: LcUOption::SetInt32(p, round); break;
        case 2: LcUOption::SetBoolean(p, round & 1); break;
        default: LcUOption::SetWideString(p, round & 1 ? u"odd text" : u"even text"); break;
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void PeerSet(benchmark::State& state) {
  int round = 0;
  pt::ptree& tree = Peer();
  for (auto _ : state) {
    ++round;
    for (const Leaf& leaf : Leaves()) {
      switch (leaf.kind) {
        case 0: tree.put(leaf.path, round * 0.5); break;
        case 1: tree.put(leaf.path, round); break;
        case 2: tree.put(leaf.path, bool(round & 1)); break;
        default: tree.put(leaf.path, std::string(round & 1 ? "odd text" : "even text")); break;
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

// Each pass changes one option of every subgroup, then resets all 100.
void OursReset(benchmark::State& state) {
  static const std::vector<std::string> subgroups = Subgroups();
  int round = 0;
  for (auto _ : state) {
    ++round;
    for (const std::string& group : subgroups) {
      LcUOption::SetInt32((group + ".option1").c_str(), round);
      LcUOption::ResetToDefaults(group.c_str());
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t(subgroups.size()));
}

void PeerReset(benchmark::State& state) {
  static const std::vector<std::string> subgroups = Subgroups();
  static const pt::ptree defaults = Peer();
  pt::ptree& tree = Peer();
  int round = 0;
  for (auto _ : state) {
    ++round;
    for (const std::string& group : subgroups) {
      tree.put(group + ".option1", round);
      tree.put_child(group, defaults.get_child(group));
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t(subgroups.size()));
}
}  // namespace

int main(int argc, char** argv) {
  DefineOurs();
  Peer();
  benchmark::RegisterBenchmark("ours/read", OursRead);
  benchmark::RegisterBenchmark("property_tree/read", PeerRead);
  benchmark::RegisterBenchmark("ours/set", OursSet);
  benchmark::RegisterBenchmark("property_tree/set", PeerSet);
  benchmark::RegisterBenchmark("ours/reset", OursReset);
  benchmark::RegisterBenchmark("property_tree/reset", PeerReset);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("property_tree", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"read", "set", "reset"});
  LcUOption::Terminate();
  return 0;
}
