#pragma once
#include "addin/LcGlfCom.h"

// A COM error raised by the host-facing code: a call through a null host
// object, a failed BSTR allocation, a refused query that isn't
// E_NOINTERFACE, or a failed call of the raising form.
struct LcGlfComError {
  HRESULT result;
};

[[noreturn]] inline void LcGlfRaise(HRESULT result) {
  throw LcGlfComError{result};
}
