#include "addin/LcGlfErrorInfo.h"

void LcGlfErrorInfo::Store(const EXCEPINFO& exception) {
  ICreateErrorInfo* create = nullptr;
  if (FAILED(CreateErrorInfo(&create))) return;
  create->SetDescription(exception.bstrDescription);
  create->SetSource(exception.bstrSource);
  create->SetHelpFile(exception.bstrHelpFile);
  create->SetHelpContext(exception.dwHelpContext);
  IErrorInfo* info = nullptr;
  if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
    SetErrorInfo(0, info);
    info->Release();
  }
  create->Release();
}

void LcGlfErrorInfo::GetDescription(LcUString& description) {
  description.Clear();
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK || !info) return;
  BSTR text = nullptr;
  if (SUCCEEDED(info->GetDescription(&text)) && text) description.Assign(reinterpret_cast<const char16_t*>(text));
  SysFreeString(text);
  // GetErrorInfo took it off the thread; leave it there for the next reader.
  SetErrorInfo(0, info);
  info->Release();
}
