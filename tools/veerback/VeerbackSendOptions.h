#pragma once
#include <string>
#include <vector>

#include "addin/LcOmTrackBackRecord.h"
#include "addin/LcOmTrackBackSender.h"
#include "foundation/LcUString.h"

// The send command's options, read into a record and checked: a camera the
// host can use, and the item given one way at most.
class VeerbackSendOptions {
public:
  // False with error naming the option (or the argument) at fault. An item
  // file goes into the record, made absolute; item text is left to Send.
  bool Parse(const std::vector<const char16_t*>& arguments, std::string& error);

  LcOmTrackBackRecord record;
  const char16_t* itemText = nullptr;
  int timeoutMs = LcOmTrackBackSender::eDEFAULT_TIMEOUT_MS;

private:
  const char16_t* itemFile = nullptr;
  bool Finish(std::string& error);
  bool ortho = false;
  bool haveHeight = false;
  const char16_t* document = nullptr;
};
