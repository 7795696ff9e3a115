#pragma once
#include <string>

#include "HostSimRole.h"
#include "addin/LcGlfCom.h"

class HostSim;
class HostSimObject;

// One call on a host object as a role's handler sees it: the arguments in
// the caller's order, and the result it gives.
class HostSimCall {
public:
  HostSimCall(HostSimObject& self, DISPPARAMS* params);
  HostSimCall(const HostSimCall&) = delete;
  HostSimCall& operator=(const HostSimCall&) = delete;
  ~HostSimCall();

  // The argument count, the put's named argument and each argument's type;
  // argError gets the failing argument's place in DISPPARAMS.
  HRESULT Check(const HostSimRole& role, UINT* argError) const;
  // The arguments as the journal shows them, and what came back.
  std::string ShowArgs() const;
  std::string ShowResult(const HostSimRole& role) const;

  VARIANT& Arg(int position) const;
  std::u16string String(int position) const;
  // Our object behind a DISPATCH argument, or null for null or a stranger.
  HostSimObject* Object(int position) const;

  // A null object or string, through the result or an out argument.
  void GiveNull(const HostSimRole& role);
  HRESULT GiveObject(HostSimObject* object);
  HRESULT GiveBool(int16_t value);
  HRESULT GiveI4(int32_t value);
  HRESULT GiveR8(double value);
  HRESULT GiveString(const std::u16string& value);
  // What the caller gets; the call keeps it otherwise.
  void TakeResult(VARIANT* target);

  HostSim& host;
  HostSimObject& self;

private:
  DISPPARAMS* params;
  VARIANT result;
};
