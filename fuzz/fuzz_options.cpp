#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUData.h"

// Arbitrary paths through define, get, set, flags and undefine on a small
// tree: nothing crashes, and the present and default trees keep one shape.
namespace {
int Quiet(int, LcUComponent*, int32_t, void*, const char16_t*) {
  return 1;
}

bool SameShape(LcUOptionSet* a, LcUOptionSet* b) {
  if (a->GetCount() != b->GetCount()) return false;
  for (int32_t i = 0; i < a->GetCount(); ++i) {
    if (std::strcmp(a->GetName(i), b->GetName(i)) != 0) return false;
    LcUOptionSet* childA = a->GetValue(i, nullptr);
    LcUOptionSet* childB = b->GetValue(i, nullptr);
    if (!childA != !childB || (childA && !SameShape(childA, childB))) return false;
  }
  return true;
}

bool Start() {
  LcUData::Initialize();
  LcUOption::Initialize();
  for (int severity = 0; severity < 5; ++severity) LcUSysError::SetHandler(severity, &LcUOption::component, -1, Quiet);
  return true;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = Start();
  (void)started;
  static const char kAlphabet[] = "ab0.1c..";
  LcUExOptionSet* root = LcUOption::GetPresentRoot();
  size_t at = 0;
  while (at + 2 <= size) {
    uint8_t op = data[at++];
    size_t length = data[at++] % 8;
    std::string path;
    for (size_t k = 0; k < length && at < size; ++k) path += kAlphabet[data[at++] % 8];
    const char* p = path.c_str();
    int32_t number = int32_t(op >> 4);
    switch (op % 12) {
      case 0: LcUOption::DefineInt32(p, number); break;
      case 1: LcUOption::DefineFloat(p, number * 0.5); break;
      case 2: LcUOption::DefineBoolean(p, (op & 16) != 0); break;
      case 3: {
        LcUExOptionSet* set = new LcUExOptionSet((op & 16) ? LcUOptionSet::eARRAY : 0);
        LcUOption::DefineInt32(set, "x", number);
        LcUOption::DefineSet(p, set);
        break;
      }
      case 4: LcUOption::GetInt32(p); break;
      case 5: {
        double value;
        LcUOption::TryGetFloat(p, value);
        break;
      }
      case 6: LcUOption::SetInt32(p, number); break;
      case 7: LcUOption::SetFloat(p, number); break;
      case 8: LcUOption::SetPathFlags(p, uint32_t(op >> 4) & 0x10b); break;
      case 9: LcUOption::Undefine(p); break;
      case 10: {
        LcUExOptionSet* set = new LcUExOptionSet;
        LcUOption::DefineBoolean(set, "y", true);
        LcUOption::Redefine(p, set);
        break;
      }
      default: LcUOption::ResetToDefaults(p); break;
    }
    if (!SameShape(root, LcUOption::GetDefaultRoot())) __builtin_trap();
  }
  while (root->GetCount()) {
    root->Remove(0);
    LcUOption::GetDefaultRoot()->Remove(0);
  }
  return 0;
}
