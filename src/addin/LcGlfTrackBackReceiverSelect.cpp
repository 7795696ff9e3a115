#include "addin/LcGlfGuids.h"
#include "addin/LcGlfTrackBackReceiver.h"
#include "addin/LcGlfVariant.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUSysWideIO.h"

namespace {
constexpr int32_t kItemLineUnits = 1024;

// Names between "|" delimiters; delimiters in a row act as one, and past
// the last name the token is empty.
class ItemPathTokens {
public:
  explicit ItemPathTokens(const LcUString& text) : p(text.Get()) {}
  void Next(LcUString& token) {
    while (*p == '|') ++p;
    const char16_t* start = p;
    while (*p && *p != '|') ++p;
    token.Assign(start, int32_t(p - start));
  }

private:
  const char16_t* p;
};
}  // namespace

void LcGlfTrackBackReceiver::SelectWholeDocument(const LcGlfHostObject& document, const LcGlfHostObject& selectSet) {
  struct Kind {
    const IID& iid;
    LcGlfHostRole definition;
  };
  const Kind kinds[] = {{IID_GlfPartDocument, ePartDefinition}, {IID_GlfAssemblyDocument, eAssemblyDefinition}};
  for (const Kind& kind : kinds) {
    LcGlfHostObject typed, definition;
    document.Query(kind.iid, typed);
    if (typed.IsNull()) continue;
    if (SUCCEEDED(typed.GetObject(kind.definition, definition))) selectSet.CallWithObject(eSelectSetSelect, definition);
    return;
  }
}

void LcGlfTrackBackReceiver::SelectItem(const LcGlfHostObject& document, const LcOmTrackBackRecord& record) {
  LcUString path(record.itemFilePath, record.ItemFilePathLength());
  if (path.IsEmpty()) return;
  LcUSysFileHandle file;
  if (!file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0,
                 LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE))
    return;
  // One line, newline kept: the viewer leaves the line unterminated.
  LcUString text;
  if (text.Reserve(kItemLineUnits) == 0) return;
  if (!LcUSysWideIO::ReadLine(file.GetStream(), text.GetBuffer(), kItemLineUnits)) return;
  text.SetLength(-1);
  SelectItemPath(document.Get(), text);
}

void LcGlfTrackBackReceiver::SelectItemPath(IDispatch* documentPointer, const LcUString& itemText) {
  if (!documentPointer || itemText.Length() == 0) return;
  documentPointer->AddRef();
  LcGlfHostObject document(documentPointer);
  LcGlfHostObject assembly, definition;
  document.Query(IID_GlfAssemblyDocument, assembly);
  if (assembly.IsNull()) return;  // items are found in assemblies only
  if (FAILED(assembly.GetObject(eAssemblyDefinition, definition))) return;

  ItemPathTokens tokens(itemText);
  LcUString token;
  tokens.Next(token);
  LcGlfHostObject top;
  bool descended = false;
  while (!definition.IsNull()) {
    LcGlfHostObject occurrences, occurrence;
    if (FAILED(definition.GetObject(eDefinitionOccurrences, occurrences)) || occurrences.IsNull()) return;
    LcGlfBstr name(token.Get(), token.Length());
    VARIANT key = name.AsVariant();
    if (FAILED(occurrences.GetObject(eOccurrencesItemByName, occurrence, &key, 1)) || occurrence.IsNull()) return;
    if (top.IsNull()) top.Share(occurrence);
    tokens.Next(token);
    if (!token.IsEmpty()) {
      LcGlfHostObject next;
      if (FAILED(occurrence.GetObject(eOccurrenceDefinition, next)) || next.IsNull()) return;
      next.Query(IID_GlfAssemblyDefinition, definition);
      descended = true;
      continue;
    }
    LcGlfHostObject selectSet;
    if (FAILED(document.GetObject(eDocumentSelectSet, selectSet)) || selectSet.IsNull()) return;
    if (!descended) {
      selectSet.CallWithObject(eSelectSetSelect, occurrence);
      return;
    }
    // The top-level occurrence stands in for the nested one, whatever its depth.
    IDispatch* context = nullptr;
    VARIANT args[2] = {LcGlfVariant::Dispatch(occurrence.Get()), LcGlfVariant::DispatchRef(&context)};
    HRESULT hr = top.Call(eOccurrenceContextFor, DISPATCH_METHOD, VT_EMPTY, nullptr, args, 2);
    LcGlfHostObject contextObject(context);
    if (FAILED(hr) || contextObject.IsNull()) return;
    selectSet.CallWithObject(eSelectSetSelect, contextObject);
    return;
  }
}
