#include "addin/LcGlfTrackBackReceiver.h"

#include "addin/LcGlfComError.h"
#include "addin/LcGlfHostWindow.h"
#include "addin/LcGlfVariant.h"
#include "foundation/LcUError.h"

int LcGlfTrackBackReceiver::onTrackBack(const LcOmTrackBackRecord& record) {
  // A raised COM error ends the Veerback here, deliberately, instead of going
  // on out: a C++ exception must not unwind through the window procedure into
  // the host's message loop, which is no C++ frame and would end the host.
  try {
    Veerback(record);
  } catch (const LcGlfComError& error) {
    LcUError::LogF("LcGlfTrackBackReceiver- COM error 0x%08X raised\n", unsigned(error.result));
  }
  return 0;
}

void LcGlfTrackBackReceiver::Veerback(const LcOmTrackBackRecord& record) {
  IDispatch* borrowed = GetApplication();
  if (!borrowed) return;
  borrowed->AddRef();
  LcGlfHostObject application(borrowed);

  VARIANT window;
  if (FAILED(application.Call(eApplicationMainWindow, DISPATCH_PROPERTYGET, VT_I4, &window))) return;
  LcGlfHostWindow::BringToFront(window.lVal);

  if (!ActivateOrOpen(record)) return;

  // The view of whatever document is active now: the one just activated or opened.
  LcGlfHostObject view, camera;
  if (FAILED(application.GetObject(eApplicationActiveView, view))) return;
  if (FAILED(view.GetObject(eViewCamera, camera))) return;
  if (FAILED(ApplyCamera(record.camera, camera.Get()))) return;

  LcGlfHostObject document, selectSet;
  if (FAILED(application.GetObject(eApplicationActiveDocument, document)) || document.IsNull()) return;
  if (FAILED(document.GetObject(eDocumentSelectSet, selectSet))) return;
  if (!selectSet.IsNull() && FAILED(selectSet.Method(eSelectSetClear))) return;

  if (record.hasItem == 0)
    SelectWholeDocument(document, selectSet);
  else
    SelectItem(document, record);
}

bool LcGlfTrackBackReceiver::ActivateOrOpen(const LcOmTrackBackRecord& record) {
  IDispatch* borrowed = GetApplication();
  if (!borrowed) return false;
  borrowed->AddRef();
  LcGlfHostObject application(borrowed);
  // The look-up takes the path as it stands, case included.
  LcGlfBstr path(record.documentPath, record.DocumentPathLength());
  LcGlfHostObject fileService, entries, document;
  if (FAILED(application.GetObject(eApplicationFileService, fileService))) return false;
  if (FAILED(fileService.GetObject(eFileServiceEntries, entries))) return false;
  VARIANT key = path.AsVariant();
  if (FAILED(entries.GetObject(eEntriesItem, document, &key, 1)) || document.IsNull()) return OpenDocument(record);

  LcGlfHostObject views, view;
  if (FAILED(document.GetObject(eDocumentViews, views))) return false;
  VARIANT first = LcGlfVariant::I4(1);
  if (FAILED(views.GetObject(eViewsItem, view, &first, 1)) || view.IsNull()) return OpenDocument(record);
  if (FAILED(view.Method(eViewActivate))) return OpenDocument(record);
  return true;
}
