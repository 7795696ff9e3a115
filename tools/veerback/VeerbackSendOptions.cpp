#include "VeerbackSendOptions.h"

#include <climits>
#include <cmath>
#include <cstdlib>

#include "addin/LcOmTrackBackSender.h"

namespace {
std::string Utf8(const char16_t* text) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(text, narrow, true);
  return narrow.Get();
}

// "X,Y,Z" into count finite numbers, nothing else on the line.
bool ReadNumbers(const std::string& text, double* values, int count) {
  const char* p = text.c_str();
  for (int i = 0; i < count; ++i) {
    char* end = nullptr;
    values[i] = std::strtod(p, &end);
    if (end == p || !std::isfinite(values[i]) || *end != (i == count - 1 ? '\0' : ',')) return false;
    p = end + 1;
  }
  return true;
}

struct Numeric {
  const char* name;
  int count;
  double* targets[4];
};
}  // namespace

bool VeerbackSendOptions::Parse(const std::vector<const char16_t*>& arguments, std::string& error) {
  record = LcOmTrackBackSender::NewRecord();
  LcNvCamera& camera = record.camera;
  const Numeric numeric[] = {
      {"--position", 3, {&camera.position.x, &camera.position.y, &camera.position.z}},
      {"--rotation", 4, {&camera.rotation.x, &camera.rotation.y, &camera.rotation.z, &camera.rotation.w}},
      {"--aspect", 1, {&camera.aspect}},
      {"--height", 1, {&camera.height}},
      {"--near", 1, {&camera.nearDistance}},
      {"--far", 1, {&camera.farDistance}},
      {"--vertical-offset", 1, {&camera.verticalOffset}},
      {"--horizontal-offset", 1, {&camera.horizontalOffset}},
      {"--scale", 3, {&record.scale[0], &record.scale[1], &record.scale[2]}},
      {"--offset", 3, {&record.offset[0], &record.offset[1], &record.offset[2]}},
  };
  for (size_t i = 0; i < arguments.size(); ++i) {
    std::string option = Utf8(arguments[i]);
    if (option.compare(0, 2, "--") != 0) {
      error = "stray argument \"" + option + "\"";
      return false;
    }
    if (option == "--ortho") {
      ortho = true;
      camera.projection = LcNvCamera::eORTHOGRAPHIC;
      continue;
    }
    const Numeric* match = nullptr;
    for (const Numeric& n : numeric)
      if (option == n.name) match = &n;
    bool known = match || option == "--document" || option == "--item-file" || option == "--item" ||
                 option == "--timeout";
    if (!known) {
      error = "unknown option " + option;
      return false;
    }
    if (i + 1 >= arguments.size()) {
      error = option + " needs a value";
      return false;
    }
    const char16_t* value = arguments[++i];
    if (option == "--document") {
      document = value;
    } else if (option == "--item-file") {
      itemFile = value;
    } else if (option == "--item") {
      itemText = value;
    } else if (option == "--timeout") {
      double seconds = 0;
      if (!ReadNumbers(Utf8(value), &seconds, 1) || seconds <= 0 || seconds * 1000.0 > INT_MAX) {
        error = "--timeout wants a number of seconds above 0, not \"" + Utf8(value) + "\"";
        return false;
      }
      timeoutMs = int(std::ceil(seconds * 1000.0));
    } else {
      double numbers[4];
      if (!ReadNumbers(Utf8(value), numbers, match->count)) {
        error = option + " wants " + std::to_string(match->count) + " finite number" + (match->count > 1 ? "s" : "") +
                (match->count > 1 ? " separated by commas" : "") + ", not \"" + Utf8(value) + "\"";
        return false;
      }
      for (int k = 0; k < match->count; ++k) *match->targets[k] = numbers[k];
      haveHeight |= option == "--height";
    }
  }
  return Finish(error);
}

bool VeerbackSendOptions::Finish(std::string& error) {
  const LcNvCamera& c = record.camera;
  LcUString item;
  if (!document || !*document)
    error = "--document PATH is required";
  else if (itemFile && itemText)
    error = "give --item-file or --item, not both";
  else if (!record.setDocumentPath(document))
    error = "--document is longer than 260 characters";
  else if (itemFile && (!LcOmTrackBackSender::MakeAbsolute(itemFile, item) || !record.setItemFilePath(item.Get())))
    error = "--item-file, made absolute, is longer than 511 characters";
  else if (c.rotation.x == 0 && c.rotation.y == 0 && c.rotation.z == 0 && c.rotation.w == 0)
    error = "--rotation 0,0,0,0 is no rotation";
  else if (!(c.aspect > 0))
    error = "--aspect must be above 0";
  else if (ortho && !haveHeight)
    error = "--ortho needs --height, the height of the view volume";
  else if (!(c.height > 0))
    error = "--height must be above 0";
  else if (!(c.nearDistance < c.farDistance))
    error = "--near must be below --far";
  record.hasItem = itemFile != nullptr;
  return error.empty();
}
