#include "foundation/LcUThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>

#include "foundation/LcUSemaphore.h"

namespace {
struct StartRecord {
  LcUThreadFunction function;
  void* argument;
  int nice;
  bool started;
  LcUSemaphore ready;
};

// Windows priorities as nice values.
int NiceValue(int32_t platformPriority) {
  switch (platformPriority) {
    case -15: return 19;
    case -2: return 10;
    case -1: return 5;
    case 1: return -5;
    case 2: return -10;
    case 15: return -20;
    default: return 0;
  }
}

// Raising a priority needs a privilege most processes lack; without it the
// thread runs at the default.
bool SetNice(int nice) {
  if (nice == 0) return true;
  if (setpriority(PRIO_PROCESS, id_t(gettid()), nice) == 0) return true;
  return nice < 0 && (errno == EPERM || errno == EACCES);
}

// The thread takes its priority before it runs, as a suspended Windows
// thread would; Create waits for that.
void* Start(void* argument) {
  StartRecord* record = static_cast<StartRecord*>(argument);
  LcUThreadFunction function = record->function;
  void* functionArgument = record->argument;
  bool started = SetNice(record->nice);
  record->started = started;
  record->ready.Release();
  if (started) function(functionArgument);
  return nullptr;
}
}  // namespace

bool LcUThread::Launch(LcUThreadFunction function, void* argument, int32_t platformPriority) {
  StartRecord record{function, argument, NiceValue(platformPriority), false, {}};
  if (pthread_create(&handle, nullptr, Start, &record) != 0) return false;
  record.ready.Wait();
  if (!record.started) pthread_join(handle, nullptr);
  return record.started;
}

bool LcUThread::Join() {
  return pthread_join(handle, nullptr) == 0;
}

void LcUThread::Release() {
  pthread_detach(handle);
}

int32_t LcUThread::CountProcessors() {
  long count = sysconf(_SC_NPROCESSORS_ONLN);
  return count > 0 ? int32_t(count) : 1;
}
