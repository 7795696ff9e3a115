#include "MyBindStatusCallback.h"

#include "filestream/LcUDownloadProgressSink.h"

MyBindStatusCallback::~MyBindStatusCallback() {
  if (binding) binding->Release();
}

HRESULT MyBindStatusCallback::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IBindStatusCallback)) {
    *out = static_cast<IBindStatusCallback*>(this);
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

HRESULT MyBindStatusCallback::OnStartBinding(DWORD, IBinding* started) {
  if (binding) binding->Release();
  binding = started;
  if (binding) binding->AddRef();
  Report(0.0);
  return S_OK;
}

HRESULT MyBindStatusCallback::OnProgress(ULONG progress, ULONG maximum, ULONG, LPCWSTR) {
  Report(maximum ? double(progress) / double(maximum) : 0.0);
  return S_OK;
}

HRESULT MyBindStatusCallback::OnStopBinding(HRESULT, LPCWSTR) {
  if (binding) binding->Release();
  binding = nullptr;
  Report(1.0);
  return S_OK;
}

void MyBindStatusCallback::Report(double fraction) {
  if (sink) sink->Progress(fraction);
}
