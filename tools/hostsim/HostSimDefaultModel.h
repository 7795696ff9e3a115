#pragma once

// The model hostsim runs on when given none, the demo's: an open gearbox
// assembly with sub-assemblies, an open bracket part, and a pump assembly
// that opens on request.
struct HostSimDefaultModel {
  static const char* const kText;
};
