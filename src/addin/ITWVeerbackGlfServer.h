#pragma once
#include "addin/LcGlfCom.h"

// The server's dual interface; the type library describes the same slots.
struct ITWVeerbackGlfServer : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE Activate(IDispatch* pDisp, VARIANT_BOOL FirstTime) = 0;
  virtual HRESULT STDMETHODCALLTYPE Deactivate() = 0;
};

enum { eDISPID_ACTIVATE = 1, eDISPID_DEACTIVATE = 2 };
