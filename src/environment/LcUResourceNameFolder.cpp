#include "environment/LcUResource.h"
#include "environment/LcUResourceLanguages.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"
#include "foundation/LcUStringSet.h"

void LcUResource::LoadNameFolder(const char16_t* folder, const char* prefix) {
  const char16_t* languages[LcUResourceLanguages::eCOUNT];
  int32_t count = LcUResourceLanguages::Get(languages);
  // The first language that has a file name wins.
  LcUStringSet seen;
  for (int32_t i = 0; i < count; ++i) {
    LcUString languageFolder;
    LcUSysFile::Join(folder, languages[i], languageFolder);
    for (LcUSysFileIterator files(languageFolder.Get()); files.IsValid(); files.Next()) {
      LcUString name, path;
      files.GetName(name);
      if (files.IsDirectory() || !LcUSysFile::HasExtension(name.Get(), u"name")) continue;
      if (!seen.Insert(name.Get())) continue;
      files.GetPath(path);
      LoadNameFile(path.Get(), prefix);
    }
  }
}
