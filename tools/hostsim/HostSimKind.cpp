#include "HostSimKind.h"

#include <cstddef>

const char* HostSimKindName(HostSimKind kind) {
  static const char* const kNames[] = {
      "AddInSite",  "Application",      "FileService",  "FileEntries", "Documents",  "TransientFactory",
      "OptionsMap", "Document",         "PartDocument", "AssemblyDocument", "Views", "View",
      "HostCamera", "Point",            "UnitVector",   "SelectSet",   "Definition", "AssemblyDefinition",
      "Occurrences", "Occurrence"};
  static_assert(sizeof(kNames) / sizeof(kNames[0]) == size_t(HostSimKind::eCount), "a name for every kind");
  return kNames[int(kind)];
}
