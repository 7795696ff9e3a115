#include <cstdio>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackPlatform.h"
#include "addin/LcOmTrackBackSender.h"
#include "environment/LcUSysFile.h"

namespace {
// The record's folder: ok when writable, or not there yet but makeable,
// since the first send makes it.
bool CheckRecordFolder() {
  LcUString record;
  if (!Check(LcOmTrackBackSender::GetRecordPath(record), "the shared folder of the product line is known",
             "set HOME (and XDG_CONFIG_HOME if used) on Linux, or sign in with a user profile on Windows"))
    return false;
  LcUString folder;
  LcUSysFile::GetDirectory(record.Get(), &folder, nullptr);
  std::fputs("        ", stdout);
  PrintWide(stdout, folder.Get());
  std::fputs("\n", stdout);
  if (LcUSysFile::IsDirectory(folder.Get()))
    return Check(VeerbackPlatform::IsFolderWritable(folder.Get()), "the record folder is writable",
                 "give this user write access to the folder above");
  // The nearest folder that is there must let the first send make the rest.
  LcUString parent(folder);
  while (!parent.IsEmpty() && !LcUSysFile::IsDirectory(parent.Get())) {
    LcUString up;
    LcUSysFile::GetDirectory(parent.Get(), &up, nullptr);
    if (up.Length() >= parent.Length()) break;
    parent = up;
  }
  return Check(LcUSysFile::IsDirectory(parent.Get()) && VeerbackPlatform::IsFolderWritable(parent.Get()),
               "the record folder is not there yet; the first send makes it",
               "give this user write access to the folders on the way to the one above");
}
}  // namespace

int VeerbackCommands::Doctor() {
  std::puts("registration");
  bool good = CheckRegistration();
  std::puts("record folder");
  good &= CheckRecordFolder();
  std::puts("listener");
  bool listening = Check(LcOmTrackBackSender::IsListenerRunning(), "a Gearloft with the Veerback add-in is listening",
                         "start Gearloft (or hostsim) with the add-in registered, then try again");
  return !good ? eFAILED : listening ? eOK : eNO_LISTENER;
}
