// 100,000 variant data elements of mixed tags written and read through the
// element stream on pugixml, against the same document built and walked
// with pugixml's own API, in one run. Prints the throughput ratio
// (ours / pugixml) of each direction at the end.
#include <benchmark/benchmark.h>

#include <pugixml.hpp>

#include <charconv>
#include <cstdlib>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "serial/LcUData.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"

namespace {
constexpr int kCount = 100000;

const std::vector<LcUData>& Values() {
  static const std::vector<LcUData> values = [] {
    std::vector<LcUData> v(kCount);
    for (int i = 0; i < kCount; ++i) {
      switch (i % 4) {
        case 0: v[i].SetFloat(i * 0.25); break;
        case 1: v[i].SetInt32(i); break;
        case 2: v[i].SetBool(i % 3 == 0); break;
        default: v[i].SetWString(u"a settings value"); break;
      }
    }
    return v;
  }();
  return values;
}

std::string OursWrite() {
  LcUXMLDOMStream* s = LcUXMLDOMStream::CreateWriteStream(nullptr, 441, 0, 0);
  s->BeginElement("values", 0);
  for (const LcUData& d : Values()) const_cast<LcUData&>(d).SerialiseXML(*s);
  s->EndElement("values");
  LcUStringA text;
  s->Save(text);
  LcUXMLDOMStream::DestroyStream(s);
  return text.Get();
}

// The same document by hand: the type word and the text of each value.
std::string PeerWrite() {
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("values");
  char number[64];
  for (const LcUData& d : Values()) {
    pugi::xml_node node = root.append_child("data");
    switch (d.GetTag()) {
      case LcUData::eFLOAT: {
        node.append_attribute("type").set_value("float");
        *std::to_chars(number, number + 63, d.GetFloat(), std::chars_format::fixed, 6).ptr = 0;
        node.text().set(number);
        break;
      }
      case LcUData::eINT32:
        node.append_attribute("type").set_value("int32");
        node.text().set(d.GetInt32());
        break;
      case LcUData::eBOOL:
        node.append_attribute("type").set_value("bool");
        node.text().set(d.GetBool() ? "true" : "false");
        break;
      default: {
        node.append_attribute("type").set_value("wstring");
        LcUStringA utf8;
        LcUString::UTF16ToUTF8(d.GetWString(), utf8, true);
        node.text().set(utf8.Get());
        break;
      }
    }
  }
  struct Writer : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
  } writer;
  doc.save(writer, "", pugi::format_raw | pugi::format_no_declaration);
  return writer.text;
}

void OursWriteBench(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OursWrite());
  state.SetItemsProcessed(state.iterations() * kCount);
}

void PeerWriteBench(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(PeerWrite());
  state.SetItemsProcessed(state.iterations() * kCount);
}

void OursReadBench(benchmark::State& state) {
  LcUString text;
  std::string utf8 = OursWrite();
  LcUString::UTF8ToUTF16(utf8.c_str(), int32_t(utf8.size()), text);
  std::vector<LcUData> read(kCount);
  for (auto _ : state) {
    LcUXMLDOMStream* s = LcUXMLDOMStream::CreateReadStream(text.Get(), 0);
    s->BeginElement("values", 0);
    for (LcUData& d : read) d.SerialiseXML(*s);
    LcUXMLDOMStream::DestroyStream(s);
  }
  if (!LcUData::Equal(read[1], Values()[1])) state.SkipWithError("read back differs");
  state.SetItemsProcessed(state.iterations() * kCount);
}

void PeerReadBench(benchmark::State& state) {
  std::string utf8 = PeerWrite();
  LcUString text;
  LcUString::UTF8ToUTF16(utf8.c_str(), int32_t(utf8.size()), text);
  std::vector<LcUData> read(kCount);
  for (auto _ : state) {
    // The same work from the same UTF-16 text: convert, parse, walk, convert the values.
    LcUStringA source;
    LcUString::UTF16ToUTF8(text.Get(), source, true);
    pugi::xml_document doc;
    doc.load_buffer(source.Get(), size_t(source.Length()));
    size_t i = 0;
    for (pugi::xml_node node : doc.child("values").children("data")) {
      const char* type = node.attribute("type").value();
      const char* value = node.text().get();
      LcUData& d = read[i++];
      if (type[0] == 'f') {
        d.SetFloat(std::strtod(value, nullptr));
      } else if (type[0] == 'i') {
        d.SetInt32(int32_t(std::strtol(value, nullptr, 10)));
      } else if (type[0] == 'b') {
        d.SetBool(value[0] == 't');
      } else {
        LcUString wide;
        LcUString::UTF8ToUTF16(value, -1, wide);
        d.SetWString(wide.Get());
      }
    }
  }
  if (!LcUData::Equal(read[1], Values()[1])) state.SkipWithError("read back differs");
  state.SetItemsProcessed(state.iterations() * kCount);
}
}  // namespace

int main(int argc, char** argv) {
  LcUXMLDOMStream::Initialize();
  LcUData::Initialize();
  LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get());
  benchmark::RegisterBenchmark("ours/write_100k_data", OursWriteBench);
  benchmark::RegisterBenchmark("pugixml/write_100k_data", PeerWriteBench);
  benchmark::RegisterBenchmark("ours/read_100k_data", OursReadBench);
  benchmark::RegisterBenchmark("pugixml/read_100k_data", PeerReadBench);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("pugixml", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"write_100k_data", "read_100k_data"});
  benchmark::Shutdown();
  return 0;
}
