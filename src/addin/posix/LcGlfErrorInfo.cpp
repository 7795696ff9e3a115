#include "addin/LcGlfErrorInfo.h"

namespace {
thread_local LcUString lastDescription;
}

void LcGlfErrorInfo::Store(const EXCEPINFO& exception) {
  lastDescription.Assign(exception.bstrDescription);
}

void LcGlfErrorInfo::GetDescription(LcUString& description) {
  description.Assign(lastDescription.Get() ? lastDescription.Get() : u"");
}
