#pragma once
#include <urlmon.h>

class LcUDownloadProgressSink;

// Tells a download's progress to a sink. It lives on the stack of the
// download call, so it counts no references.
class MyBindStatusCallback : public IBindStatusCallback {
public:
  explicit MyBindStatusCallback(LcUDownloadProgressSink* sink) : sink(sink) {}
  ~MyBindStatusCallback();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE OnStartBinding(DWORD reserved, IBinding* binding) override;
  HRESULT STDMETHODCALLTYPE GetPriority(LONG*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLowResource(DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnProgress(ULONG progress, ULONG maximum, ULONG statusCode, LPCWSTR text) override;
  HRESULT STDMETHODCALLTYPE OnStopBinding(HRESULT result, LPCWSTR error) override;
  HRESULT STDMETHODCALLTYPE GetBindInfo(DWORD*, BINDINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnObjectAvailable(REFIID, IUnknown*) override { return S_OK; }

private:
  void Report(double fraction);
  IBinding* binding = nullptr;
  LcUDownloadProgressSink* sink;
};
