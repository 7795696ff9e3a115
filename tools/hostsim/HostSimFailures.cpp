#include "HostSimFailures.h"

#include <cstdlib>

#include "HostSimRole.h"

namespace {
bool ReadCount(const std::string& text, long& value) {
  if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  value = std::strtol(text.c_str(), nullptr, 10);
  return value > 0;
}

bool ReadFailure(const std::string& text, HRESULT& value) {
  if (text.size() < 3 || text.size() > 10 || text.compare(0, 2, "0x") != 0 ||
      text.find_first_not_of("0123456789abcdefABCDEF", 2) != std::string::npos)
    return false;
  value = HRESULT(std::strtoul(text.c_str() + 2, nullptr, 16));
  return FAILED(value);
}

bool ReadKind(const std::string& text, WORD& kind) {
  static const struct {
    const char* name;
    WORD kind;
  } kKinds[] = {{"get", DISPATCH_PROPERTYGET}, {"put", DISPATCH_PROPERTYPUT}, {"method", DISPATCH_METHOD}};
  for (const auto& k : kKinds)
    if (text == k.name) kind = k.kind;
  return kind != 0;
}
}  // namespace

bool HostSimFailures::Add(const std::string& text, std::string& error) {
  Rule rule = {};
  size_t equals = text.find('=');
  if (equals == std::string::npos) {
    error = "\"" + text + "\" is not ROLE[.KIND][@N]=RESULT";
    return false;
  }
  std::string role = text.substr(0, equals);
  std::string result = text.substr(equals + 1);
  size_t at = role.find('@');
  if (at != std::string::npos) {
    if (!ReadCount(role.substr(at + 1), rule.nth)) {
      error = "the call number in \"" + text + "\" is not a count from 1";
      return false;
    }
    role.resize(at);
  }
  size_t dot = role.find('.');
  if (dot != std::string::npos) {
    if (!ReadKind(role.substr(dot + 1), rule.kind)) {
      error = "the kind in \"" + text + "\" is not get, put or method";
      return false;
    }
    role.resize(dot);
  }
  const HostSimRole* row = HostSimRole::Named(role, rule.kind);
  if (!row) {
    error = HostSimRole::Named(role, 0) ? "the role " + role + " has no such kind"
                                        : "no role is named \"" + role + "\"";
    return false;
  }
  if (result == "null") {
    const HostSimRole* giving = nullptr;
    for (WORD kind : {WORD(DISPATCH_PROPERTYGET), WORD(DISPATCH_METHOD)})
      if (!giving && (rule.kind == 0 || rule.kind == kind)) giving = HostSimRole::Named(role, kind);
    if (!giving || !giving->CanGiveNull()) {
      error = "null is only for a role that gives an object or a string, not " + role;
      return false;
    }
    rule.null = true;
  } else if (!ReadFailure(result, rule.result)) {
    error = "\"" + result + "\" is not a failure HRESULT such as 0x80004005, nor null";
    return false;
  }
  rule.role = role;
  rules.push_back(rule);
  return true;
}

bool HostSimFailures::Fire(const HostSimRole& role, HRESULT& result, bool& null) {
  bool fired = false;
  for (Rule& rule : rules) {
    if (rule.role != role.name || (rule.kind != 0 && rule.kind != role.kind)) continue;
    ++rule.calls;
    if (fired || (rule.nth != 0 && rule.calls != rule.nth)) continue;
    // A null rule on a role's put side has nothing to null.
    if (rule.null && !role.CanGiveNull()) continue;
    fired = true;
    result = rule.null ? S_OK : rule.result;
    null = rule.null;
  }
  return fired;
}
