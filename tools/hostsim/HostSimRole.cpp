#include "HostSimRole.h"

#include "HostSimObject.h"

namespace {
template <typename Match>
const HostSimRole* Search(Match match) {
  const struct {
    const HostSimRole* rows;
    size_t count;
  } parts[] = {{HostSimRole::kApplicationRoles, HostSimRole::kApplicationRoleCount},
               {HostSimRole::kViewRoles, HostSimRole::kViewRoleCount},
               {HostSimRole::kAssemblyRoles, HostSimRole::kAssemblyRoleCount}};
  for (const auto& part : parts)
    for (size_t i = 0; i < part.count; ++i)
      if (match(part.rows[i])) return &part.rows[i];
  return nullptr;
}
}  // namespace

int HostSimRole::ArgCount() const {
  int n = 0;
  while (n < kMaxArgs && args[n] != eNONE) ++n;
  return n;
}

bool HostSimRole::CanGiveNull() const {
  bool out = false;
  for (int i = 0; i < ArgCount(); ++i) out |= args[i] == eDISPATCH_OUT;
  return out || result == eDISPATCH || result == eBSTR;
}

const HostSimRole* HostSimRole::Find(const HostSimObject& object, DISPID id, WORD flags) {
  return Search([&](const HostSimRole& row) { return row.id == id && (row.kind & flags) && object.Is(row.on); });
}

const HostSimRole* HostSimRole::Named(const std::string& name, WORD kind) {
  return Search([&](const HostSimRole& row) { return name == row.name && (kind == 0 || row.kind == kind); });
}
