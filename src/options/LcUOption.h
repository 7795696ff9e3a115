#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUStringA.h"

class LcUData;
class LcUExOptionSet;
class LcUStreamReader;
class LcUStreamWriter;
class LcUXMLDOMStream;
class LcUName;
class LcUOptionSet;
class LcUOptionValidator;
class LcUString;

// The process-wide tree of named, typed settings, reached by dotted paths
// such as "general.localcache.max_size". It holds the present values, a
// second tree of the defaults, and the saved values once they are loaded.
//
// Each operation has a root form, which takes the option lock, and a form
// on an explicit set, which takes none: sets obtained with GetSet are safe
// only inside a LcUOptionLock scope. Reads are typed and convert nothing.
class LcUOption {
public:
  // Merge modes: what happens to the target's state bits.
  enum MergeMode : uint32_t {
    eMERGE_DEFAULT_IF_SOURCE = 1,  // source default makes target default; a changed value ends it
    eMERGE_COPY_DEFAULT = 2,
    eMERGE_COPY_MARK = 4,
    eMERGE_SKIP_MARKED_TARGET = 8,
    eMERGE_SKIP_UNMARKED_SOURCE = 16
  };
  // Merge status bits; 0 is success.
  enum MergeStatus : int32_t {
    eREFUSED = 1, eCANNOT_ADD = 2, eCANNOT_REPLACE = 4, eCANNOT_GROW = 8, eCANNOT_SHRINK = 16, eSTRUCTURE = 32
  };
  enum Filter : uint32_t {
    eONLY_DEFAULT = 1, eONLY_CHANGED = 2, eONLY_MARKED = 4, eONLY_UNMARKED = 8, eONLY_PLAIN_SETS = 16,
    eNO_PLAIN_SETS = 32, eONLY_ATOMIC_SETS = 64, eNO_ATOMIC_SETS = 128, eNO_SETS = 256, eONLY_SETS = 512
  };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // Definitions. A saved value of the same kind that differs from the
  // default, and that the validator accepts, becomes the present value.
  static bool DefineFloat(const char* path, double value, int32_t level = 0, uint32_t flags = 0,
                          const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineInt32(const char* path, int32_t value, int32_t level = 0, uint32_t flags = 0,
                          const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineBoolean(const char* path, bool value, int32_t level = 0, uint32_t flags = 0,
                            const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineWideString(const char* path, const char16_t* value, int32_t level = 0, uint32_t flags = 0,
                               const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineTime(const char* path, int64_t value, int32_t level = 0, uint32_t flags = 0,
                         const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineLinearFloat(const char* path, double value, int32_t level = 0, uint32_t flags = 0,
                                const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineAngularFloat(const char* path, double value, int32_t level = 0, uint32_t flags = 0,
                                 const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineName(const char* path, LcUName* value, int32_t level = 0, uint32_t flags = 0,
                         const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineData(const char* path, const LcUData& value, int32_t level = 0, uint32_t flags = 0,
                         const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  // Into a set under construction; the default tree is not touched.
  static bool DefineFloat(LcUOptionSet* set, const char* path, double value, int32_t level = 0, uint32_t flags = 0,
                          const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineInt32(LcUOptionSet* set, const char* path, int32_t value, int32_t level = 0,
                          uint32_t flags = 0, const char* className = nullptr,
                          LcUOptionValidator* validator = nullptr);
  static bool DefineBoolean(LcUOptionSet* set, const char* path, bool value, int32_t level = 0, uint32_t flags = 0,
                            const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineWideString(LcUOptionSet* set, const char* path, const char16_t* value, int32_t level = 0,
                               uint32_t flags = 0, const char* className = nullptr,
                               LcUOptionValidator* validator = nullptr);
  static bool DefineTime(LcUOptionSet* set, const char* path, int64_t value, int32_t level = 0, uint32_t flags = 0,
                         const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static bool DefineLinearFloat(LcUOptionSet* set, const char* path, double value, int32_t level = 0,
                                uint32_t flags = 0, const char* className = nullptr,
                                LcUOptionValidator* validator = nullptr);
  static bool DefineAngularFloat(LcUOptionSet* set, const char* path, double value, int32_t level = 0,
                                 uint32_t flags = 0, const char* className = nullptr,
                                 LcUOptionValidator* validator = nullptr);
  static bool DefineName(LcUOptionSet* set, const char* path, LcUName* value, int32_t level = 0,
                         uint32_t flags = 0, const char* className = nullptr,
                         LcUOptionValidator* validator = nullptr);
  static bool DefineData(LcUOptionSet* set, const char* path, const LcUData& value, int32_t level = 0,
                         uint32_t flags = 0, const char* className = nullptr,
                         LcUOptionValidator* validator = nullptr);
  // Define, then read back what the option holds, under one lock.
  static bool DefineBooleanAndGet(const char* path, bool value, int32_t level = 0, uint32_t flags = 0,
                                  const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static double DefineFloatAndGet(const char* path, double value, int32_t level = 0, uint32_t flags = 0,
                                  const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  static int32_t DefineInt32AndGet(const char* path, int32_t value, int32_t level = 0, uint32_t flags = 0,
                                   const char* className = nullptr, LcUOptionValidator* validator = nullptr);
  // The set is taken, counted, as the option's child.
  static bool DefineSet(const char* path, LcUOptionSet* set, int32_t level = 0, uint32_t flags = 0,
                        const char* className = nullptr);
  static bool DefineSet(LcUOptionSet* parent, const char* path, LcUOptionSet* set, int32_t level = 0,
                        uint32_t flags = 0, const char* className = nullptr);
  static bool Redefine(const char* path, LcUOptionSet* set);
  static bool Undefine(const char* path);

  // Composites: sets of Float "red", "green", "blue" (class "color") or of
  // LinearFloat "x", "y" and "z" ("point2d", "point3d"), shown as one value.
  // A null parent defines at the root.
  static bool DefineColour(LcUOptionSet* parent, const char* path, const double rgb[3], int32_t level = 0,
                           uint32_t flags = 0, LcUOptionValidator* validator = nullptr);
  static bool DefinePoint2(LcUOptionSet* parent, const char* path, const double xy[2], int32_t level = 0,
                           uint32_t flags = 0, LcUOptionValidator* validator = nullptr);
  static bool DefinePoint3(LcUOptionSet* parent, const char* path, const double xyz[3], int32_t level = 0,
                           uint32_t flags = 0, LcUOptionValidator* validator = nullptr);
  static bool GetColour(LcUOptionSet* set, const char* path, double rgb[3]);
  static bool GetColour(const char* path, double rgb[3]);
  static bool SetColour(LcUOptionSet* set, const char* path, const double rgb[3]);
  static bool SetColour(const char* path, const double rgb[3]);
  static bool GetPoint2(LcUOptionSet* set, const char* path, double xy[2]);
  static bool GetPoint2(const char* path, double xy[2]);
  static bool SetPoint2(LcUOptionSet* set, const char* path, const double xy[2]);
  static bool SetPoint2(const char* path, const double xy[2]);
  static bool GetPoint3(LcUOptionSet* set, const char* path, double xyz[3]);
  static bool GetPoint3(const char* path, double xyz[3]);
  static bool SetPoint3(LcUOptionSet* set, const char* path, const double xyz[3]);
  static bool SetPoint3(const char* path, const double xyz[3]);
  static void ResetColourToDefaults(const char* path);

  // Reads: a missing path or another kind reports and gives 0, false or
  // nothing; the Try forms are silent.
  static double GetFloat(const char* path);
  static int32_t GetInt32(const char* path);
  static bool GetBoolean(const char* path);
  static int64_t GetTime(const char* path);
  static double GetLinearFloat(const char* path);
  static double GetAngularFloat(const char* path);
  static bool GetWideString(const char* path, LcUString& out);
  // `out` gets a counted name, or null.
  static bool GetName(const char* path, LcUName*& out);
  static bool GetData(const char* path, LcUData& out);
  static double GetFloat(LcUOptionSet* set, const char* path);
  static int32_t GetInt32(LcUOptionSet* set, const char* path);
  static bool GetBoolean(LcUOptionSet* set, const char* path);
  static int64_t GetTime(LcUOptionSet* set, const char* path);
  static double GetLinearFloat(LcUOptionSet* set, const char* path);
  static double GetAngularFloat(LcUOptionSet* set, const char* path);
  static bool GetWideString(LcUOptionSet* set, const char* path, LcUString& out);
  static bool GetName(LcUOptionSet* set, const char* path, LcUName*& out);
  static bool GetData(LcUOptionSet* set, const char* path, LcUData& out);
  static bool TryGetFloat(const char* path, double& out);
  static bool TryGetInt32(const char* path, int32_t& out);
  static bool TryGetBoolean(const char* path, bool& out);
  static bool TryGetTime(const char* path, int64_t& out);
  static bool TryGetLinearFloat(const char* path, double& out);
  static bool TryGetAngularFloat(const char* path, double& out);
  static bool TryGetWideString(const char* path, LcUString& out);
  static bool TryGetName(const char* path, LcUName*& out);
  static bool TryGetData(const char* path, LcUData& out);
  static bool TryGetFloat(LcUOptionSet* set, const char* path, double& out);
  static bool TryGetInt32(LcUOptionSet* set, const char* path, int32_t& out);
  static bool TryGetBoolean(LcUOptionSet* set, const char* path, bool& out);
  static bool TryGetTime(LcUOptionSet* set, const char* path, int64_t& out);
  static bool TryGetLinearFloat(LcUOptionSet* set, const char* path, double& out);
  static bool TryGetAngularFloat(LcUOptionSet* set, const char* path, double& out);
  static bool TryGetWideString(LcUOptionSet* set, const char* path, LcUString& out);
  static bool TryGetName(LcUOptionSet* set, const char* path, LcUName*& out);
  static bool TryGetData(LcUOptionSet* set, const char* path, LcUData& out);

  // Assignment through SetOption: same kind only, validator permitting.
  static bool SetFloat(const char* path, double value);
  static bool SetInt32(const char* path, int32_t value);
  static bool SetBoolean(const char* path, bool value);
  static bool SetWideString(const char* path, const char16_t* value);
  static bool SetTime(const char* path, int64_t value);
  static bool SetLinearFloat(const char* path, double value);
  static bool SetAngularFloat(const char* path, double value);
  static bool SetName(const char* path, LcUName* value);
  static bool SetData(const char* path, const LcUData& value);
  static bool SetFloat(LcUOptionSet* set, const char* path, double value);
  static bool SetInt32(LcUOptionSet* set, const char* path, int32_t value);
  static bool SetBoolean(LcUOptionSet* set, const char* path, bool value);
  static bool SetWideString(LcUOptionSet* set, const char* path, const char16_t* value);
  static bool SetTime(LcUOptionSet* set, const char* path, int64_t value);
  static bool SetLinearFloat(LcUOptionSet* set, const char* path, double value);
  static bool SetAngularFloat(LcUOptionSet* set, const char* path, double value);
  static bool SetName(LcUOptionSet* set, const char* path, LcUName* value);
  static bool SetData(LcUOptionSet* set, const char* path, const LcUData& value);
  // Unchanged when equal, state included; otherwise no longer a default.
  static bool SetOption(LcUOptionSet* set, int32_t i, const LcUData& value, LcUString* errorOut);

  // The child set at `path`, or the root for an empty path; not counted.
  static LcUOptionSet* GetSet(const char* path);
  static LcUOptionSet* GetSet(LcUOptionSet* set, const char* path);
  static bool HasDefaults(const char* path);
  static void ResetToDefaults(const char* path);
  static bool SetSetClass(const char* path, const char* className);
  // Creates the sets along the path when missing; the default tree gets the
  // sets but not the flags.
  static bool SetPathFlags(const char* path, uint32_t flags);
  static void Relocalise();
  static void Lock();
  static void Unlock();

  // The saved tree, counted; merged into the present and default trees.
  static void SetSavedOptions(LcUOptionSet* set);
  // A new set, uncounted, with copies of the records that pass `filter`.
  static LcUExOptionSet* CopyFiltered(LcUOptionSet* set, uint32_t filter);
  static void SplitPath(const char* path, LcUStringA& lastOut, LcUStringA& parentOut);
  // The set holding the option and its index there, -1 when absent.
  static LcUOptionSet* FindOption(LcUOptionSet* set, const char* path, int32_t& index);
  // The set where a new option at `path` goes, making the sets missing on
  // the way, with the name to give it; null when the path is malformed or
  // taken.
  static LcUExOptionSet* FindParentForNewOption(LcUOptionSet* root, const char* path, LcUStringA& nameOut);
  static int32_t MergeOption(LcUOptionSet* dest, int32_t i, LcUOptionSet* src, int32_t j, uint32_t mode,
                             bool restructure);
  static int32_t MergeSet(LcUOptionSet* dest, LcUOptionSet* src, uint32_t mode, bool restructure);
  // Same shape with equal values.
  static bool Equal(LcUOptionSet* a, LcUOptionSet* b);

  // Persistence. Readers build a free-standing set, counted 0, from what
  // they find (missing keys give an empty set); records read carry state 0
  // unless their form says otherwise. Writers work on free-standing sets
  // and take no lock.
  enum RegistryMode : uint32_t { eWRITE_DEFAULTS_AS_DELETIONS = 1, eLEAVE_OUT_DEFAULTS = 2 };
  // `mode` bit 0 drops empty values and emptied nested arrays.
  static LcUExOptionSet* ReadFromRegistry(const char16_t* key, uint32_t mode);
  // At the set's dotted path under `key`; WriteKeys at `key` itself.
  static bool WriteToRegistry(LcUOptionSet* set, const char16_t* key, uint32_t mode);
  static bool WriteKeys(LcUOptionSet* set, const char16_t* key, uint32_t mode);
  // The first option set among the children of the current element, or null.
  static LcUExOptionSet* ReadFromXML(LcUXMLDOMStream& stream);
  static bool ReadMembersFromXML(LcUExOptionSet* set, LcUXMLDOMStream& stream);
  static bool WriteToXML(LcUOptionSet* set, LcUXMLDOMStream& stream);
  static LcUExOptionSet* ReadFromStream(LcUStreamReader& stream);
  static void WriteToStream(LcUOptionSet* set, LcUStreamWriter& stream);

  // The roots, for those that hold the lock.
  static LcUExOptionSet* GetPresentRoot();
  static LcUExOptionSet* GetDefaultRoot();
  static LcUOptionSet* GetSavedRoot();
};
