#include <cstdio>
#include <cstring>
#include <string>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackRecordPrint.h"
#include "addin/LcOmTrackBackRecord.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"

namespace {
int Refuse(const char16_t* path, const char* why) {
  std::fputs("veerback inspect: ", stderr);
  PrintWide(stderr, path);
  std::fprintf(stderr, "%s\n", why);
  return VeerbackCommands::eBAD_INPUT;
}
}  // namespace

int VeerbackCommands::Inspect(const std::vector<const char16_t*>& arguments) {
  bool json = false;
  const char16_t* path = nullptr;
  for (const char16_t* argument : arguments) {
    if (LcUString::Equal(argument, u"--json")) {
      json = true;
      continue;
    }
    LcUStringA text;
    LcUString::UTF16ToUTF8(argument, text, true);
    if (argument[0] == '-' || path) {
      std::fprintf(stderr, "veerback inspect: %s \"%s\" (see veerback help inspect)\n",
                   argument[0] == '-' ? "unknown option" : "stray argument", text.Get());
      return eBAD_INPUT;
    }
    path = argument;
  }
  if (!path) {
    std::fputs("veerback inspect: needs a FILE (see veerback help inspect)\n", stderr);
    return eBAD_INPUT;
  }
  if (LcUSysFile::IsDirectory(path)) return Refuse(path, " is a folder, not a record file");
  int64_t size = -1;
  LcUSysFileHandle file;
  if (!LcUSysFile::GetSize(path, size) ||
      !file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, LcUSysFileHandle::ePERMISSION_READ))
    return Refuse(path, ": no such file, or it can't be read");
  if (size != LcOmTrackBackRecord::eSIZE) {
    std::string why = " is " + std::to_string(size) + " bytes, not the 1728 of a record: the add-in " +
                      (size < LcOmTrackBackRecord::eSIZE ? "refuses it" : "reads the first 1728 and ignores the rest");
    return Refuse(path, why.c_str());
  }
  LcOmTrackBackRecord record;
  if (std::fread(static_cast<void*>(&record), sizeof(record), 1, file.GetStream()) != 1)
    return Refuse(path, ": can't be read whole");
  bool ended = json ? VeerbackRecordPrint::Json(record) : VeerbackRecordPrint::Text(record);
  return ended ? eOK : eBAD_INPUT;
}
