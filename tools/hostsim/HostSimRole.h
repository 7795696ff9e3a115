#pragma once
#include <cstddef>
#include <string>

#include "HostSimKind.h"
#include "addin/LcGlfCom.h"

class HostSimCall;
class HostSimObject;

// One row of the host's automation table: the role's name, the object that
// answers it, its published identifier and invoke kind, its argument and
// result types, and what the simulated host does for it.
struct HostSimRole {
  enum Type { eNONE, eI4, eR8, eBSTR, eBOOL, eDISPATCH, eVARIANT, eR8_OUT, eDISPATCH_OUT };
  static constexpr int kMaxArgs = 3;

  const char* name;
  HostSimKind on;
  DISPID id;
  WORD kind;
  Type args[kMaxArgs];  // in the caller's order, eNONE after the last
  Type result;
  HRESULT (*handler)(HostSimCall& call);

  int ArgCount() const;
  // Whether it gives an object or a string, through its result or an out argument.
  bool CanGiveNull() const;

  // The row that answers a call on object, or null.
  static const HostSimRole* Find(const HostSimObject& object, DISPID id, WORD flags);
  // A row with that name and, unless kind is 0, that invoke kind.
  static const HostSimRole* Named(const std::string& name, WORD kind);

  // The table, in parts by the objects that answer.
  static const HostSimRole kApplicationRoles[];
  static const size_t kApplicationRoleCount;
  static const HostSimRole kViewRoles[];
  static const size_t kViewRoleCount;
  static const HostSimRole kAssemblyRoles[];
  static const size_t kAssemblyRoleCount;
};
