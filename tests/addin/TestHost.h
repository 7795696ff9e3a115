#pragma once
#include <vector>

#include "addin/LcGlfCom.h"

// A stand-in for the host's objects: an IDispatch that answers property
// gets from a table and records every call it receives.
class TestDispatch : public IDispatch {
public:
  struct Call {
    DISPID id;
    WORD kind;
  };

  // Answers a get of id with value (a reference is taken per answer).
  void SetProperty(DISPID id, const VARIANT& value);
  // Answers a call of id with an exception carrying scode, given at once or
  // left to the deferred fill-in.
  void SetException(DISPID id, SCODE scode, bool deferred = false);
  // Whether QueryInterface answers the host's add-in site interface.
  void OfferSite(bool offer) { offersSite = offer; }
  const std::vector<Call>& GetCalls() const { return calls; }
  ULONG GetRefs() const { return refs; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++refs; }
  ULONG STDMETHODCALLTYPE Release() override { return --refs; }  // lives on the test's stack
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argError) override;

private:
  struct Property {
    DISPID id;
    VARIANT value;
  };
  struct Exception {
    DISPID id;
    SCODE scode;
    bool deferred;
  };
  ULONG refs = 1;
  bool offersSite = false;
  std::vector<Property> properties;
  std::vector<Exception> exceptions;
  std::vector<Call> calls;
};

// A site offering SiteApplication, and the application it gives.
struct TestHost {
  TestHost();
  TestDispatch site;
  TestDispatch application;
  int CountCalls(DISPID id) const;
};
