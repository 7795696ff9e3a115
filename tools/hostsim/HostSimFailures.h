#pragma once
#include <string>
#include <vector>

#include "addin/LcGlfCom.h"

struct HostSimRole;

// Failure injection: a role answers with a chosen failure, or with a null
// object or string, on every call or on its Nth call only. A rule reads
//   ROLE[.get|.put|.method][@N]=0xHHHHHHHH|null
// where a role name without a kind covers its get and its put alike.
class HostSimFailures {
public:
  bool Add(const std::string& rule, std::string& error);
  // Counts the call against every rule for the role; true when one fires,
  // with its result. null means success with a null result.
  bool Fire(const HostSimRole& role, HRESULT& result, bool& null);

private:
  struct Rule {
    std::string role;
    WORD kind;  // 0 for any
    long nth;   // 0 for every call
    HRESULT result;
    bool null;
    long calls;
  };
  std::vector<Rule> rules;
};
