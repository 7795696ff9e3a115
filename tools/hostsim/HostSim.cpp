#include "HostSim.h"

#include "HostSimState.h"
#include "HostSimText.h"

HostSim::HostSim(HostSimModel& model, HostSimJournal& journal) : model(model), journal(journal) {
  site = &Shared(HostSimKind::eAddInSite);
  Shared(HostSimKind::eApplication);
  // Documents are numbered in the model's order.
  for (const auto& document : model.documents) Shared(HostSimKind::eDocument, document.get());
}

HostSimObject& HostSim::Make(HostSimKind kind) {
  objects.push_back(std::make_unique<HostSimObject>(*this, kind, ++numbers[int(kind)]));
  HostSimObject& object = *objects.back();
  byPointer[&object] = &object;
  return object;
}

HostSimObject& HostSim::Shared(HostSimKind kind, HostSimModel::Document* document, HostSimModel::Node* node, int view,
                               bool inContext) {
  HostSimObject*& slot = shared[std::make_tuple(kind, document, node, view, inContext)];
  if (!slot) {
    slot = &Make(kind);
    slot->document = document;
    slot->node = node;
    slot->view = view;
    slot->inContext = inContext;
  }
  return *slot;
}

HostSimObject* HostSim::Find(IDispatch* pointer) const {
  auto found = byPointer.find(pointer);
  return found == byPointer.end() ? nullptr : found->second;
}

long HostSim::CallCount(const std::string& role) const {
  auto found = calls.find(role);
  return found == calls.end() ? 0 : found->second;
}

std::string HostSim::Show(const VARIANT& value) const {
  if (value.vt & VT_BYREF) return "*";
  switch (value.vt) {
    case VT_EMPTY: return "empty";
    case VT_I2: return std::to_string(value.iVal);
    case VT_I4: return std::to_string(value.lVal);
    case VT_R8: return HostSimText::Number(value.dblVal);
    case VT_BOOL: return std::to_string(value.boolVal);
    case VT_BSTR:
      return value.bstrVal ? HostSimText::Quote(reinterpret_cast<const char16_t*>(value.bstrVal),
                                                SysStringLen(value.bstrVal))
                           : "null";
    case VT_DISPATCH: {
      if (!value.pdispVal) return "null";
      HostSimObject* object = Find(value.pdispVal);
      return object ? object->Name() : "foreign";
    }
    default: return "vt" + std::to_string(value.vt);
  }
}

HostSimModel::Document* HostSim::Open(const std::u16string& path, bool visible, const std::string& how) {
  HostSimModel::Document* document = model.Find(path, true);
  if (!document) return nullptr;
  if (!document->open) {
    document->open = true;
    document->opened = how;
  }
  if (visible) Activate(document, document->views.empty() ? -1 : 0);
  return document;
}

void HostSim::Activate(HostSimModel::Document* document, int view) {
  model.activeDocument = document;
  model.activeView = view;
}

void HostSim::Note(const char* role, HRESULT hr) {
  const std::string name = role;
  if (name == "ApplicationMainWindow") {
    EndMessage();
    message = Message();
    message.open = true;
  }
  if (FAILED(hr) && message.firstFailure.empty()) message.firstFailure = name + " -> " + HostSimText::Hex(hr);
  message.cameraApplied |= name == "CameraApply" && SUCCEEDED(hr);
}

void HostSim::EndMessage() {
  if (!message.open) return;
  if (verbose) {
    std::fprintf(verbose, "%s\n", HostSimState::Message(*this).c_str());
    std::fflush(verbose);
  }
  message.open = false;
}
