#include "addin/LcGlfTrackBackReceiver.h"

#include "addin/LcGlfHostCall.h"
#include "addin/LcGlfHostRoles.h"
#include "addin/LcGlfHostWindow.h"

int LcGlfTrackBackReceiver::onTrackBack(const LcOmTrackBackRecord&) {
  IDispatch* application = GetApplication();
  if (!application) return 0;
  application->AddRef();
  // The host comes to the front before any document work.
  VARIANT window;
  if (SUCCEEDED(LcGlfHostCall::Invoke(application, eApplicationMainWindow, DISPATCH_PROPERTYGET, VT_I4, &window)))
    LcGlfHostWindow::BringToFront(window.lVal);
  application->Release();
  return 0;
}
