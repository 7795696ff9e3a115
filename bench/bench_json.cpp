// Parsing and printing a large cache description with the JSON tree,
// against nlohmann/json and RapidJSON's DOM on the same text in one run.
// Prints each case's throughput ratio (ours / peer) at the end.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonStream.h"

namespace {
// Objects of a few keys, with arrays of numbers and strings: the shape of
// a cache description of many files, about 20 MB.
const std::string& Document() {
  static const std::string text = [] {
    std::string t = "{\"Type\":\"LcUCacheInfo\",\"Version\":3,\"files\":[";
    char piece[256];
    uint32_t seed = 12345;
    auto next = [&seed] { return seed = seed * 1103515245u + 12345u; };
    for (int i = 0; t.size() < 20u * 1000 * 1000; ++i) {
      if (i) t += ',';
      std::snprintf(piece, sizeof piece,
                    "{\"url\":\"http://models.example.com/assembly/%d/part%u.glf\",\"size\":\"%u\","
                    "\"modified\":%.3f,\"valid\":%s,\"blocks\":[",
                    i, next() % 100000, next(), 1.7e9 + (next() % 100000) / 7.0, i % 3 ? "true" : "false");
      t += piece;
      for (int b = 0; b < 12; ++b) {
        std::snprintf(piece, sizeof piece, "%s%u", b ? "," : "", next() % 65536);
        t += piece;
      }
      t += "],\"weights\":[";
      for (int b = 0; b < 4; ++b) {
        std::snprintf(piece, sizeof piece, "%s%.6g", b ? "," : "", (next() % 1000000) / 997.0);
        t += piece;
      }
      t += "],\"tags\":[\"part\",\"cached\",\"level";
      t += char('0' + i % 10);
      t += "\"]}";
    }
    t += "]}";
    return t;
  }();
  return text;
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(int64_t(state.iterations() * Document().size()));
}

// Each parse case first runs once untimed, so that no case pays for the
// process's first touch of its heap.
void OursParse(benchmark::State& state) {
  const std::string& text = Document();
  LcUJsonNode::Delete(LcUJsonNode::Parse(text.c_str()));
  for (auto _ : state) {
    LcUJsonNode* root = LcUJsonNode::Parse(text.c_str());
    benchmark::DoNotOptimize(root);
    LcUJsonNode::Delete(root);
  }
  SetBytes(state);
}

void NlohmannParse(benchmark::State& state) {
  const std::string& text = Document();
  { nlohmann::json warm = nlohmann::json::parse(text); }
  for (auto _ : state) {
    nlohmann::json root = nlohmann::json::parse(text);
    benchmark::DoNotOptimize(root);
  }
  SetBytes(state);
}

void RapidJsonParse(benchmark::State& state) {
  const std::string& text = Document();
  {
    rapidjson::Document warm;
    warm.Parse(text.c_str());
  }
  for (auto _ : state) {
    rapidjson::Document root;
    root.Parse(text.c_str());
    benchmark::DoNotOptimize(root.HasParseError());
  }
  SetBytes(state);
}

void OursPrint(benchmark::State& state) {
  LcUJsonNode* root = LcUJsonNode::Parse(Document().c_str());
  for (auto _ : state) {
    char* text = LcUJsonNode::Print(root, false);
    benchmark::DoNotOptimize(text);
    LcUJsonNode::release(text);
  }
  LcUJsonNode::Delete(root);
  SetBytes(state);
}

void NlohmannPrint(benchmark::State& state) {
  nlohmann::json root = nlohmann::json::parse(Document());
  for (auto _ : state) {
    std::string text = root.dump();
    benchmark::DoNotOptimize(text.data());
  }
  SetBytes(state);
}

void RapidJsonPrint(benchmark::State& state) {
  rapidjson::Document root;
  root.Parse(Document().c_str());
  for (auto _ : state) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    root.Accept(writer);
    benchmark::DoNotOptimize(buffer.GetString());
  }
  SetBytes(state);
}
}  // namespace

int main(int argc, char** argv) {
  LcUJsonStream::Initialize();
  std::printf("document: %zu bytes\n", Document().size());
  benchmark::RegisterBenchmark("ours/parse", OursParse)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("nlohmann/parse", NlohmannParse)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("rapidjson/parse", RapidJsonParse)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("ours/print", OursPrint)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("nlohmann/print", NlohmannPrint)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("rapidjson/print", RapidJsonPrint)->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("nlohmann", "bytes_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios("nlohmann", {"parse", "print"});
  reporter.PrintRatios("rapidjson", {"parse", "print"});
  benchmark::Shutdown();
  LcUJsonStream::Terminate();
  return 0;
}
