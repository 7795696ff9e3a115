#pragma once

// The kinds of object the simulated host hands out, named as the journal
// names them. PartDocument, AssemblyDocument and AssemblyDefinition are
// faces of a Document or Definition: the roles and interfaces that only
// some of them answer are told apart by these.
enum class HostSimKind {
  eAddInSite,
  eApplication,
  eFileService,
  eFileEntries,
  eDocuments,
  eTransientFactory,
  eOptionsMap,
  eDocument,
  ePartDocument,
  eAssemblyDocument,
  eViews,
  eView,
  eHostCamera,
  ePoint,
  eUnitVector,
  eSelectSet,
  eDefinition,
  eAssemblyDefinition,
  eOccurrences,
  eOccurrence,
  eCount
};

const char* HostSimKindName(HostSimKind kind);
