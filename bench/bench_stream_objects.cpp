// A graph of 200,000 small objects of three classes, 30% of the references
// shared, written then read in binary through memory: ours against
// Boost.Serialization's binary archive with object tracking, in one run.
// Prints each case's throughput ratio (ours / boost) at the end.
#include <benchmark/benchmark.h>

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/vector.hpp>
#include <sstream>
#include <vector>

#include "BenchRatioReporter.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
struct A {
  int32_t id = 0;
  double x = 0;
  template <class Archive>
  void serialize(Archive& ar, unsigned) {
    ar& id& x;
  }
};
struct B {
  int32_t id = 0;
  A* a = nullptr;
  template <class Archive>
  void serialize(Archive& ar, unsigned) {
    ar& id& a;
  }
};
struct C {
  int32_t id = 0;
  B* b = nullptr;
  A* a = nullptr;
  template <class Archive>
  void serialize(Archive& ar, unsigned) {
    ar& id& b& a;
  }
};

struct Graph {
  std::vector<C*> cs;
  std::vector<B*> bs;
  std::vector<A*> as;
  template <class Archive>
  void serialize(Archive& ar, unsigned) {
    ar& cs& bs& as;
  }
  void Clear() {
    for (C* c : cs) delete c;
    for (B* b : bs) delete b;
    for (A* a : as) delete a;
    cs.clear();
    bs.clear();
    as.clear();
  }
};

// 100,000 As, 60,000 Bs, 40,000 Cs; a reference is to an object already
// referred to three times in ten, otherwise to the next fresh one.
Graph& Sample() {
  static Graph g = [] {
    Graph g;
    uint32_t seed = 12345;
    auto next = [&] { return seed = seed * 1103515245u + 12345u, (seed >> 8) % 1000; };
    for (int i = 0; i < 100000; ++i) g.as.push_back(new A{i, i * 0.5});
    for (int i = 0; i < 60000; ++i) g.bs.push_back(new B{i, nullptr});
    for (int i = 0; i < 40000; ++i) g.cs.push_back(new C{i, nullptr, nullptr});
    size_t freshA = 0, freshB = 0;
    auto pickA = [&]() -> A* { return freshA > 0 && next() < 300 ? g.as[next() * freshA / 1000] : g.as[freshA++ % g.as.size()]; };
    auto pickB = [&]() -> B* { return freshB > 0 && next() < 300 ? g.bs[next() * freshB / 1000] : g.bs[freshB++ % g.bs.size()]; };
    for (C* c : g.cs) {
      c->b = pickB();
      c->a = pickA();
    }
    for (B* b : g.bs) b->a = pickA();
    return g;
  }();
  return g;
}

enum { eA = 0, eB = 1, eC = 2 };

int32_t WriteA(LcUStreamWriter* w, int32_t, void* o) {
  A* a = static_cast<A*>(o);
  w->WriteInt32(a->id);
  w->WriteDouble(a->x);
  return 1;
}
int32_t WriteB(LcUStreamWriter* w, int32_t, void* o) {
  B* b = static_cast<B*>(o);
  w->WriteInt32(b->id);
  w->WriteObject(b->a, eA);
  return 1;
}
int32_t WriteC(LcUStreamWriter* w, int32_t, void* o) {
  C* c = static_cast<C*>(o);
  w->WriteInt32(c->id);
  w->WriteObject(c->b, eB);
  w->WriteObject(c->a, eA);
  return 1;
}
void* Create(LcUStreamReader*, int32_t entry) {
  if (entry == eA) return new A;
  if (entry == eB) return new B;
  return new C;
}
int32_t ReadA(LcUStreamReader* r, int32_t, void* o) {
  A* a = static_cast<A*>(o);
  a->id = r->ReadInt32();
  a->x = r->ReadDouble();
  return 1;
}
int32_t ReadB(LcUStreamReader* r, int32_t, void* o) {
  B* b = static_cast<B*>(o);
  b->id = r->ReadInt32();
  b->a = static_cast<A*>(r->ReadObject(eA));
  return 1;
}
int32_t ReadC(LcUStreamReader* r, int32_t, void* o) {
  C* c = static_cast<C*>(o);
  c->id = r->ReadInt32();
  c->b = static_cast<B*>(r->ReadObject(eB));
  c->a = static_cast<A*>(r->ReadObject(eA));
  return 1;
}

LcUStreamFormat& Format() {
  static LcUStreamFormat f = [] {
    LcUStreamFormat f("Graph", 1);
    f.SetEntry(eA, WriteA, Create, ReadA, "A", -1);
    f.SetEntry(eB, WriteB, Create, ReadB, "B", -1);
    f.SetEntry(eC, WriteC, Create, ReadC, "C", -1);
    return f;
  }();
  return f;
}

template <typename T>
void WriteAll(LcUStreamWriter& w, const std::vector<T*>& objects, int32_t entry) {
  w.WriteInt32(int32_t(objects.size()));
  for (T* o : objects) w.WriteObject(o, entry);
}

template <typename T>
void ReadAll(LcUStreamReader& r, std::vector<T*>& objects, int32_t entry) {
  objects.resize(size_t(r.ReadInt32Checked()));
  for (T*& o : objects) o = static_cast<T*>(r.ReadObject(entry));
}

void OursWrite(LcUStreamBuffer& buffer, const Graph& g) {
  LcUStreamWriter w(&buffer);
  w.format = &Format();
  w.WriteBegin(true);
  WriteAll(w, g.cs, eC);
  WriteAll(w, g.bs, eB);
  WriteAll(w, g.as, eA);
  w.WriteEnd();
}

void OursWriteBench(benchmark::State& state) {
  for (auto _ : state) {
    LcUStreamBuffer buffer;
    OursWrite(buffer, Sample());
    benchmark::DoNotOptimize(buffer.GetData());
  }
  state.SetItemsProcessed(state.iterations() * 200000);
}

void BoostWriteBench(benchmark::State& state) {
  for (auto _ : state) {
    std::ostringstream out;
    {
      boost::archive::binary_oarchive archive(out);
      archive << Sample();
    }
    benchmark::DoNotOptimize(out.str().data());
  }
  state.SetItemsProcessed(state.iterations() * 200000);
}

void OursReadBench(benchmark::State& state) {
  LcUStreamBuffer buffer;
  OursWrite(buffer, Sample());
  for (auto _ : state) {
    Graph g;
    LcUStreamReader r(&buffer);
    r.OfferFormat(&Format());
    r.ReadBegin(true, true);
    ReadAll(r, g.cs, eC);
    ReadAll(r, g.bs, eB);
    ReadAll(r, g.as, eA);
    if (!r.ReadEnd(true) || g.as.size() != 100000 || g.cs[7]->b->a->id != Sample().cs[7]->b->a->id)
      state.SkipWithError("read back differs");
    state.PauseTiming();
    g.Clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * 200000);
}

void BoostReadBench(benchmark::State& state) {
  std::ostringstream out;
  {
    boost::archive::binary_oarchive archive(out);
    archive << Sample();
  }
  std::string bytes = out.str();
  for (auto _ : state) {
    Graph g;
    {
      std::istringstream in(bytes);
      boost::archive::binary_iarchive archive(in);
      archive >> g;
    }
    if (g.as.size() != 100000 || g.cs[7]->b->a->id != Sample().cs[7]->b->a->id) state.SkipWithError("read back differs");
    state.PauseTiming();
    g.Clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * 200000);
}
}  // namespace

int main(int argc, char** argv) {
  LcUStream::Initialize();
  benchmark::RegisterBenchmark("ours/write_graph", OursWriteBench);
  benchmark::RegisterBenchmark("boost/write_graph", BoostWriteBench);
  benchmark::RegisterBenchmark("ours/read_graph", OursReadBench);
  benchmark::RegisterBenchmark("boost/read_graph", BoostReadBench);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("boost", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"write_graph", "read_graph"});
  benchmark::Shutdown();
  return 0;
}
