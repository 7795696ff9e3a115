#pragma once
#include <map>
#include <string>

#include "HostSimKind.h"
#include "HostSimModel.h"
#include "addin/LcGlfCom.h"

class HostSim;

// Every object the simulated host hands out: an IDispatch that answers the
// roles of its kind from the role table, checks their arguments, journals
// each call and lets failure injection have its say. What it stands for is
// in the fields its kind uses.
//
// The host owns its objects to the end of the run and counts the
// references it gave out, so references kept or released once too often
// show in the final state.
class HostSimObject : public IDispatch {
public:
  HostSimObject(HostSim& host, HostSimKind kind, int number) : host(host), kind(kind), number(number) {}
  virtual ~HostSimObject() = default;

  // Whether the object answers roles and interfaces of that kind or face.
  bool Is(HostSimKind face) const;
  // As the journal names it: "Document#2".
  std::string Name() const;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argError) override;

  HostSim& host;
  const HostSimKind kind;
  const int number;
  ULONG refs = 0;
  ULONG overReleased = 0;

  // Document and below: the document; View and HostCamera: the view's index.
  HostSimModel::Document* document = nullptr;
  int view = -1;
  // Definition, Occurrences, Occurrence: the node. An occurrence in context
  // stands for a nested occurrence at the top of its document.
  HostSimModel::Node* node = nullptr;
  bool inContext = false;
  // HostCamera: its own copy until CameraApply.
  HostSimModel::Camera camera;
  // Point and UnitVector.
  double xyz[3] = {0, 0, 0};
  // OptionsMap: each value as the journal shows it.
  std::map<std::u16string, std::string> options;
};
