// hostsim: a simulated Gearloft. It loads the Veerback add-in as Gearloft
// does, hands it a site over a model of documents, views and assemblies,
// runs the message loop in which TrackBack messages arrive, and journals
// every call the add-in makes on the host. See HostSimOptions.cpp for the
// command line and HostSimModelReader.h for the model file.
#include <chrono>
#include <cstdio>

#include "HostSim.h"
#include "HostSimAddIn.h"
#include "HostSimDefaultModel.h"
#include "HostSimLoop.h"
#include "HostSimModelReader.h"
#include "HostSimOptions.h"
#include "HostSimState.h"
#include "addin/LcOmTrackBackSender.h"

namespace {
enum { eSTOPPED = 0, eBAD_INPUT = 1, eNO_ADDIN = 2, eTIMED_OUT = 3, eCHANNEL_TAKEN = 4 };
constexpr int kWaitMs = 100;

int Fail(int code, const std::string& message) {
  std::fprintf(stderr, "hostsim: %s\n", message.c_str());
  return code;
}

bool Exists(const std::string& path) {
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file) std::fclose(file);
  return file != nullptr;
}

// Handles messages until one of the stop conditions holds.
int RunLoop(const HostSimOptions& options, HostSim& host, HostSimLoop& loop, const HostSimAddIn& addin) {
  auto start = std::chrono::steady_clock::now();
  long seen = host.journal.Count();
  while (true) {
    bool goOn = loop.Wait(addin, kWaitMs);
    host.EndMessage();
    if (host.journal.Count() != seen) {
      seen = host.journal.Count();
      if (!options.stateFile.empty() && !HostSimState::WriteFile(host, options.stateFile))
        std::fprintf(stderr, "hostsim: can't write the state file %s\n", options.stateFile.c_str());
    }
    // The add-in reads the main window first thing for every message.
    if (!goOn || (options.quitAfter && host.CallCount("ApplicationMainWindow") >= options.quitAfter) ||
        (!options.quitFile.empty() && Exists(options.quitFile)))
      return eSTOPPED;
    std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    if (options.timeout > 0 && elapsed.count() >= options.timeout)
      return Fail(eTIMED_OUT, "stopped by --timeout");
  }
}

int Run(const HostSimOptions& options, HostSimModel& model, HostSimJournal& journal) {
  // Taking the channel over would cut the first host off when this one ends.
  if (LcOmTrackBackSender::IsListenerRunning())
    return Fail(eCHANNEL_TAKEN, "another host is listening on the TrackBack channel; this one leaves it alone");
  HostSim host(model, journal);
  if (options.verbose) host.verbose = stdout;
  HostSimLoop loop;
  if (!loop.IsReady()) return Fail(eNO_ADDIN, "can't set up the host's thread for COM");
  host.mainWindow = loop.MainWindow();
  int code;
  {
    HostSimAddIn addin;
    std::string error;
    if (!addin.Load(options, error)) return Fail(eNO_ADDIN, error);
    HRESULT hr = addin.Server()->Activate(host.Site(), VARIANT_TRUE);
    if (FAILED(hr)) {
      char text[16];
      std::snprintf(text, sizeof(text), "0x%08X", unsigned(hr));
      return Fail(eNO_ADDIN, "the add-in's Activate failed: " + std::string(text));
    }
    std::printf("hostsim: add-in %s\nhostsim: ready\n", addin.Description().c_str());
    std::fflush(stdout);
    code = RunLoop(options, host, loop, addin);
    addin.Server()->Deactivate();
  }
  if (options.state) std::fputs(HostSimState::Text(host).c_str(), stdout);
  if (!options.stateFile.empty() && !HostSimState::WriteFile(host, options.stateFile))
    return Fail(eBAD_INPUT, "can't write the state file " + options.stateFile);
  return code;
}
}  // namespace

int main(int argc, char** argv) {
  HostSimOptions options;
  std::string error;
  if (!HostSimOptions::Parse(argc, argv, options, error)) {
    if (options.help) {
      std::fputs(HostSimOptions::kUsage, stdout);
      return eSTOPPED;
    }
    std::fprintf(stderr, "hostsim: %s\n%s", error.c_str(), HostSimOptions::kUsage);
    return eBAD_INPUT;
  }
  HostSimModel model;
  bool read = options.model.empty() ? HostSimModelReader::Read(HostSimDefaultModel::kText, model, error)
                                    : HostSimModelReader::ReadFile(options.model, model, error);
  if (!read) return Fail(eBAD_INPUT, error);
  for (const std::string& rule : options.failures)
    if (!model.failures.Add(rule, error)) return Fail(eBAD_INPUT, "--fail: " + error);
  HostSimJournal journal;
  if (options.journal.empty()) journal.Mute();
  if (!options.journal.empty() && !journal.Open(options.journal))
    return Fail(eBAD_INPUT, "can't write the journal " + options.journal);
  return Run(options, model, journal);
}
