#include <cstdio>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackPlatform.h"
#include "addin/LcOmTrackBackSender.h"

int VeerbackCommands::Doctor() {
  bool good = true;
  std::puts("registration");
  good &= CheckRegistration();

  std::puts("record folder");
  LcUString record;
  if (Check(LcOmTrackBackSender::GetRecordPath(record), "the shared folder of the product line is known")) {
    LcUString folder(record);
    int32_t cut = folder.Length();
    while (cut > 0 && folder[cut - 1] != '\\' && folder[cut - 1] != '/') --cut;
    folder.SetLength(cut > 0 ? cut - 1 : 0);
    std::fputs("        ", stdout);
    PrintWide(stdout, folder.Get());
    std::fputs("\n", stdout);
    good &= Check(VeerbackPlatform::IsFolderWritable(folder.Get()), "the record folder exists and is writable");
  } else {
    good = false;
  }

  std::puts("listener");
  good &= Check(LcOmTrackBackSender::IsListenerRunning(), "a Gearloft with the Veerback add-in is listening");
  return good ? eOK : eFAILED;
}
