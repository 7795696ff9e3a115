#include <cstring>

#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUXMLDOMStream.h"

namespace {
// Sets nest no deeper than this when read; deeper ones are skipped.
constexpr int32_t kMaxDepth = 64;

bool IsSetElement(const LcUStringA& name) {
  return std::strcmp(name.Get(), "optionset") == 0 || std::strcmp(name.Get(), "optionarray") == 0;
}

// Inside a set's element: a new set with its name and kind.
LcUExOptionSet* BeginSet(const LcUStringA& element, LcUXMLDOMStream& stream) {
  bool array = std::strcmp(element.Get(), "optionarray") == 0;
  LcUExOptionSet* set = new LcUExOptionSet(array ? uint32_t(LcUOptionSet::eARRAY) : 0u);
  if (!set) return nullptr;
  LcUStringA name;
  if (stream.NarrowAttribute("name", name)) set->name = name;
  return set;
}

bool ReadMembers(LcUExOptionSet* set, LcUXMLDOMStream& stream, int32_t depth) {
  LcUStringA element;
  bool ok = true;
  while (stream.NextChildName(element)) {
    if (!stream.BeginElement(element.Get(), 0)) return false;
    LcUOptionRecord* record = nullptr;
    if (IsSetElement(element) && depth < kMaxDepth) {
      LcUExOptionSet* child = BeginSet(element, stream);
      record = child ? new LcUOptionRecord : nullptr;
      if (record) {
        record->name = child->name;
        record->SetChild(child);
        ok = ReadMembers(child, stream, depth + 1) && ok;
      } else {
        delete child;
      }
    } else if (std::strcmp(element.Get(), "option") == 0) {
      record = new LcUOptionRecord;
      if (record) {
        int32_t state = 0;
        stream.NarrowAttribute("name", record->name);
        stream.IntAttributeWithDefault("flags", state, 0);
        record->state = uint32_t(state);
        LcUStringA className;
        if (stream.NarrowAttribute("class", className) && !className.IsEmpty()) record->className = className;
        ok = record->value.SerialiseXML(stream) && ok;
      }
    }
    if (record) {
      // Their user names come from the plain name's text key.
      record->defineFlags = LcUOptionSet::ePLAIN_TEXT_KEY;
      set->Append(record);
    }
    if (!stream.EndElement(element.Get())) return false;
  }
  return ok;
}
}  // namespace

LcUExOptionSet* LcUOption::ReadFromXML(LcUXMLDOMStream& stream) {
  LcUStringA element;
  while (stream.NextChildName(element)) {
    if (!stream.BeginElement(element.Get(), 0)) return nullptr;
    if (IsSetElement(element)) {
      LcUExOptionSet* set = BeginSet(element, stream);
      if (set) ReadMembers(set, stream, 1);
      stream.EndElement(element.Get());
      return set;
    }
    if (!stream.EndElement(element.Get())) return nullptr;
  }
  return nullptr;
}

bool LcUOption::ReadMembersFromXML(LcUExOptionSet* set, LcUXMLDOMStream& stream) {
  return ReadMembers(set, stream, 0);
}

bool LcUOption::WriteToXML(LcUOptionSet* set, LcUXMLDOMStream& stream) {
  if (set->GetFlags() & LcUOptionSet::eTRANSIENT) return true;
  const char* element = set->IsArray() ? "optionarray" : "optionset";
  bool ok = stream.BeginElement(element, 0);
  // The stream's scratch word carries each name, so that names cost no
  // allocation per option.
  LcUStringA& name = stream.scratchWord;
  name = set->name;
  if (!name.IsEmpty()) ok = stream.NarrowAttribute("name", name) && ok;
  LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(set);
  LcUData copy;
  for (int32_t i = 0; i < set->GetCount(); ++i) {
    LcUOptionSet* child = set->GetValue(i, concrete ? nullptr : &copy);
    if (child) {
      ok = WriteToXML(child, stream) && ok;
      continue;
    }
    ok = stream.BeginElement("option", 0) && ok;
    name = set->GetName(i);
    if (!name.IsEmpty()) ok = stream.NarrowAttribute("name", name) && ok;
    int32_t state = int32_t(set->GetState(i));
    if (state) ok = stream.IntAttribute("flags", state) && ok;
    // A writing stream only reads the value.
    ok = (concrete ? concrete->GetRecord(i)->value : copy).SerialiseXML(stream) && ok;
    ok = stream.EndElement("option") && ok;
  }
  return stream.EndElement(element) && ok;
}
