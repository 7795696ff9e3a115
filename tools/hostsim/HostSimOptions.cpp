#include "HostSimOptions.h"

#include <cctype>
#include <cmath>
#include <cstdlib>

#include "HostSimText.h"

const char* const HostSimOptions::kUsage =
    "usage: hostsim [--model FILE] [--addin PATH] [--clsid {GUID}] [--journal FILE|-]\n"
    "               [--state] [--state-file FILE] [--verbose] [--fail ROLE[.get|.put|.method][@N]=0xHHHHHHHH|null]...\n"
    "               [--quit-after N] [--quit-file PATH] [--timeout SECONDS]\n"
    "  --model       the model file; the built-in model without it\n"
    "  --addin       Linux: load this add-in module rather than the registered one\n"
    "  --clsid       the add-in's class; without it the first registered add-in\n"
    "                of the host's category that loads on start-up\n"
    "  --journal     every call the host receives, one line each\n"
    "  --state       print the host's state on exit\n"
    "  --state-file  rewrite the state into FILE after every message handled, and on exit\n"
    "  --verbose     one line per message handled: the active document, whether the camera\n"
    "                was applied, what is selected, and the first host call that failed\n"
    "  --fail        make a role fail with that HRESULT (or give null), on every call or the Nth\n"
    "  --quit-after  stop after N TrackBack messages\n"
    "  --quit-file   stop once PATH exists\n"
    "  --timeout     stop after SECONDS with exit code 3\n"
    "exit codes: 0 stopped as asked, 1 bad command line or model, 2 no add-in, 3 timeout,\n"
    "            4 another host is listening on the TrackBack channel\n";

namespace {
bool ReadPositive(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && !*end && std::isfinite(value) && value > 0;
}
}  // namespace

bool HostSimOptions::Parse(int argc, char** argv, HostSimOptions& options, std::string& error) {
  for (int i = 1; i < argc; ++i) {
    std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      options.help = true;
      return false;
    }
    if (option == "--state" || option == "--verbose") {
      (option == "--state" ? options.state : options.verbose) = true;
      continue;
    }
    std::string* text = option == "--model"        ? &options.model
                        : option == "--addin"      ? &options.addin
                        : option == "--journal"    ? &options.journal
                        : option == "--state-file" ? &options.stateFile
                        : option == "--quit-file"  ? &options.quitFile
                                                   : nullptr;
    bool valued = text || option == "--clsid" || option == "--fail" || option == "--quit-after" ||
                  option == "--timeout";
    if (!valued) {
      error = "unknown option \"" + option + "\"";
      return false;
    }
    if (i + 1 >= argc || !*argv[i + 1]) {
      error = option + " wants a value";
      return false;
    }
    std::string value = argv[++i];
    double number = 0;
    if (text) {
      *text = value;
    } else if (option == "--fail") {
      options.failures.push_back(value);
    } else if (option == "--clsid") {
      options.haveClsid = HostSimText::ReadGuid(value, options.clsid);
      if (!options.haveClsid) {
        error = "--clsid wants {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, not \"" + value + "\"";
        return false;
      }
    } else if (!ReadPositive(value, number) ||
               (option == "--quit-after" && (number != std::floor(number) || number > 1e9))) {
      error = option + " wants a positive " + (option == "--timeout" ? "number" : "count") + ", not \"" + value + "\"";
      return false;
    } else if (option == "--quit-after") {
      options.quitAfter = long(number);
    } else {
      options.timeout = number;
    }
  }
  return true;
}
