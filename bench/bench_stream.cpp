// Adler-32 through LcUChecksum against zlib and libdeflate, and one million
// mixed values written then read in binary through a memory buffer against
// cereal's binary archive, all in one run. Prints each case's throughput
// ratio (ours / peer) at the end.
#include <benchmark/benchmark.h>
#include <libdeflate.h>
#include <zlib.h>

#include <cereal/archives/binary.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "foundation/LcUChecksum.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
std::vector<uint8_t> Bytes(size_t size) {
  std::vector<uint8_t> bytes(size);
  uint32_t x = 2463534242u;
  for (uint8_t& b : bytes) {
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    b = uint8_t(x);
  }
  return bytes;
}

void OursAdler(benchmark::State& state, size_t size) {
  std::vector<uint8_t> bytes = Bytes(size);
  for (auto _ : state) {
    LcUChecksum checksum;
    checksum.Add(bytes.data(), uint32_t(bytes.size()));
    benchmark::DoNotOptimize(checksum.GetResult());
  }
  state.SetBytesProcessed(int64_t(state.iterations() * size));
}

void ZlibAdler(benchmark::State& state, size_t size) {
  std::vector<uint8_t> bytes = Bytes(size);
  for (auto _ : state) benchmark::DoNotOptimize(adler32(1, bytes.data(), uInt(bytes.size())));
  state.SetBytesProcessed(int64_t(state.iterations() * size));
}

void DeflateAdler(benchmark::State& state, size_t size) {
  std::vector<uint8_t> bytes = Bytes(size);
  for (auto _ : state) benchmark::DoNotOptimize(libdeflate_adler32(1, bytes.data(), bytes.size()));
  state.SetBytesProcessed(int64_t(state.iterations() * size));
}

// One record of the mix: scalars, a small array and a string, as a
// settings or scene file holds them.
struct Record {
  int32_t id;
  uint8_t flags;
  double weight;
  uint64_t stamp;
  int16_t level;
  std::vector<float> point;
  std::string name;

  template <class Archive>
  void serialize(Archive& archive) {
    archive(id, flags, weight, stamp, level, point, name);
  }
};

const std::vector<Record>& Records() {
  // 1,000,000 values: 7 of each record's 10 are scalars, the array and the string.
  static const std::vector<Record> records = [] {
    std::vector<Record> r(100000);
    for (size_t i = 0; i < r.size(); ++i)
      r[i] = {int32_t(i), uint8_t(i), i * 0.25, i * 1000003ull, int16_t(i), {float(i), 1.0f, -2.0f},
              "item" + std::to_string(i)};
    return r;
  }();
  return records;
}
constexpr int64_t kValues = 1000000;

void WriteOurs(LcUStreamWriter& w, const std::vector<Record>& records) {
  for (const Record& r : records) {
    w.WriteInt32(r.id);
    w.WriteNat8(r.flags);
    w.WriteDouble(r.weight);
    w.WriteNat64(r.stamp);
    w.WriteInt16(r.level);
    w.WriteInt32(int32_t(r.point.size()));
    w.WriteSingleArray(r.point.data(), uint32_t(r.point.size()));
    w.WriteString(r.name.c_str(), int32_t(r.name.size()));
  }
}

void ReadOurs(LcUStreamReader& rd, std::vector<Record>& records) {
  LcUStringA text;
  for (Record& r : records) {
    r.id = rd.ReadInt32();
    r.flags = rd.ReadNat8();
    r.weight = rd.ReadDouble();
    r.stamp = rd.ReadNat64();
    r.level = rd.ReadInt16();
    r.point.resize(uint32_t(rd.ReadInt32Checked(64)));
    rd.ReadSingleArray(r.point.data(), uint32_t(r.point.size()));
    rd.ReadString(text);
    r.name.assign(text.Get() ? text.Get() : "", size_t(text.Length()));
  }
}

void OursWrite(benchmark::State& state) {
  const std::vector<Record>& records = Records();
  for (auto _ : state) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer);
    writer.WriteBegin(true);
    WriteOurs(writer, records);
    if (!writer.WriteEnd()) state.SkipWithError("write failed");
    benchmark::DoNotOptimize(buffer.GetData());
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

void CerealWrite(benchmark::State& state) {
  const std::vector<Record>& records = Records();
  for (auto _ : state) {
    std::ostringstream out;
    {
      cereal::BinaryOutputArchive archive(out);
      for (const Record& r : records) archive(r);
    }
    benchmark::DoNotOptimize(out.str().data());
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

void OursRead(benchmark::State& state) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  writer.WriteBegin(true);
  WriteOurs(writer, Records());
  writer.WriteEnd();
  std::vector<Record> records(Records().size());
  for (auto _ : state) {
    LcUStreamReader reader(&buffer);
    reader.ReadBegin(true, false);
    ReadOurs(reader, records);
    if (!reader.ReadEnd(true)) state.SkipWithError("read failed");
  }
  if (records.back().name != Records().back().name) state.SkipWithError("read back differs");
  state.SetItemsProcessed(state.iterations() * kValues);
}

void CerealRead(benchmark::State& state) {
  std::ostringstream out;
  {
    cereal::BinaryOutputArchive archive(out);
    for (const Record& r : Records()) archive(r);
  }
  std::string bytes = out.str();
  std::vector<Record> records(Records().size());
  for (auto _ : state) {
    std::istringstream in(bytes);
    cereal::BinaryInputArchive archive(in);
    for (Record& r : records) archive(r);
  }
  if (records.back().name != Records().back().name) state.SkipWithError("read back differs");
  state.SetItemsProcessed(state.iterations() * kValues);
}
}  // namespace

int main(int argc, char** argv) {
  LcUStream::Initialize();
  for (size_t size : {size_t(64) << 10, size_t(16) << 20}) {
    std::vector<uint8_t> bytes = Bytes(size);
    LcUChecksum checksum;
    checksum.Add(bytes.data(), uint32_t(size));
    uint32_t ours = checksum.GetResult();
    if (ours != adler32(1, bytes.data(), uInt(size)) || ours != libdeflate_adler32(1, bytes.data(), size)) {
      std::fprintf(stderr, "Adler-32 results differ\n");
      return 1;
    }
    std::string name = size < (1 << 20) ? "adler32_64KiB" : "adler32_16MiB";
    benchmark::RegisterBenchmark(("ours/" + name).c_str(), OursAdler, size);
    benchmark::RegisterBenchmark(("zlib/" + name).c_str(), ZlibAdler, size);
    benchmark::RegisterBenchmark(("libdeflate/" + name).c_str(), DeflateAdler, size);
  }
  benchmark::RegisterBenchmark("ours/write_1M_values", OursWrite);
  benchmark::RegisterBenchmark("cereal/write_1M_values", CerealWrite);
  benchmark::RegisterBenchmark("ours/read_1M_values", OursRead);
  benchmark::RegisterBenchmark("cereal/read_1M_values", CerealRead);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter bytesReporter("zlib", "bytes_per_second");
  benchmark::RunSpecifiedBenchmarks(&bytesReporter);
  bytesReporter.PrintRatios("zlib", {"adler32_64KiB", "adler32_16MiB"});
  bytesReporter.PrintRatios("libdeflate", {"adler32_64KiB", "adler32_16MiB"});
  bytesReporter.PrintRatios("cereal", {"write_1M_values", "read_1M_values"});
  benchmark::Shutdown();
  return 0;
}
