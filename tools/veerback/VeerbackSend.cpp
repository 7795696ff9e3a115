#include <cstdio>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackSendOptions.h"
#include "addin/LcOmTrackBackSender.h"

int VeerbackCommands::Send(const std::vector<const char16_t*>& arguments) {
  VeerbackSendOptions options;
  std::string error;
  if (!options.Parse(arguments, error)) {
    std::fprintf(stderr, "veerback send: %s (see veerback help send)\n", error.c_str());
    return eBAD_INPUT;
  }
  if (!LcOmTrackBackSender::IsListenerRunning()) {
    std::fputs("veerback send: no Gearloft with the Veerback add-in is listening; nothing sent\n", stderr);
    return eNO_LISTENER;
  }
  LcUString recordPath;
  LcOmTrackBackSender::GetRecordPath(recordPath);
  switch (LcOmTrackBackSender::Send(options.record, options.itemText, options.timeoutMs)) {
    case LcOmTrackBackSender::eTAKEN:
      std::fputs("veerback send: taken by the listener\n", stdout);
      return eOK;
    case LcOmTrackBackSender::eNO_LISTENER:
      std::fputs("veerback send: the listener went away before it took the message\n", stderr);
      return eNO_LISTENER;
    case LcOmTrackBackSender::eBUSY:
      std::fprintf(stderr, "veerback send: another sender held the channel for %d ms; nothing sent\n",
                   options.timeoutMs);
      return eBUSY;
    case LcOmTrackBackSender::eTIMED_OUT:
      std::fprintf(stderr, "veerback send: the listener didn't take the message within %d ms\n", options.timeoutMs);
      return eTIMED_OUT;
    case LcOmTrackBackSender::eWRITE_FAILED:
      break;
  }
  std::fputs("veerback send: can't write the record or the item file beside it: ", stderr);
  PrintWide(stderr, recordPath.Get());
  std::fputs("\n", stderr);
  return eWRITE_FAILED;
}
