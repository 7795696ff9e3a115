#include "TwfileProgress.h"

#include <cstdio>

#include "TwfileConsole.h"
#include "filestream/LcUFileURLImpl.h"

TwfileProgress::TwfileProgress(LcUFileURLImpl* engine, const char16_t* url, uint64_t total)
    : engine(engine), url(url), total(total), terminal(TwfileConsole::IsTerminal(stderr)),
      start(std::chrono::steady_clock::now()) {
  uint32_t blocks = 0;
  engine->GetDownloadState(url, &blocks, &cachedAtStart, nullptr);
  engine->SetObserver(this, nullptr);
}

TwfileProgress::~TwfileProgress() { engine->SetObserver(nullptr, nullptr); }

void TwfileProgress::OnStatus(void*, const LcUFileURLProgress&) { Show(false); }

void TwfileProgress::Finish() { Show(true); }

void TwfileProgress::Show(bool last) {
  int32_t tenth = total ? int32_t(done * 10 / total) : 10;
  if (!terminal && !last && tenth == lastTenth) return;
  lastTenth = tenth;
  uint32_t blocks = 0, local = 0;
  engine->GetDownloadState(url.Get(), &blocks, &local, nullptr);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  double rate = seconds > 0 ? double(done) / seconds / (1 << 20) : 0;
  uint32_t downloaded = local > cachedAtStart ? local - cachedAtStart : 0;
  std::fprintf(stderr, "%s%llu of %llu bytes (%3d%%), %.1f MB/s, blocks: %u from cache, %u downloaded%s",
               terminal ? "\r" : "", static_cast<unsigned long long>(done), static_cast<unsigned long long>(total),
               total ? int(done * 100 / total) : 100, rate, cachedAtStart, downloaded, terminal && !last ? "" : "\n");
  std::fflush(stderr);
}
