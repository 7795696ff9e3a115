// Round trips of TrackBack messages to the running host: writes one record
// and delivers its message N times, each delivery returning once the host
// has handled it. Prints the median and the 99th percentile in microseconds.
//   bench_veerback N DOCUMENT [ITEM]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "addin/LcOmTrackBackSender.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: bench_veerback N DOCUMENT [ITEM]\n", stderr);
    return 1;
  }
  int count = std::atoi(argv[1]);
  LcUString document, item, recordPath, itemPath;
  LcUString::UTF8ToUTF16(argv[2], -1, document);
  LcOmTrackBackRecord record;
  record.setDocumentPath(document.Get());
  record.setItemFilePath(nullptr);
  record.hasItem = 0;
  record.camera.position = LcLPoint3f(120.0, -80.0, 60.0);
  record.camera.rotation = LcLRotation(0.4892656, 0.261847, 0.392538, 0.7334639);
  record.camera.nearDistance = 10.0;
  record.camera.farDistance = 300.0;
  if (!LcOmTrackBackSender::GetRecordPath(recordPath) || !LcOmTrackBackSender::GetItemFilePath(itemPath)) return 1;
  if (argc > 3) {
    LcUString::UTF8ToUTF16(argv[3], -1, item);
    if (!LcOmTrackBackSender::WriteItemFile(itemPath.Get(), item.Get())) return 1;
    record.setItemFilePath(itemPath.Get());
    record.hasItem = 1;
  }
  if (count < 1 || !LcOmTrackBackSender::WriteRecord(recordPath.Get(), record)) return 1;

  std::vector<double> micros;
  for (int i = 0; i < count; ++i) {
    auto start = std::chrono::steady_clock::now();
    if (LcOmTrackBackSender::Deliver() != LcOmTrackBackSender::eTAKEN) {
      std::fputs("bench_veerback: no listener took the message\n", stderr);
      return 2;
    }
    micros.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(micros.begin(), micros.end());
  std::printf("%.1f %.1f\n", micros[micros.size() / 2], micros[std::min(micros.size() - 1, micros.size() * 99 / 100)]);
  return 0;
}
