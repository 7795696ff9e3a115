#include <cstdio>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "addin/LcOmTrackBackSender.h"

namespace {
// "X,Y,Z" into count numbers.
bool ReadNumbers(const char16_t* text, double* values, int count) {
  LcUString rest(text);
  for (int i = 0; i < count; ++i) {
    int32_t comma = rest.FindChar(',');
    if ((comma < 0) != (i == count - 1)) return false;
    LcUString part;
    LcUString::Substring(rest, 0, comma < 0 ? rest.Length() : comma, part);
    if (!LcUString::ToDoubleC(part.Get(), values[i])) return false;
    if (comma >= 0) LcUString::Substring(rest, comma + 1, rest.Length(), rest);
  }
  return true;
}

struct Option {
  const char16_t* name;
  int count;
  double* targets[4];
};

int Fail(const char* message) {
  std::fprintf(stderr, "veerback send: %s\n", message);
  return VeerbackCommands::eFAILED;
}
}  // namespace

int VeerbackCommands::Send(const std::vector<const char16_t*>& options) {
  LcOmTrackBackRecord record;
  record.setDocumentPath(nullptr);
  record.setItemFilePath(nullptr);
  record.hasItem = 0;
  LcNvCamera& camera = record.camera;
  const Option numeric[] = {
      {u"--position", 3, {&camera.position.x, &camera.position.y, &camera.position.z}},
      {u"--rotation", 4, {&camera.rotation.x, &camera.rotation.y, &camera.rotation.z, &camera.rotation.w}},
      {u"--aspect", 1, {&camera.aspect}},
      {u"--height", 1, {&camera.height}},
      {u"--near", 1, {&camera.nearDistance}},
      {u"--far", 1, {&camera.farDistance}},
      {u"--vertical-offset", 1, {&camera.verticalOffset}},
      {u"--horizontal-offset", 1, {&camera.horizontalOffset}},
      {u"--scale", 3, {&record.scale[0], &record.scale[1], &record.scale[2]}},
      {u"--offset", 3, {&record.offset[0], &record.offset[1], &record.offset[2]}},
  };
  const char16_t* document = nullptr;
  const char16_t* itemFile = nullptr;
  const char16_t* itemText = nullptr;
  for (size_t i = 0; i < options.size(); ++i) {
    const char16_t* option = options[i];
    if (LcUString::Equal(option, u"--ortho")) {
      camera.projection = LcNvCamera::eORTHOGRAPHIC;
      continue;
    }
    if (i + 1 >= options.size()) return Fail("an option is missing its value");
    const char16_t* value = options[++i];
    if (LcUString::Equal(option, u"--document")) {
      document = value;
    } else if (LcUString::Equal(option, u"--item-file")) {
      itemFile = value;
    } else if (LcUString::Equal(option, u"--item")) {
      itemText = value;
    } else {
      const Option* match = nullptr;
      for (const Option& o : numeric)
        if (LcUString::Equal(option, o.name)) match = &o;
      if (!match) return Fail("unknown option");
      double numbers[4];
      if (!ReadNumbers(value, numbers, match->count)) return Fail("bad number list");
      for (int k = 0; k < match->count; ++k) *match->targets[k] = numbers[k];
    }
  }
  if (!document) return Fail("--document PATH is required");
  if (itemFile && itemText) return Fail("give --item-file or --item, not both");
  if (!record.setDocumentPath(document)) return Fail("the document path is longer than 260 characters; nothing written");

  LcUString recordPath, itemPath;
  if (!LcOmTrackBackSender::GetRecordPath(recordPath) || !LcOmTrackBackSender::GetItemFilePath(itemPath))
    return Fail("the shared folder of the product line can't be found");
  if (itemText) itemFile = itemPath.Get();
  if (itemFile) {
    if (!record.setItemFilePath(itemFile)) return Fail("the item file path is longer than 511 characters; nothing written");
    record.hasItem = 1;
  }
  if (!LcOmTrackBackSender::IsListenerRunning()) {
    std::fputs("veerback send: no Gearloft with the Veerback add-in is listening; nothing sent\n", stderr);
    return eNO_LISTENER;
  }
  if (itemText && !LcOmTrackBackSender::WriteItemFile(itemPath.Get(), itemText)) {
    std::fputs("veerback send: can't write the item file ", stderr);
    PrintWide(stderr, itemPath.Get());
    std::fputs("\n", stderr);
    return eFAILED;
  }
  if (!LcOmTrackBackSender::WriteRecord(recordPath.Get(), record)) {
    std::fputs("veerback send: can't write the record ", stderr);
    PrintWide(stderr, recordPath.Get());
    std::fputs("\n", stderr);
    return eFAILED;
  }
  if (LcOmTrackBackSender::Deliver() != LcOmTrackBackSender::eTAKEN) {
    std::fputs("veerback send: the listener went away before it took the message\n", stderr);
    return eNO_LISTENER;
  }
  std::fputs("veerback send: taken by the listener\n", stdout);
  return eOK;
}
