#pragma once
#include "options/LcUOptionRecord.h"
#include "options/LcUOptionSet.h"

// The concrete set: its records in definition order.
class LcUExOptionSet : public LcUOptionSet {
public:
  LcUExOptionSet() = default;
  explicit LcUExOptionSet(uint32_t flags) : setFlags(flags) {}
  ~LcUExOptionSet() override;

  uint32_t GetFlags() override { return setFlags; }
  int32_t GetCount() override { return options.Size(); }
  const char* GetName(int32_t i) override { return options[i]->name.Get(); }
  const char* GetClass(int32_t i) override { return options[i]->className.Get(); }
  uint32_t GetDefineFlags(int32_t i) override { return options[i]->defineFlags; }
  uint32_t GetState(int32_t i) override { return options[i]->state; }
  void SetState(int32_t i, uint32_t state) override { options[i]->state = state; }
  int32_t GetLevel(int32_t i) override { return options[i]->level; }
  bool IsDisabled(int32_t i, void* context) override;
  bool GetRange(int32_t i, LcUData* minOut, LcUData* maxOut) override;
  LcUOptionSet* GetValue(int32_t i, LcUData* out) override;
  bool SetValue(int32_t i, const LcUData& value, LcUString* error) override;
  void OnChange() override {}
  const char* GetSetClass() override { return className.Get(); }
  bool Insert(int32_t i) override;
  bool Remove(int32_t i) override;

  LcUOptionRecord* GetRecord(int32_t i) { return options[i]; }
  // Takes the record. In an array it stops counting as default, and so does
  // every record below it outside nested arrays. False when memory ran out.
  bool Append(LcUOptionRecord* record);
  bool InsertRecord(int32_t i, LcUOptionRecord* record);
  // Takes the record as it is: no array rule, no change noted. For copies
  // and readers building a set.
  bool AddRecord(LcUOptionRecord* record);
  // The record's value or child gives way to `set`, counted.
  void ReplaceChild(int32_t i, LcUOptionSet* set);
  // Takes the record, deleting the one it replaces.
  void ReplaceRecord(int32_t i, LcUOptionRecord* record);
  // The records and their children copied; null when memory ran out.
  LcUExOptionSet* Copy() const;
  // Sets the default bit of every record, down through plain sets; an
  // array's elements are left as they are.
  void MarkDefault();

  uint32_t setFlags = 0;
  LcUStringA className;
  LcUVector<LcUOptionRecord*> options;

private:
  void Adopt(LcUOptionRecord* record);
};
