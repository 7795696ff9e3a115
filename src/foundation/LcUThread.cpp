#include "foundation/LcUThread.h"

#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUThread::component;

namespace {
// The platform values of priorities -3 to 3.
constexpr int32_t ePRIORITIES[] = {-15, -2, -1, 0, 1, 2, 15};

LcUCriticalSection countLock;
int32_t threadCount = 1;
uint32_t mainThreadId = 0;
int32_t processorCount = 1;

void Report(int32_t code, void* data, const char16_t* message) {
  LcUSysError::Post(LcUError::eERROR, &LcUThread::component, code, data, message);
}

// A thread left running or a failed wait is survived.
void Note(int32_t code, void* data, const char16_t* message) {
  LcUSysError::Note(LcUError::eERROR, &LcUThread::component, code, data, message);
}

void AddToCount(int32_t delta) {
  countLock.Lock();
  if (delta > 0 || threadCount > 1) threadCount += delta;
  countLock.Unlock();
}
}  // namespace

bool LcUThread::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUThread") != 1) return true;
  LcUSysError::InitSysError();
  countLock.Lock();
  threadCount = 1;
  countLock.Unlock();
  mainThreadId = LcUSysError::CurrentThreadId();
  processorCount = CountProcessors();
  return true;
}

void LcUThread::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) == 1) LcUSysError::TermSysError();
}

int32_t LcUThread::GetThreadCount() {
  if (component.initCount == 0) return 1;
  countLock.Lock();
  int32_t count = threadCount;
  countLock.Unlock();
  return count;
}

uint32_t LcUThread::GetMainThreadId() {
  return mainThreadId;
}

int32_t LcUThread::GetProcessorCount() {
  return processorCount;
}

LcUThread::~LcUThread() {
  if (!running) return;
  Note(2, this, u"LcUThread::~LcUThread - Thread still running");
  Release();
}

bool LcUThread::Create(LcUThreadFunction function, void* argument, int32_t priority) {
  if (priority < -3 || priority > 3) return false;
  AddToCount(1);
  running = Launch(function, argument, ePRIORITIES[priority + 3]);
  if (!running) {
    AddToCount(-1);
    Report(0, this, u"LcUThread::Create - Can't create thread");
  }
  return running;
}

bool LcUThread::WaitForCompletion() {
  bool joined = Join();
  if (!joined) Note(1, this, u"LcUThread::WaitForCompletion - Wait failed");
  running = false;
  AddToCount(-1);
  return joined;
}
