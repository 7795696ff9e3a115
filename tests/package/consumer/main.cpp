// Builds a pick the way a viewer does and writes it where the add-in reads
// it, through the installed headers and libraries alone.
#include <cstdio>

#include "addin/LcOmTrackBackRecord.h"
#include "addin/LcOmTrackBackSender.h"
#include "foundation/LcUString.h"
#include "options/LcUOption.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  LcUString::Initialize();
  LcUString folder;
  LcUString::UTF8ToUTF16(argv[1], -1, folder);
  LcUString path(folder);
  path.Append(u"/record.bin");
  LcOmTrackBackRecord record;
  if (!record.setDocumentPath(u"C:\\models\\pump.asm") || !record.setItemFilePath(nullptr)) return 3;
  record.hasItem = 0;
  if (!LcOmTrackBackSender::WriteRecord(path.Get(), record)) return 3;
  LcUOption::Initialize();
  LcUOption::DefineInt32("consumer.answer", 42);
  int32_t answer = LcUOption::GetInt32("consumer.answer");
  LcUOption::Terminate();
  std::printf("record written, option %d\n", int(answer));
  return answer == 42 ? 0 : 4;
}
