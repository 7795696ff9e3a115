#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUData.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"

// 5,000 leaves: 10 groups of 10 subgroups of 50 options of four kinds, read
// and set by shuffled dotted path, subgroups reset to their defaults, and
// the whole tree written to XML text and read back.
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
  LcUXMLDOMStream::Initialize();
  LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get());
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
std::string OursXMLText() {
  LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateWriteStream(nullptr, 441, 0, 0);
  LcUOption::WriteToXML(LcUOption::GetPresentRoot(), *stream);
  LcUStringA text;
  stream->Save(text);
  LcUXMLDOMStream::DestroyStream(stream);
  return text.Get();
}

void OursWriteXML(benchmark::State& state) {
  size_t bytes = 0;
  for (auto _ : state) bytes += OursXMLText().size();
  benchmark::DoNotOptimize(bytes);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void PeerWriteXML(benchmark::State& state) {
  size_t bytes = 0;
  for (auto _ : state) {
    std::ostringstream out;
    pt::write_xml(out, Peer());
    bytes += out.str().size();
  }
  benchmark::DoNotOptimize(bytes);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void OursReadXML(benchmark::State& state) {
  LcUString text;
  LcUString::UTF8ToUTF16(OursXMLText().c_str(), -1, text);
  int32_t count = 0;
  for (auto _ : state) {
    LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(text.Get(), 0);
    LcUExOptionSet* set = LcUOption::ReadFromXML(*stream);
    LcUXMLDOMStream::DestroyStream(stream);
    count += set->GetCount();
    set->AddRef();
    set->Release();
  }
  benchmark::DoNotOptimize(count);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
}

void PeerReadXML(benchmark::State& state) {
  std::ostringstream out;
  pt::write_xml(out, Peer());
  const std::string text = out.str();
  size_t count = 0;
  for (auto _ : state) {
    std::istringstream in(text);
    pt::ptree tree;
    pt::read_xml(in, tree);
    count += tree.size();
  }
  benchmark::DoNotOptimize(count);
  state.SetItemsProcessed(state.iterations() * int64_t(Leaves().size()));
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
  benchmark::RegisterBenchmark("ours/write_xml", OursWriteXML);
  benchmark::RegisterBenchmark("property_tree/write_xml", PeerWriteXML);
  benchmark::RegisterBenchmark("ours/read_xml", OursReadXML);
  benchmark::RegisterBenchmark("property_tree/read_xml", PeerReadXML);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("property_tree", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"read", "set", "reset", "write_xml", "read_xml"});
  LcUXMLDOMStream::Terminate();
  return 0;
}
