#include "foundation/LcUPage.h"

#include "foundation/LcUError.h"
#include "foundation/LcULock.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUPageOutProgress.h"
#include "foundation/LcUPageState.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysMemory.h"

LcUComponent LcUPage::component;
LcUPageState pageState;

namespace {
constexpr uint64_t kMB = 1 << 20;

const LcUPage::Machine kSystem = {LcUSysMemory::GetTotalPhysical, LcUSysMemory::GetTotalVirtual,
                                  LcUSysMemory::CalcProcessAddressSpaceLimit,
                                  LcUSysMemory::GetProcessPrivateMemoryUsage, LcUMemory::GetTotalBytes};
LcUPage::Machine machine = kSystem;

class LcUPageOutProgressHardMemoryLimit : public LcUPageOutProgress {
public:
  int32_t Check(int32_t flag) override {
    return flag && pageState.machine.processUsage() < pageState.hardLimit;
  }
};

class LcUPageOutProgressAllocMemoryLimit : public LcUPageOutProgress {
public:
  int32_t Check(int32_t) override { return pageState.machine.allocatorTotal() < pageState.allocLowThreshold; }
};

class LcUPageOutProgressStressTest : public LcUPageOutProgress {
public:
  int32_t Check(int32_t) override { return 0; }
};

bool InUnitInterval(double ratio) {
  return ratio > 0.0 && ratio < 1.0;
}
}  // namespace

uint64_t LcUPageState::Band(uint64_t limit, double ratio, uint64_t margin) {
  uint64_t product = uint64_t(double(limit) * ratio);
  if (margin > limit) return product;
  uint64_t less = limit - margin;
  return product > less ? product : less;
}

void LcUPageState::ComputeAllocThresholds() {
  allocHighThreshold = Band(allocLimit, allocHighRatio, allocHighMargin);
  allocLowThreshold = Band(allocLimit, allocLowRatio, allocLowMargin);
}

void LcUPageState::ComputeProcessBands() {
  hardLimit = Band(processLimit, hardRatio, hardMargin);
  softLimit = Band(processLimit, softRatio, softMargin);
  if (fixedAllocLimit) return;
  allocLimit = hardLimit;
  limitClamped = false;
  ComputeAllocThresholds();
}

bool LcUPage::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUPage") != 1) return true;
  LcULock::Initialize();
  LcUSysMemory::Initialize();
  // Its lists and progress objects live on the allocator it watches.
  LcUMemory::Initialize();
  LcUPageState& s = pageState;
  s = LcUPageState();
  s.machine = machine;
  s.totalPhysical = s.machine.totalPhysical();
  s.totalVirtual = s.machine.totalVirtual();
  s.memoryLimit = s.totalPhysical < 128 * kMB ? s.totalPhysical / 2 : s.totalPhysical - 64 * kMB;
  s.hardProgress = new LcUPageOutProgressHardMemoryLimit;
  s.allocProgress = new LcUPageOutProgressAllocMemoryLimit;
  s.stressProgress = new LcUPageOutProgressStressTest;
  CalcDefaultProcessMemoryLimit();
  s.ComputeAllocThresholds();
  return s.hardProgress && s.allocProgress && s.stressProgress;
}

void LcUPage::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUPageState& s = pageState;
  s.pageOuts.Free();
  s.observers.Free();
  delete s.hardProgress;
  delete s.allocProgress;
  delete s.stressProgress;
  s = LcUPageState();
  LcUMemory::Terminate();
  LcUSysMemory::Terminate();
  LcULock::Terminate();
}

void LcUPage::SetMachine(const Machine* next) {
  machine = next ? *next : kSystem;
}

void LcUPage::CalcDefaultProcessMemoryLimit() {
  LcUPageState& s = pageState;
  s.addressSpaceLimit = s.machine.addressSpaceLimit();
  LogUsage();
  const char* line;
  if (s.externalProcessLimit) {
    s.processLimit = s.externalProcessLimit;
    line = "LcUPage::CalcDefaultProcessMemoryLimit External %d MB (%d Memory, %d Address Space)\n";
  } else {
    s.processLimit = GetMachineLimit();
    line = "LcUPage::CalcDefaultProcessMemoryLimit %d MB (%d Memory, %d Address Space)\n";
  }
  LcUError::LogF(line, int(s.processLimit >> 20), int(s.memoryLimit >> 20), int(s.addressSpaceLimit >> 20));
  s.ComputeProcessBands();
}

void LcUPage::SetAllocLimit(uint64_t bytes) {
  LcUPageState& s = pageState;
  s.fixedAllocLimit = bytes != 0;
  if (bytes) {
    s.allocLimit = bytes;
    s.ComputeAllocThresholds();
  } else {
    s.ComputeProcessBands();
  }
}

void LcUPage::SetAllocLowRatio(double ratio) {
  pageState.allocLowRatio = InUnitInterval(ratio) ? ratio : 0.8;
  pageState.ComputeAllocThresholds();
}

void LcUPage::SetAllocHighRatio(double ratio) {
  pageState.allocHighRatio = InUnitInterval(ratio) ? ratio : 0.9;
  pageState.ComputeAllocThresholds();
}

void LcUPage::SetAllocLowMargin(uint64_t bytes) {
  pageState.allocLowMargin = bytes ? bytes : 10 * kMB;
  pageState.ComputeAllocThresholds();
}

void LcUPage::SetAllocHighMargin(uint64_t bytes) {
  pageState.allocHighMargin = bytes ? bytes : 5 * kMB;
  pageState.ComputeAllocThresholds();
}

void LcUPage::SetSoftRatio(double ratio) {
  pageState.softRatio = InUnitInterval(ratio) ? ratio : 0.8;
  pageState.ComputeProcessBands();
}

void LcUPage::SetHardRatio(double ratio) {
  pageState.hardRatio = InUnitInterval(ratio) ? ratio : 0.9;
  pageState.ComputeProcessBands();
}

void LcUPage::SetSoftMargin(uint64_t bytes) {
  pageState.softMargin = bytes ? bytes : 20 * kMB;
  pageState.ComputeProcessBands();
}

void LcUPage::SetHardMargin(uint64_t bytes) {
  pageState.hardMargin = bytes ? bytes : 10 * kMB;
  pageState.ComputeProcessBands();
}

void LcUPage::SetMemoryLimitRatio(double ratio) {
  pageState.memoryLimit = uint64_t(double(pageState.totalPhysical) * ratio);
  CalcDefaultProcessMemoryLimit();
}

void LcUPage::SetExternalProcessLimit(uint64_t bytes) {
  pageState.externalProcessLimit = bytes;
  CalcDefaultProcessMemoryLimit();
}

void LcUPage::SetStressTest(bool on) {
  pageState.stressTest = on;
}

uint64_t LcUPage::GetTotalPhysical() { return pageState.totalPhysical; }
uint64_t LcUPage::GetTotalVirtual() { return pageState.totalVirtual; }
uint64_t LcUPage::GetTotalPhysicalMB() { return pageState.totalPhysical >> 20; }
uint64_t LcUPage::GetTotalVirtualMB() { return pageState.totalVirtual >> 20; }
uint64_t LcUPage::GetMemoryLimit() { return pageState.memoryLimit; }
uint64_t LcUPage::GetAddressSpaceLimit() { return pageState.addressSpaceLimit; }
uint64_t LcUPage::GetMachineLimit() {
  return pageState.memoryLimit < pageState.addressSpaceLimit ? pageState.memoryLimit : pageState.addressSpaceLimit;
}
uint64_t LcUPage::GetExternalProcessLimit() { return pageState.externalProcessLimit; }
uint64_t LcUPage::GetProcessLimit() { return pageState.processLimit; }
uint64_t LcUPage::GetHardLimit() { return pageState.hardLimit; }
uint64_t LcUPage::GetSoftLimit() { return pageState.softLimit; }
double LcUPage::GetHardRatio() { return pageState.hardRatio; }
uint64_t LcUPage::GetHardMargin() { return pageState.hardMargin; }
double LcUPage::GetSoftRatio() { return pageState.softRatio; }
uint64_t LcUPage::GetSoftMargin() { return pageState.softMargin; }
uint64_t LcUPage::GetAllocLimit() { return pageState.allocLimit; }
uint64_t LcUPage::GetAllocHighThreshold() { return pageState.allocHighThreshold; }
uint64_t LcUPage::GetAllocLowThreshold() { return pageState.allocLowThreshold; }
double LcUPage::GetAllocHighRatio() { return pageState.allocHighRatio; }
uint64_t LcUPage::GetAllocHighMargin() { return pageState.allocHighMargin; }
double LcUPage::GetAllocLowRatio() { return pageState.allocLowRatio; }
uint64_t LcUPage::GetAllocLowMargin() { return pageState.allocLowMargin; }
bool LcUPage::IsAllocLimitFixed() { return pageState.fixedAllocLimit; }
bool LcUPage::IsLimitClamped() { return pageState.limitClamped; }
uint64_t LcUPage::GetLastUsage() { return pageState.lastUsage; }
bool LcUPage::IsOutOfMemory() { return pageState.outOfMemory; }
bool LcUPage::IsStressTest() { return pageState.stressTest; }
int32_t LcUPage::GetPageOutDepth() { return pageState.pageOutDepth; }

bool LcUPage::IsAddressSpaceBound() {
  const LcUPageState& s = pageState;
  return s.addressSpaceLimit < (s.externalProcessLimit ? s.processLimit : s.memoryLimit);
}

void LcUPage::SetPageFileCorrupt(const char* text) {
  LcUError::LogF("Page file corrupt: %s\n", text ? text : "");
  pageState.pageFileError = text ? text : "";
}

const char* LcUPage::GetPageFileError() {
  return pageState.pageFileError.Get() ? pageState.pageFileError.Get() : "";
}

void LcUPage::ClearOutOfMemory() {
  pageState.outOfMemory = false;
}

void LcUPage::SetOutOfMemory() {
  pageState.outOfMemory = true;
}
