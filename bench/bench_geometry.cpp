// 4 x 4 products, 4 x 4 and 3 x 3 inverses and point transforms against
// Eigen on the same random inputs, in one run. Prints each case's throughput
// ratio (ours / Eigen) at the end. Affine 4 x 4 inverses are measured apart,
// against Eigen's affine transform inverse, as both take a shortcut there.
#include <benchmark/benchmark.h>

#include <Eigen/Dense>
#include <random>
#include <string>
#include <vector>

#include "BenchRatioReporter.h"
#include "geometry/LcLMatrix4.h"

namespace {
constexpr int kCount = 256;

// Well-conditioned general matrices (a dominant diagonal, a non-trivial
// fourth column), so every inverse takes its full path.
struct Inputs {
  std::vector<LcLMatrix4> ours4;
  std::vector<Eigen::Matrix4d> eigen4;
  std::vector<LcLMatrix3> ours3;
  std::vector<Eigen::Matrix3d> eigen3;
  std::vector<LcLPoint3f> oursPoints;
  std::vector<Eigen::Vector3d> eigenPoints;
  std::vector<LcLMatrix4> oursAffine;
  std::vector<Eigen::Affine3d> eigenAffine;

  Inputs() {
    std::mt19937_64 engine(7);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int i = 0; i < kCount; ++i) {
      LcLMatrix4 a;
      for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) a.m[r][c] = uniform(engine) + (r == c ? 8.0 : 0.0);
      }
      ours4.push_back(a);
      ours3.push_back(a.Linear());
      // Eigen's column vectors: the transpose of our row-vector matrix.
      Eigen::Matrix4d e;
      for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) e(c, r) = a.m[r][c];
      }
      eigen4.push_back(e);
      eigen3.push_back(e.topLeftCorner<3, 3>());
      // The same matrix with (0, 0, 0, 1) as fourth column.
      oursAffine.emplace_back(a.Linear(), a.Translation());
      Eigen::Affine3d t = Eigen::Affine3d::Identity();
      t.linear() = e.topLeftCorner<3, 3>();
      t.translation() = e.topRightCorner<3, 1>();
      eigenAffine.push_back(t);
      LcLPoint3f p(uniform(engine), uniform(engine), uniform(engine));
      oursPoints.push_back(p);
      eigenPoints.emplace_back(p.x, p.y, p.z);
    }
  }
};
const Inputs& TheInputs() {
  static const Inputs inputs;
  return inputs;
}

template <typename Body>
void Run(benchmark::State& state, Body body) {
  for (auto _ : state) {
    for (int i = 0; i < kCount; ++i) body(i);
  }
  state.SetItemsProcessed(int64_t(state.iterations()) * kCount);
}

void OursProduct4(benchmark::State& state) {
  const Inputs& in = TheInputs();
  Run(state, [&](int i) { benchmark::DoNotOptimize(in.ours4[i] * in.ours4[(i + 1) % kCount]); });
}
void EigenProduct4(benchmark::State& state) {
  const Inputs& in = TheInputs();
  Run(state, [&](int i) {
    Eigen::Matrix4d p = in.eigen4[(i + 1) % kCount] * in.eigen4[i];
    benchmark::DoNotOptimize(p);
  });
}
// The output lives outside the loop, as building it is no part of inverting.
void OursInverse4(benchmark::State& state) {
  const Inputs& in = TheInputs();
  LcLMatrix4 inverse;
  Run(state, [&](int i) {
    benchmark::DoNotOptimize(in.ours4[i].GetInverse(inverse));
    benchmark::DoNotOptimize(inverse);
  });
}
void EigenInverse4(benchmark::State& state) {
  const Inputs& in = TheInputs();
  Run(state, [&](int i) {
    Eigen::Matrix4d inverse = in.eigen4[i].inverse();
    benchmark::DoNotOptimize(inverse);
  });
}
void OursInverse3(benchmark::State& state) {
  const Inputs& in = TheInputs();
  LcLMatrix3 inverse;
  Run(state, [&](int i) {
    benchmark::DoNotOptimize(in.ours3[i].GetInverse(inverse));
    benchmark::DoNotOptimize(inverse);
  });
}
void EigenInverse3(benchmark::State& state) {
  const Inputs& in = TheInputs();
  Run(state, [&](int i) {
    Eigen::Matrix3d inverse = in.eigen3[i].inverse();
    benchmark::DoNotOptimize(inverse);
  });
}
void OursInverse4Affine(benchmark::State& state) {
  const Inputs& in = TheInputs();
  LcLMatrix4 inverse;
  Run(state, [&](int i) {
    benchmark::DoNotOptimize(in.oursAffine[i].GetInverse(inverse));
    benchmark::DoNotOptimize(inverse);
  });
}
void EigenInverse4Affine(benchmark::State& state) {
  const Inputs& in = TheInputs();
  Run(state, [&](int i) {
    Eigen::Affine3d inverse = in.eigenAffine[i].inverse(Eigen::Affine);
    benchmark::DoNotOptimize(inverse);
  });
}
void OursTransformPoint(benchmark::State& state) {
  const Inputs& in = TheInputs();
  const LcLMatrix4& m = in.ours4[0];
  Run(state, [&](int i) { benchmark::DoNotOptimize(m.TransformPoint(in.oursPoints[i])); });
}
void EigenTransformPoint(benchmark::State& state) {
  const Inputs& in = TheInputs();
  const Eigen::Matrix4d& m = in.eigen4[0];
  Run(state, [&](int i) {
    Eigen::Vector3d p = (m * in.eigenPoints[i].homogeneous()).hnormalized();
    benchmark::DoNotOptimize(p);
  });
}


}  // namespace

int main(int argc, char** argv) {
  benchmark::RegisterBenchmark("ours/product4", OursProduct4);
  benchmark::RegisterBenchmark("eigen/product4", EigenProduct4);
  benchmark::RegisterBenchmark("ours/inverse4", OursInverse4);
  benchmark::RegisterBenchmark("eigen/inverse4", EigenInverse4);
  benchmark::RegisterBenchmark("ours/inverse3", OursInverse3);
  benchmark::RegisterBenchmark("eigen/inverse3", EigenInverse3);
  benchmark::RegisterBenchmark("ours/inverse4_affine", OursInverse4Affine);
  benchmark::RegisterBenchmark("eigen/inverse4_affine", EigenInverse4Affine);
  benchmark::RegisterBenchmark("ours/transform_point", OursTransformPoint);
  benchmark::RegisterBenchmark("eigen/transform_point", EigenTransformPoint);
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("eigen", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"product4", "inverse4", "inverse3", "transform_point", "inverse4_affine"});
  benchmark::Shutdown();
  return 0;
}
