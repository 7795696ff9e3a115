#include "HostSimObject.h"

#include <cstdio>

#include "HostSim.h"
#include "HostSimCall.h"
#include "HostSimRole.h"
#include "HostSimText.h"
#include "addin/LcGlfGuids.h"

namespace {
std::string GuidText(REFIID riid) {
  char16_t wide[40];
  LcGlfGuidToText(riid, wide);
  return HostSimText::ToUtf8(wide);
}
}  // namespace

bool HostSimObject::Is(HostSimKind face) const {
  if (face == kind) return true;
  bool assembly = node ? node->assembly : document && document->definition.assembly;
  switch (face) {
    case HostSimKind::ePartDocument: return kind == HostSimKind::eDocument && !assembly;
    case HostSimKind::eAssemblyDocument: return kind == HostSimKind::eDocument && assembly;
    case HostSimKind::eAssemblyDefinition: return kind == HostSimKind::eDefinition && assembly;
    default: return false;
  }
}

std::string HostSimObject::Name() const {
  return std::string(HostSimKindName(kind)) + "#" + std::to_string(number);
}

HRESULT HostSimObject::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (riid == IID_IUnknown || riid == IID_IDispatch) {
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  // The host's own interfaces, each on the objects of its face.
  const struct {
    const IID* iid;
    HostSimKind face;
  } kInterfaces[] = {{&IID_GlfAddInSite, HostSimKind::eAddInSite},
                     {&IID_GlfPartDocument, HostSimKind::ePartDocument},
                     {&IID_GlfAssemblyDocument, HostSimKind::eAssemblyDocument},
                     {&IID_GlfAssemblyDefinition, HostSimKind::eAssemblyDefinition}};
  std::string asked = GuidText(riid);
  HRESULT hr = E_NOINTERFACE;
  for (const auto& i : kInterfaces) {
    if (riid != *i.iid) continue;
    asked = HostSimKindName(i.face);
    if (Is(i.face)) {
      *object = static_cast<IDispatch*>(this);
      AddRef();
      hr = S_OK;
    }
  }
  host.journal.Write("QueryInterface(" + asked + ") -> " + HostSimText::Hex(hr) + (SUCCEEDED(hr) ? " " + Name() : ""));
  return hr;
}

ULONG HostSimObject::AddRef() {
  return ++refs;
}

ULONG HostSimObject::Release() {
  if (refs == 0) {
    ++overReleased;
    return 0;
  }
  return --refs;
}

HRESULT HostSimObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT HostSimObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return E_NOTIMPL;
}

HRESULT HostSimObject::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
  // The host is reached by its published identifiers only.
  host.journal.Write("GetIDsOfNames() -> " + HostSimText::Hex(DISP_E_UNKNOWNNAME));
  return DISP_E_UNKNOWNNAME;
}

HRESULT HostSimObject::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                              EXCEPINFO*, UINT* argError) {
  if (result) VariantInit(result);
  const HostSimRole* role = riid == IID_NULL ? HostSimRole::Find(*this, id, flags) : nullptr;
  if (!role) {
    HRESULT hr = riid == IID_NULL ? DISP_E_MEMBERNOTFOUND : DISP_E_UNKNOWNINTERFACE;
    char line[96];
    std::snprintf(line, sizeof(line), "Invoke(%s, 0x%X, %u) -> %s", Name().c_str(), unsigned(id), unsigned(flags),
                  HostSimText::Hex(hr).c_str());
    host.journal.Write(line);
    return hr;
  }
  HostSimCall call(*this, params);
  HRESULT hr = call.Check(*role, argError);
  const bool journaled = !host.journal.IsMuted();
  std::string args = journaled ? call.ShowArgs() : std::string();
  if (SUCCEEDED(hr)) {
    host.Count(role->name);
    bool null = false;
    if (!host.model.failures.Fire(*role, hr, null))
      hr = role->handler(call);
    else if (null)
      call.GiveNull(*role);
  }
  host.Note(role->name, hr);
  if (!journaled) {
    if (SUCCEEDED(hr)) call.TakeResult(result);
    host.journal.Tick();
    return hr;
  }
  std::string line = std::string(role->name) + "(" + args + ") -> " + HostSimText::Hex(hr);
  if (SUCCEEDED(hr)) {
    std::string shown = call.ShowResult(*role);
    if (!shown.empty()) line += " " + shown;
    call.TakeResult(result);
  }
  host.journal.Write(line);
  return hr;
}
