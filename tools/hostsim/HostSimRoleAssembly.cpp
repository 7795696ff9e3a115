// The roles of definitions, occurrences and the select set. Only what
// stands at the top of the document can be selected: the document's own
// definition, a top-level occurrence, or a nested occurrence in context.
#include <algorithm>

#include "HostSim.h"
#include "HostSimCall.h"
#include "HostSimRole.h"
#include "addin/LcGlfHostRoles.h"

namespace {
using K = HostSimKind;
using R = HostSimRole;
using Node = HostSimModel::Node;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kMethod = DISPATCH_METHOD;

bool IsTopLevel(const HostSimObject& occurrence) {
  return occurrence.node->parent == &occurrence.document->definition;
}

bool IsBelow(const Node* node, const Node* above) {
  for (node = node->parent; node; node = node->parent)
    if (node == above) return true;
  return false;
}

HRESULT DocumentDefinition(HostSimCall& c) {
  return c.GiveObject(&c.host.Shared(K::eDefinition, c.self.document, &c.self.document->definition));
}

HRESULT DefinitionOccurrences(HostSimCall& c) {
  return c.GiveObject(&c.host.Shared(K::eOccurrences, c.self.document, c.self.node));
}

// A name not found fails with E_INVALIDARG rather than giving null.
HRESULT OccurrencesItemByName(HostSimCall& c) {
  Node* child = c.self.node->Child(c.String(0));
  return child ? c.GiveObject(&c.host.Shared(K::eOccurrence, c.self.document, child)) : E_INVALIDARG;
}

HRESULT OccurrenceDefinition(HostSimCall& c) {
  return c.GiveObject(&c.host.Shared(K::eDefinition, c.self.document, c.self.node));
}

// Asked of a top-level occurrence for an occurrence anywhere beneath it.
HRESULT OccurrenceContextFor(HostSimCall& c) {
  HostSimObject* nested = c.Object(0);
  if (c.self.inContext || !IsTopLevel(c.self) || !nested || nested->kind != K::eOccurrence || nested->inContext ||
      !IsBelow(nested->node, c.self.node))
    return E_INVALIDARG;
  HostSimObject& context = c.host.Shared(K::eOccurrence, c.self.document, nested->node, -1, true);
  context.AddRef();
  *c.Arg(1).ppdispVal = &context;
  return S_OK;
}

HRESULT SelectSetSelect(HostSimCall& c) {
  HostSimObject* item = c.Object(0);
  HostSimModel::Document* document = c.self.document;
  bool selectable = item && item->document == document &&
                    ((item->kind == K::eDefinition && item->node == &document->definition) ||
                     (item->kind == K::eOccurrence && (item->inContext || IsTopLevel(*item))));
  if (!selectable) return E_INVALIDARG;
  std::u16string path = item->node->Path();
  if (std::find(document->selection.begin(), document->selection.end(), path) == document->selection.end())
    document->selection.push_back(path);
  return S_OK;
}

HRESULT SelectSetClear(HostSimCall& c) {
  c.self.document->selection.clear();
  return S_OK;
}
}  // namespace

const HostSimRole HostSimRole::kAssemblyRoles[] = {
    {"PartDefinition", K::ePartDocument, ePartDefinition, kGet, {}, R::eDISPATCH, DocumentDefinition},
    {"AssemblyDefinition", K::eAssemblyDocument, eAssemblyDefinition, kGet, {}, R::eDISPATCH, DocumentDefinition},
    {"DefinitionOccurrences", K::eDefinition, eDefinitionOccurrences, kGet, {}, R::eDISPATCH,
     DefinitionOccurrences},
    {"OccurrencesItemByName", K::eOccurrences, eOccurrencesItemByName, kGet, {R::eBSTR}, R::eDISPATCH,
     OccurrencesItemByName},
    {"OccurrenceDefinition", K::eOccurrence, eOccurrenceDefinition, kGet, {}, R::eDISPATCH, OccurrenceDefinition},
    {"OccurrenceContextFor", K::eOccurrence, eOccurrenceContextFor, kMethod, {R::eDISPATCH, R::eDISPATCH_OUT},
     R::eNONE, OccurrenceContextFor},
    {"SelectSetSelect", K::eSelectSet, eSelectSetSelect, kMethod, {R::eDISPATCH}, R::eNONE, SelectSetSelect},
    {"SelectSetClear", K::eSelectSet, eSelectSetClear, kMethod, {}, R::eNONE, SelectSetClear},
};
const size_t HostSimRole::kAssemblyRoleCount = sizeof(kAssemblyRoles) / sizeof(kAssemblyRoles[0]);
