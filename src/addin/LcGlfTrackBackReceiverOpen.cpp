#include "addin/LcGlfHostCall.h"
#include "addin/LcGlfTrackBackReceiver.h"
#include "addin/LcGlfVariant.h"

bool LcGlfTrackBackReceiver::OpenDocument(const LcOmTrackBackRecord& record) {
  IDispatch* borrowed = GetApplication();
  if (!borrowed) return false;
  borrowed->AddRef();
  LcGlfHostObject application(borrowed);

  VARIANT modeFlag = LcGlfVariant::Bool(true);  // kept for the restore; starts out as -1
  if (FAILED(application.Call(eApplicationModeFlag, DISPATCH_PROPERTYGET, VT_BOOL, &modeFlag))) return false;
  application.PutBool(eApplicationModeFlag, false);

  LcGlfHostObject documents;
  if (FAILED(application.GetObject(eApplicationDocuments, documents))) return false;

  // From here on the path is a lower-case copy, the open included.
  LcUString lower(record.documentPath, record.DocumentPathLength());
  lower.ToLower();
  LcGlfBstr path(lower.Get(), lower.Length());

  HRESULT hr;
  if (LcUString::EndsWith(lower.Get(), u".gam")) {
    hr = OpenAssembly(documents, path);
  } else {
    VARIANT args[2] = {path.AsVariant(), LcGlfVariant::Bool(true)};
    VARIANT opened;
    hr = documents.Call(eDocumentsOpen, DISPATCH_METHOD, VT_DISPATCH, &opened, args, 2);
    if (SUCCEEDED(hr)) LcGlfHostObject release(opened.pdispVal);
  }
  // The flag comes back on failure only: a good open leaves it cleared.
  if (FAILED(hr)) {
    application.Put(eApplicationModeFlag, modeFlag);
    return false;
  }
  return true;
}

HRESULT LcGlfTrackBackReceiver::OpenAssembly(const LcGlfHostObject& documents, const LcGlfBstr& path) {
  IDispatch* borrowed = GetApplication();
  borrowed->AddRef();
  LcGlfHostObject application(borrowed);
  bool allOk = true;

  LcGlfHostObject factory, options, fileService;
  application.GetObjectOrRaise(eApplicationTransientFactory, factory);
  VARIANT created;
  if (FAILED(factory.Call(eTransientCreateOptions, DISPATCH_METHOD, VT_DISPATCH, &created)))
    allOk = false;
  else
    options = LcGlfHostObject(created.pdispVal);
  if (FAILED(application.GetObject(eApplicationFileService, fileService))) allOk = false;

  VARIANT pathArg = path.AsVariant();
  VARIANT designView, levelOfDetail;
  // A name that can't be read goes out as a null string.
  if (FAILED(fileService.Call(eFileServiceDesignViewName, DISPATCH_METHOD, VT_BSTR, &designView, &pathArg, 1))) {
    allOk = false;
    designView = LcGlfVariant::Text(nullptr);
  }
  if (FAILED(fileService.Call(eFileServiceLevelOfDetailName, DISPATCH_METHOD, VT_BSTR, &levelOfDetail, &pathArg, 1))) {
    allOk = false;
    levelOfDetail = LcGlfVariant::Text(nullptr);
  }
  LcGlfBstr levelName(u"LevelOfDetailRepresentation"), designName(u"DesignViewRepresentation");
  VARIANT levelArgs[2] = {levelName.AsVariant(), levelOfDetail};
  VARIANT designArgs[2] = {designName.AsVariant(), designView};
  // Both written whatever came before; a null map only makes them fail.
  LcGlfHostCall::Invoke(options.Get(), eOptionsValue, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, levelArgs, 2);
  LcGlfHostCall::Invoke(options.Get(), eOptionsValue, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, designArgs, 2);
  SysFreeString(designView.bstrVal);
  SysFreeString(levelOfDetail.bstrVal);

  const VARIANT visible = LcGlfVariant::Bool(true);
  VARIANT opened;
  if (allOk) {
    LcGlfHostObject again;
    application.GetObjectOrRaise(eApplicationDocuments, again);
    VARIANT args[3] = {pathArg, LcGlfVariant::Dispatch(options.Get()), visible};
    if (SUCCEEDED(again.Call(eDocumentsOpenWithOptions, DISPATCH_METHOD, VT_DISPATCH, &opened, args, 3))) {
      LcGlfHostObject release(opened.pdispVal);
      return S_OK;
    }
  }
  VARIANT args[2] = {pathArg, visible};
  HRESULT hr = documents.Call(eDocumentsOpen, DISPATCH_METHOD, VT_DISPATCH, &opened, args, 2);
  if (SUCCEEDED(hr)) LcGlfHostObject release(opened.pdispVal);
  return hr;
}
