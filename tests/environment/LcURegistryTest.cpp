#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "EnvironmentTesting.h"
#include "RegistrySandbox.h"
#include "environment/LcURegistry.h"
#include "environment/LcUResource.h"
#include "environment/LcUSysRegistry.h"

// One table of cases that must give the same transcript over the Windows
// registry and over the Linux store. Each case writes what it needs below
// its own sandbox's roots, acts, and answers a transcript of results and
// log text; "@0" stands for the full path of location 0.
using namespace EnvironmentTesting;

namespace {
constexpr uint32_t kUser = LcURegistry::eREG_USER, kInherit = LcURegistry::eREG_INHERIT,
                   kBack = LcURegistry::eREG_WRITE_BACK, kQuiet = LcURegistry::eREG_QUIET;
constexpr uint32_t kKeys = LcURegistry::eLIST_SUB_KEYS, kValues = LcURegistry::eLIST_VALUES,
                   kFirst = LcURegistry::eLIST_FIRST_LOCATION;
constexpr int kHkcu = LcUSysRegistry::eHIVE_CURRENT_USER, kHklm = LcUSysRegistry::eHIVE_LOCAL_MACHINE;

// Location 0 is this version's root, 1 and 2 are older ones.
class TestLocations : public LcURegistryLocationProvider {
public:
  explicit TestLocations(const RegistrySandbox& sandbox) {
    for (const char16_t* leaf : {u"v6", u"v5", u"v4"}) roots.push_back(sandbox.Key(leaf));
  }
  int32_t GetLocationCount() const override { return int32_t(roots.size()); }
  const char16_t* GetLocation(int32_t index) const override { return roots[size_t(index)].Get(); }

  std::vector<LcUString> roots;
};

class RegistryFixture : public TempFolderTest {
protected:
  void SetUp() override {
    TempFolderTest::SetUp();
    LcURegistry::Initialize();
    sandbox = new RegistrySandbox(folder);
    locations = new TestLocations(*sandbox);
    previous = LcURegistry::SetRegistryLocationProvider(locations);
    current = this;
    MarkLog();
  }
  void TearDown() override {
    current = nullptr;
    LcURegistry::SetRegistryLocationProvider(previous);
    delete locations;
    delete sandbox;
    LcURegistry::Terminate();
    TempFolderTest::TearDown();
  }
  // What Log() answers starts here.
  void MarkLog() {
    static int marks = 0;
    mark = "=== registry case " + std::to_string(++marks) + " ===\n";
    LcUError::LogF("%s", mark.c_str());
  }

public:
  static RegistryFixture* current;
  RegistrySandbox* sandbox = nullptr;
  TestLocations* locations = nullptr;
  LcURegistryLocationProvider* previous = nullptr;
  std::string mark;
};
RegistryFixture* RegistryFixture::current = nullptr;

// A hive and a location.
struct Place {
  int hive;
  int location;
};
constexpr Place U0{kHkcu, 0}, U1{kHkcu, 1}, U2{kHkcu, 2}, M0{kHklm, 0}, M1{kHklm, 1}, M2{kHklm, 2};

LcUString PathOf(Place place, const char* key) {
  LcUString path(RegistryFixture::current->locations->roots[size_t(place.location)]);
  if (key && *key) {
    path.Append(u'\\');
    path.Append(Wide(key));
  }
  return path;
}

// A narrow value name made wide; null stays null, the default value.
struct Name {
  Name(const char* name) : held(name != nullptr), wide(name ? Wide(name) : LcUString()) {}
  operator const char16_t*() const { return held ? (wide.Get() ? wide.Get() : u"") : nullptr; }
  bool held;
  LcUString wide;
};

void PutRaw(Place place, const char* key, const char* name, uint32_t type, const void* data, uint32_t size) {
  ASSERT_TRUE(LcUSysRegistry::SetValue(place.hive, PathOf(place, key).Get(), Name(name), type, data, size));
}
void PutI32(Place place, const char* key, const char* name, int32_t value) {
  PutRaw(place, key, name, LcUSysRegistry::eTYPE_INT32, &value, sizeof value);
}
void PutI64(Place place, const char* key, const char* name, int64_t value) {
  PutRaw(place, key, name, LcUSysRegistry::eTYPE_INT64, &value, sizeof value);
}
void PutText(Place place, const char* key, const char* name, const std::string& text) {
  std::u16string wide(text.begin(), text.end());
  PutRaw(place, key, name, LcUSysRegistry::eTYPE_TEXT, wide.c_str(), uint32_t(wide.size() + 1) * 2);
}
// `units` of 'x', with or without a terminator. Without, more text follows
// in memory: Windows counts a terminator that the size left out.
void PutLongText(Place place, const char* key, const char* name, size_t units, bool terminated) {
  std::u16string text(units + 1, u'x');
  if (terminated) text[units] = 0;
  PutRaw(place, key, name, LcUSysRegistry::eTYPE_TEXT, text.c_str(), uint32_t(units + terminated) * 2);
}
void MakeKey(Place place, const char* key) {
  ASSERT_TRUE(LcUSysRegistry::CreateKey(place.hive, PathOf(place, key).Get()));
}
bool KeyThere(Place place, const char* key) { return LcUSysRegistry::KeyExists(place.hive, PathOf(place, key).Get()); }

// The stored value as text: "-" when missing.
std::string Raw(Place place, const char* key, const char* name) {
  std::vector<char16_t> buffer(8192);
  uint32_t type = 0, size = uint32_t(buffer.size() * 2);
  if (!LcUSysRegistry::GetValue(place.hive, PathOf(place, key).Get(), Name(name), &type, buffer.data(), &size))
    return "-";
  int64_t number = 0;
  if ((type == LcUSysRegistry::eTYPE_INT32 && size == 4) || (type == LcUSysRegistry::eTYPE_INT64 && size == 8)) {
    if (size == 4) {
      int32_t narrow;
      std::memcpy(&narrow, buffer.data(), 4);
      number = narrow;
    } else {
      std::memcpy(&number, buffer.data(), 8);
    }
    return (size == 4 ? "i32 " : "i64 ") + std::to_string(number);
  }
  size_t units = size / 2;
  while (units && !buffer[units - 1]) --units;
  if (type == LcUSysRegistry::eTYPE_TEXT) return "text " + Narrow(LcUString(buffer.data(), int32_t(units)));
  return "type " + std::to_string(type);
}

// The log since the case began.
std::string Log() {
  std::string text = LogText();
  const std::string& mark = RegistryFixture::current->mark;
  size_t at = text.rfind(mark);
  return at == std::string::npos ? "<mark lost>" : text.substr(at + mark.size());
}

// A listing's names, sorted here: the list promises no order.
std::string Names(LcURegistryNameList* list) {
  if (!list) return "null";
  std::vector<std::string> names;
  for (LcUString name; list->IsValid(); list->Next()) {
    list->GetName(name);
    names.push_back(Narrow(name));
  }
  LcURegistry::FreeNameList(list);
  std::sort(names.begin(), names.end());
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : ",") + name;
  return "[" + joined + "]";
}

// For each place, a value and a sub-key under key named after it: "u0", "ku0".
void Spread(const char* key, std::initializer_list<Place> places) {
  for (Place place : places) {
    std::string tag = std::string(place.hive == kHkcu ? "u" : "m") + char('0' + place.location);
    PutI32(place, key, tag.c_str(), 1);
    MakeKey(place, (std::string(key) + "\\k" + tag).c_str());
  }
}

// A transcript; unlike `+`, `<<` runs its operands left to right.
class Out {
public:
  Out& operator<<(const std::string& value) { return Add(value); }
  Out& operator<<(const char* value) { return Add(value); }
  Out& operator<<(bool value) { return Add(value ? "true" : "false"); }
  Out& operator<<(double value) {
    char number[32];
    std::snprintf(number, sizeof number, "%.17g", value);
    return Add(number);
  }
  template <typename Integer, typename = std::enable_if_t<std::is_integral<Integer>::value>>
  Out& operator<<(Integer value) {
    return Add(std::to_string(value));
  }
  Out& operator<<(const LcUString& value) { return Add(value.IsNull() ? "<null>" : "\"" + Narrow(value) + "\""); }
  Out& operator<<(const LcUStringA& value) {
    return Add(value.Get() ? "\"" + std::string(value.Get()) + "\"" : "<null>");
  }
  operator std::string() const { return text; }

private:
  Out& Add(const std::string& more) {
    text += more;
    return *this;
  }
  std::string text;
};

// The read failure as it reaches the log, with no line end of its own.
std::string ReadError(const std::string& hive, const std::string& name) {
  return "Error reading from registry entry: " + hive + "\\@0\\k\\" + name +
         " -- either repair/re-install Tarnwicket or ask your administrator to provide your user account with "
         "sufficient permissions for the key " +
         hive + "\\@0\\k.";
}
const std::string kCu = "HKEY_CURRENT_USER", kLm = "HKEY_LOCAL_MACHINE";

struct RegistryCase {
  const char* name;
  std::function<std::string()> run;
  std::string expected;
};

void PrintTo(const RegistryCase& c, std::ostream* out) { *out << c.name; }

const std::vector<RegistryCase>& Cases() {
  static const std::vector<RegistryCase> cases = {
      // Typed reads, the flags and the log line.
      {"FoundLogsArrow",
       [] {
         PutI32(U0, "k", "n", 5);
         return Out() << LcURegistry::RegGetI32(u"k", u"n", 7, kUser) << " | " << Log();
       },
       "5 | RegGetI32 \"k\" \"n\" -> 5\n"},
      {"MissingLoudTellsThenLogsDefault",
       [] { return Out() << LcURegistry::RegGetI32("k", "n", 7, 0) << " | " << Log(); },
       "7 | " + ReadError(kLm, "n") + "RegGetI32 \"k\" \"n\" = 7\n"},
      {"QuietAndWriteBackAreSilent",
       [] {
         return Out() << LcURegistry::RegGetI32("k", "a", 7, kUser | kQuiet) << " " << Raw(U0, "k", "a") << " "
                      << LcURegistry::RegGetI32("k", "b", 8, kUser | kBack) << " " << Raw(U0, "k", "b") << " | "
                      << Log();
       },
       "7 - 8 i32 8 | RegGetI32 \"k\" \"a\" = 7\nRegGetI32 \"k\" \"b\" = 8\n"},
      {"HiveFollowsTheUserBitAlone",
       [] {
         PutI32(M0, "k", "n", 1);
         PutI32(U0, "k", "n", 2);
         return Out() << LcURegistry::RegGetI32("k", "n", 0, kQuiet) << LcURegistry::RegGetI32("k", "n", 0, kUser)
                      << LcURegistry::RegGetI32("k", "n", 0, kInherit) << " " << LcURegistry::RegSetI32("k", "w", 3, 0)
                      << " " << Raw(M0, "k", "w") << " " << Raw(U0, "k", "w");
       },
       "121 true i32 3 -"},
      {"WrongTypeIsMissingAndOlderRootsAreNotAsked",
       [] {
         PutText(U0, "k", "n", "5");
         PutI32(U1, "k", "n", 9);
         return Out() << LcURegistry::RegGetI32("k", "n", 3, kUser | kInherit) << " | " << Log();
       },
       "3 | " + ReadError(kCu, "n") + "RegGetI32 \"k\" \"n\" = 3\n"},
      {"WrongTypeQuietOrReplacedOnWriteBack",
       [] {
         PutText(U0, "k", "n", "5");
         PutI32(U1, "k", "n", 9);
         return Out() << LcURegistry::RegGetI32("k", "n", 3, kUser | kInherit | kQuiet) << " " << Raw(U0, "k", "n")
                      << " " << LcURegistry::RegGetI32("k", "n", 4, kUser | kInherit | kBack) << " "
                      << Raw(U0, "k", "n") << " | " << Log();
       },
       "3 text 5 4 i32 4 | RegGetI32 \"k\" \"n\" = 3\nRegGetI32 \"k\" \"n\" = 4\n"},
      {"EachReadTakesItsOwnTypeOnly",
       [] {
         PutI32(U0, "k", "small", 5);
         PutI64(U0, "k", "big", -1234567890123456789LL);
         const uint32_t f = kUser | kQuiet;
         return Out() << LcURegistry::RegGetI64("k", "small", -1, f) << " " << LcURegistry::RegGetI32("k", "big", -1, f)
                      << " " << LcURegistry::RegGetF("k", "small", 1.5, f) << " "
                      << LcURegistry::RegGetI64("k", "big", 0, f);
       },
       "-1 -1 1.5 -1234567890123456789"},

      // Inheritance from older roots.
      {"InheritsFromTheFirstOlderRootOfTheRightType",
       [] {
         PutI32(U1, "k", "n", 11);
         PutI32(U2, "k", "n", 12);
         PutText(U1, "k", "m", "x");
         PutI32(U2, "k", "m", 13);
         return Out() << LcURegistry::RegGetI32("k", "n", 0, kUser | kInherit) << " "
                      << LcURegistry::RegGetI32("k", "m", 0, kUser | kInherit) << " " << Raw(U0, "k", "n") << " | "
                      << Log();
       },
       "11 13 - | RegGetI32 \"k\" \"n\" -> 11\nRegGetI32 \"k\" \"m\" -> 13\n"},
      {"InheritWriteBackCopiesToLocationZeroOnly",
       [] {
         PutI64(U2, "k", "n", 1234567890123LL);
         PutText(M1, "k", "t", "older");
         LcUString text;
         return Out() << LcURegistry::RegGetI64("k", "n", 0, kUser | kInherit | kBack) << " " << Raw(U0, "k", "n")
                      << " " << Raw(U1, "k", "n") << " " << LcURegistry::RegGetW("k", "t", u"d", text, kInherit | kBack)
                      << " " << text << " " << Raw(M0, "k", "t");
       },
       "1234567890123 i64 1234567890123 - true \"older\" text older"},
      {"InheritNeedsItsFlagAndStaysInItsHive",
       [] {
         PutI32(U1, "k", "n", 11);
         PutI32(M1, "k", "m", 12);
         return Out() << LcURegistry::RegGetI32("k", "n", 4, kUser | kQuiet) << " "
                      << LcURegistry::RegGetI32("k", "m", 4, kUser | kInherit | kQuiet);
       },
       "4 4"},

      // The default value.
      {"DefaultValueIsNamedInMessages",
       [] { return Out() << LcURegistry::RegGetI32("k", nullptr, 4, kUser) << " | " << Log(); },
       "4 | " + ReadError(kCu, "(Default)") + "RegGetI32 \"k\" \"\" = 4\n"},
      {"DefaultValueReadsAndWrites",
       [] {
         return Out() << LcURegistry::RegSetI32("k", nullptr, 6, kUser) << " "
                      << LcURegistry::RegGetI32("k", nullptr, 0, kUser) << " " << Raw(U0, "k", nullptr) << " | "
                      << Raw(U0, "k", "");
       },
       "true 6 i32 6 | i32 6"},

      // Numbers kept as text.
      {"FloatParsesItsText",
       [] {
         PutText(U0, "k", "n", "2.75");
         return Out() << LcURegistry::RegGetF("k", "n", 1.0, kUser) << " | " << Log();
       },
       "2.75 | RegGetF \"k\" \"n\" -> 2.75\n"},
      {"FloatOfTextThatIsNoNumberIsMissing",
       [] {
         PutText(U0, "k", "a", "abc");
         PutText(U0, "k", "b", "abc");
         return Out() << LcURegistry::RegGetF("k", "a", 2.5, kUser) << " " << Raw(U0, "k", "a") << " "
                      << LcURegistry::RegGetF("k", "b", 2.5, kUser | kBack) << " " << Raw(U0, "k", "b") << " | "
                      << Log();
       },
       "2.5 text abc 2.5 text 2.5000000000000000000 | RegGetF \"k\" \"a\" = 2.5\nRegGetF \"k\" \"b\" = 2.5\n"},
      {"FloatWrittenFixedWithNineteenDecimals",
       [] {
         LcURegistry::RegGetF("k", "a", -1234.5, kUser | kBack);
         LcURegistry::RegGetF("k", "b", 0.1, kUser | kBack);
         LcURegistry::RegSetF("k", "c", 0.0, kUser);
         return Out() << Raw(U0, "k", "a") << " | " << Raw(U0, "k", "b") << " | " << Raw(U0, "k", "c");
       },
       "text -1234.5000000000000000000 | text 0.1000000000000000056 | text 0.0000000000000000000"},
      {"FloatTextMustFitItsBuffer",
       [] {
         PutText(U0, "k", "fits", std::string(60, '0') + "2.5");      // 128 bytes with its end
         PutText(U0, "k", "too long", std::string(61, '0') + "2.5");  // 130
         return Out() << LcURegistry::RegGetF("k", "fits", 1.0, kUser | kQuiet) << " "
                      << LcURegistry::RegGetF("k", "too long", 1.0, kUser | kQuiet);
       },
       "2.5 1"},

      // Sizes and booleans.
      {"SizeReadsEitherWidthSignExtended",
       [] {
         PutI64(U0, "k", "wide", int64_t(1) << 40);
         PutI32(U0, "k", "narrow", -2);
         return Out() << LcURegistry::RegGetT("k", "wide", 0, kUser) << " "
                      << LcURegistry::RegGetT("k", "narrow", 0, kUser) << " | " << Log();
       },
       "1099511627776 18446744073709551614 | RegGetT \"k\" \"wide\" -> 1099511627776\n"
       "RegGetT \"k\" \"narrow\" -> 18446744073709551614\n"},
      {"SizeDefaultWrittenAsInt64AndToldOnce",
       [] {
         return Out() << LcURegistry::RegGetT("k", "a", 77, kUser | kBack) << " " << Raw(U0, "k", "a") << " "
                      << LcURegistry::RegGetT("k", "n", 78, kUser) << " | " << Log();
       },
       "77 i64 77 78 | RegGetT \"k\" \"a\" = 77\n" + ReadError(kCu, "n") + "RegGetT \"k\" \"n\" = 78\n"},
      {"BoolIsTrueOnlyForOne",
       [] {
         PutI32(U0, "k", "one", 1);
         PutI32(U0, "k", "two", 2);
         PutI32(U0, "k", "zero", 0);
         return Out() << LcURegistry::RegGetBool("k", "one", false, kUser)
                      << LcURegistry::RegGetBool("k", "two", true, kUser)
                      << LcURegistry::RegGetBool("k", "zero", true, kUser)
                      << LcURegistry::RegGetBool("k", "missing", true, kUser | kBack) << " " << Raw(U0, "k", "missing");
       },
       "truefalsefalsetrue i32 1"},

      // Text.
      {"TextFoundBothWidths",
       [] {
         PutText(U0, "k", "n", "hello");
         LcUString wide;
         LcUStringA narrow;
         return Out() << LcURegistry::RegGetW("k", "n", u"d", wide, kUser) << " " << wide << " "
                      << LcURegistry::RegGetA("k", "n", "d", narrow, kUser) << " " << narrow << " | " << Log();
       },
       "true \"hello\" true \"hello\" | RegGetW \"k\" \"n\" -> hello\nRegGetA \"k\" \"n\" -> hello\n"},
      {"TextMissingWideShowsArrowNarrowEquals",
       [] {
         LcUString wide;
         LcUStringA narrow;
         return Out() << LcURegistry::RegGetW("k", "w", u"dw", wide, kUser | kQuiet) << " " << wide << " "
                      << Raw(U0, "k", "w") << " " << LcURegistry::RegGetA("k", "a", "da", narrow, kUser | kBack) << " "
                      << narrow << " " << Raw(U0, "k", "a") << " | " << Log();
       },
       "false \"dw\" - false \"da\" text da | RegGetW \"k\" \"w\" -> dw\nRegGetA \"k\" \"a\" = da\n"},
      {"EmptyAndNullTextShowTheirWords",
       [] {
         PutText(U0, "k", "n", "");
         LcUString stored, missing;
         LcUStringA narrow;
         return Out() << LcURegistry::RegGetW("k", "n", u"d", stored, kUser) << stored.IsEmpty() << " "
                      << LcURegistry::RegGetW("k", "w", nullptr, missing, kUser | kBack) << missing.IsEmpty() << " "
                      << LcURegistry::RegGetA("k", "a", nullptr, narrow, kUser | kBack) << " " << narrow << " "
                      << Raw(U0, "k", "w") << Raw(U0, "k", "a") << " | " << Log();
       },
       "truetrue falsetrue false <null> -- | RegGetW \"k\" \"n\" -> (empty)\nRegGetW \"k\" \"w\" -> (empty)\n"
       "RegGetA \"k\" \"a\" = (null)\n"},
      {"TextOfFourThousandBytesEndsThere",
       [] {
         PutLongText(U0, "k", "ended", 1999, true);
         PutLongText(U0, "k", "open", 2000, false);
         LcUString a, b;
         return Out() << LcURegistry::RegGetW("k", "ended", u"d", a, kUser) << " " << a.Length() << " "
                      << LcURegistry::RegGetW("k", "open", u"d", b, kUser) << " " << b.Length();
       },
       "true 1999 true 1999"},
      {"TextBeyondTheBufferIsMissing",
       [] {
         PutLongText(U0, "k", "n", 2000, true);
         LcUString out;
         return Out() << LcURegistry::RegGetW("k", "n", u"d", out, kUser) << " " << out << " | " << Log();
       },
       "false \"d\" | " + ReadError(kCu, "n") + "RegGetW \"k\" \"n\" -> d\n"},

      // Writes go to location 0 of the chosen hive.
      {"WritesOfEveryKind",
       [] {
         const uint32_t f = kUser | kInherit;
         return Out() << LcURegistry::RegSetI32("k", "i32", -5, f) << LcURegistry::RegSetI64("k", "i64", 1, f)
                      << LcURegistry::RegSetT("k", "t", 2, f) << LcURegistry::RegSetF("k", "f", 2.5, f)
                      << LcURegistry::RegSetBool("k", "b", true, f) << LcURegistry::RegSetA("k", "a", "abc", f)
                      << LcURegistry::RegSetW("k", "w", u"wide", f) << LcURegistry::RegSetA("k", "na", nullptr, f)
                      << LcURegistry::RegSetW("k", "nw", nullptr, f) << " | " << Raw(U0, "k", "i32") << ", "
                      << Raw(U0, "k", "i64") << ", " << Raw(U0, "k", "t") << ", " << Raw(U0, "k", "f") << ", "
                      << Raw(U0, "k", "b") << ", " << Raw(U0, "k", "a") << ", " << Raw(U0, "k", "w") << ", "
                      << Raw(U0, "k", "na") << Raw(U0, "k", "nw") << " | " << KeyThere(U1, "k") << " | " << Log();
       },
       "truetruetruetruetruetruetruefalsefalse | i32 -5, i64 1, i64 2, text 2.5000000000000000000, i32 1, text abc, "
       "text wide, -- | false | "},

      // Names compare without regard to case and keep their first spelling.
      {"KeyAndValueNamesIgnoreCase",
       [] {
         LcURegistry::RegSetI32("Key\\Sub", "MixedName", 1, kUser);
         LcURegistry::RegSetI32("KEY\\sub", "MIXEDNAME", 2, kUser);
         LcUString sub, value;
         LcUSysRegistry::GetSubKey(kHkcu, PathOf(U0, "key").Get(), 0, &sub, nullptr, nullptr);
         LcUSysRegistry::GetValueName(kHkcu, PathOf(U0, "kEy\\SUB").Get(), 0, &value, nullptr);
         return Out() << LcURegistry::RegGetI32("key\\SUB", "mixedname", 0, kUser) << " "
                      << LcUSysRegistry::CountSubKeys(kHkcu, PathOf(U0, "key").Get()) << " "
                      << LcUSysRegistry::CountValues(kHkcu, PathOf(U0, "Key\\Sub").Get()) << " " << sub << " " << value;
       },
       "2 1 1 \"Sub\" \"MixedName\""},

      // Listings: which places each flag visits.
      {"ListLocationZeroOfBothHivesOrTheMachines",
       [] {
         Spread("list", {U0, M0, U1, M1});
         return Out() << Names(LcURegistry::ListNames("list", kUser, kValues)) << " "
                      << Names(LcURegistry::ListNames("list", kUser, kKeys)) << " "
                      << Names(LcURegistry::ListNames("list", 0, kKeys | kValues)) << " "
                      << Names(LcURegistry::ListNames("list", kInherit, kValues));
       },
       "[m0,u0] [km0,ku0] [km0,m0] [m0,m1]"},
      {"ListInheritVisitsEveryLocation",
       [] {
         Spread("list", {U0, M0, U1, M1, U2, M2});
         return Out() << Names(LcURegistry::ListNames("list", kUser | kInherit, kKeys | kValues));
       },
       "[km0,km1,km2,ku0,ku1,ku2,m0,m1,m2,u0,u1,u2]"},
      {"ListStopsAtTheFirstPlaceThatGaveNames",
       [] {
         const uint32_t f = kUser | kInherit, w = kValues | kFirst;
         Spread("a", {U0, M0, U1});
         Spread("b", {M0, U1});
         Spread("c", {M1, U1, U2});
         Spread("d", {M1, M2});
         Spread("e", {M2});
         return Out() << Names(LcURegistry::ListNames("a", f, w)) << Names(LcURegistry::ListNames("b", f, w))
                      << Names(LcURegistry::ListNames("c", f, w)) << Names(LcURegistry::ListNames("d", f, w))
                      << Names(LcURegistry::ListNames("e", f, w)) << Names(LcURegistry::ListNames("e", kUser, w)) << " "
                      << Names(LcURegistry::ListNames("a", f, w | kKeys));
       },
       "[u0][m0][u1][m1][m2][] [ku0,u0]"},
      {"ListDropsTheDefaultValueAndRepeats",
       [] {
         PutI32(U0, "list", nullptr, 1);
         PutI32(U0, "list", "Same", 1);
         PutI32(M0, "list", "SAME", 1);
         PutI32(U1, "list", "same", 1);
         return Out() << Names(LcURegistry::ListNames("list", kUser | kInherit, kValues));
       },
       "[Same]"},
      {"ListWithWriteBackCreatesTheUserKey",
       [] {
         return Out() << Names(LcURegistry::ListNames("plain", kUser, kKeys | kValues)) << " "
                      << Names(LcURegistry::ListNames("made", kUser | kBack, kKeys | kValues)) << " | "
                      << KeyThere(U0, "plain") << KeyThere(U0, "made") << KeyThere(M0, "made");
       },
       "[] [] | falsetruefalse"},

      // Keys: deletion, enumeration and their figures.
      {"DeleteKeyRecursiveOrNot",
       [] {
         PutI32(U0, "tree\\a\\b", "n", 1);
         PutI32(U0, "tree", "n", 1);
         LcUString tree = PathOf(U0, "tree"), leaf = PathOf(U0, "tree\\a\\b");
         Out out;
         out << LcUSysRegistry::DeleteKey(kHkcu, tree.Get(), false) << KeyThere(U0, "tree\\a\\b") << " "
             << LcUSysRegistry::DeleteKey(kHkcu, leaf.Get(), false) << KeyThere(U0, "tree\\a\\b")
             << KeyThere(U0, "tree\\a") << " ";
         PutI32(U0, "tree\\a\\c\\d", "n", 1);
         out << LcUSysRegistry::DeleteKey(kHkcu, tree.Get(), true) << KeyThere(U0, "tree") << KeyThere(U0, "") << " "
             << LcUSysRegistry::DeleteKey(kHkcu, tree.Get(), true)
             << LcUSysRegistry::DeleteKey(kHkcu, tree.Get(), false);
         return out;
       },
       "falsetrue truefalsetrue truefalsetrue falsefalse"},
      {"DeleteAllUserKeysTakesEveryUserLocation",
       [] {
         Spread("k", {U0, U1, U2, M0, M1});
         return Out() << LcURegistry::DeleteAllUserKeys() << " " << KeyThere(U0, "") << KeyThere(U1, "")
                      << KeyThere(U2, "") << " " << KeyThere(M0, "k") << KeyThere(M1, "k") << " "
                      << LcURegistry::DeleteAllUserKeys();
       },
       "true falsefalsefalse truetrue false"},
      {"UserKeyAndValueMadeAndDeleted",
       [] {
         PutI32(U0, "k", "n", 1);
         LcUString key = PathOf(U0, "k");
         return Out() << LcURegistry::CreateUserKey(u"made\\deep") << KeyThere(U0, "made\\deep") << KeyThere(M0, "made")
                      << " " << LcURegistry::DeleteUserKey(PathOf(U0, "made").Get()) << KeyThere(U0, "made") << " "
                      << LcUSysRegistry::DeleteValue(kHkcu, key.Get(), u"N") << Raw(U0, "k", "n")
                      << LcUSysRegistry::DeleteValue(kHkcu, key.Get(), u"n") << KeyThere(U0, "k");
       },
       "truetruefalse truefalse true-falsetrue"},
      {"KeyInfoCountsAndLongestNames",
       [] {
         MakeKey(U0, "k\\a");
         MakeKey(U0, "k\\abcdef\\deeper-and-longer");
         PutI32(U0, "k", "x", 1);
         PutText(U0, "k", "longername", "hello");
         PutI64(U0, "k", nullptr, 1);
         uint32_t subKeys = 0, maxSubKey = 0, values = 0, maxValueName = 0, maxValue = 0;
         int64_t written = 0;
         LcUString key = PathOf(U0, "k"), none = PathOf(U0, "none");
         return Out() << LcUSysRegistry::GetKeyInfo(kHkcu, key.Get(), &subKeys, &maxSubKey, &values, &maxValueName,
                                                    &maxValue, &written)
                      << " " << subKeys << " " << maxSubKey << " " << values << " " << maxValueName << " " << maxValue
                      << " " << (written > 0) << " "
                      << LcUSysRegistry::GetKeyInfo(kHkcu, key.Get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                                    nullptr)
                      << LcUSysRegistry::GetKeyInfo(kHkcu, none.Get(), &subKeys, nullptr, nullptr, nullptr, nullptr,
                                                    nullptr);
       },
       "true 2 6 3 10 12 true truefalse"},
      {"SubKeysComeInNameOrderWithoutCase",
       [] {
         for (const char* name : {"beta", "Alpha", "gamma", "BETA2", "Zulu", "aardvark", "delta9", "Delta10"})
           MakeKey(U0, (std::string("k\\") + name).c_str());
         Out out;
         LcUString name, key = PathOf(U0, "k");
         for (uint32_t i = 0; LcUSysRegistry::GetSubKey(kHkcu, key.Get(), i, &name, nullptr, nullptr); ++i)
           out << Narrow(name) << " ";
         return out << LcUSysRegistry::CountSubKeys(kHkcu, key.Get());
       },
       "aardvark Alpha beta BETA2 Delta10 delta9 gamma Zulu 8"},
      {"ValueNamesPastTheEnumerationBufferEndIt",
       [] {
         std::string fits(4095, 'f'), over(4096, 'o');
         PutI32(U0, "fits", fits.c_str(), 1);
         PutI32(U0, "over", over.c_str(), 1);
         LcUString name;
         return Out() << LcUSysRegistry::GetValueName(kHkcu, PathOf(U0, "fits").Get(), 0, &name, nullptr) << " "
                      << name.Length() << " "
                      << LcUSysRegistry::GetValueName(kHkcu, PathOf(U0, "over").Get(), 0, &name, nullptr) << " "
                      << LcUSysRegistry::HasValue(kHkcu, PathOf(U0, "over").Get(), Wide(over).Get());
       },
       "true 4095 false true"},
  };
  return cases;
}

class LcURegistryTable : public RegistryFixture, public ::testing::WithParamInterface<RegistryCase> {};

TEST_P(LcURegistryTable, SameOnEveryPlatform) {
  std::string expected = GetParam().expected, root = Narrow(locations->roots[0]);
  for (size_t at = expected.find("@0"); at != std::string::npos; at = expected.find("@0", at + root.size()))
    expected.replace(at, 2, root);
  EXPECT_EQ(GetParam().run(), expected);
}

INSTANTIATE_TEST_SUITE_P(Registry, LcURegistryTable, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<RegistryCase>& info) { return info.param.name; });

// Once resources are up, the word for the default value is theirs.
class LcURegistryMessages : public RegistryFixture {};

TEST_F(LcURegistryMessages, DefaultEntryWordComesFromResources) {
  ASSERT_TRUE(LcUResource::Initialize());
  // Starting resources starts the session, which installs its own locations.
  LcURegistry::SetRegistryLocationProvider(locations);
  ASSERT_TRUE(LcUResource::DefineString("lcuregistry_default_registry_entry_name", u"(Standard)"));
  MarkLog();
  LcURegistry::RegGetI32("k", nullptr, 4, kUser);
  std::string logged = Log();
  LcUResource::Terminate();
  EXPECT_NE(logged.find("\\k\\(Standard) -- either"), std::string::npos) << logged;
}
}  // namespace
