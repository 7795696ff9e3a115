#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "LocaleTesting.h"
#include "SerialTesting.h"
#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonNumber.h"
#include "serial/LcUJsonStream.h"

using SerialTesting::HookCounter;

namespace {
std::string Print(const LcUJsonNode* node, bool pretty = false) {
  char* text = LcUJsonNode::Print(node, pretty);
  if (!text) return "<null>";
  std::string result = text;
  LcUJsonNode::release(text);
  return result;
}

// The compact print of what the text parses to, or "<fail@offset>".
std::string Reparse(const char* text) {
  const char* end = nullptr;
  LcUJsonNode* root = LcUJsonNode::Parse(text, &end, true);
  if (!root) return "<fail@" + std::to_string(LcUJsonNode::jsonErrorPosition - text) + ">";
  std::string printed = Print(root);
  LcUJsonNode::Delete(root);
  return printed;
}

// The bytes of the string that the text is, or that "[...]" holds.
std::string StringOf(const std::string& text) {
  LcUJsonNode* root = LcUJsonNode::Parse(text.c_str());
  const LcUJsonNode* node = root && root->type == LcUJsonNode::eARRAY ? root->firstChild : root;
  std::string value = node && node->stringValue ? node->stringValue : "<none>";
  LcUJsonNode::Delete(root);
  return value;
}

struct Case {
  const char* text;
  const char* expected;
};
}  // namespace

TEST(LcUJsonNode, ValuesByTheirFirstBytes) {
  const Case kCases[] = {
      {"[]", "[]"},
      {" \t\r\n\f\x01[ \x1F]\x20", "[]"},
      {"{}", "{}"},
      {"{ \"a\" : [ 1 , true,false ,null ] }", "{\"a\":[1,true,false,null]}"},
      {"[nul]", "<fail@1>"},
      {"[truex]", "<fail@5>"},
      {"[1,]", "<fail@3>"},
      {"[1 2]", "<fail@3>"},
      {"{\"a\" 1}", "<fail@5>"},
      {"{1:2}", "<fail@1>"},
      {"{\"a\":1,}", "<fail@7>"},
      {"[1]x", "<fail@3>"},
      {"[", "<fail@1>"},
      {"", "<fail@0>"},
      {"'a'", "<fail@0>"},
  };
  for (const Case& c : kCases) EXPECT_EQ(Reparse(c.text), c.expected) << c.text;
  // A word is taken by its prefix; without requireEnd, what follows is left.
  const char* text = "nullx";
  const char* end = nullptr;
  LcUJsonNode* root = LcUJsonNode::Parse(text, &end, false);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->type, LcUJsonNode::eNULL);
  EXPECT_EQ(end, text + 4);
  EXPECT_EQ(LcUJsonNode::jsonErrorPosition, nullptr);
  LcUJsonNode::Delete(root);
  EXPECT_EQ(LcUJsonNode::Parse(nullptr), nullptr);
}

TEST(LcUJsonNode, NumbersFollowTheScan) {
  const Case kCases[] = {
      {"[1.0]", "[1]"},
      {"[0.1]", "[0.10000000000000001]"},
      {"[-0]", "[-0]"},
      {"[1E3,1e+3,1e-3]", "[1000,1000,0.001]"},
      {"[123456789012345678]", "[1.2345678901234568e+17]"},
      {"[1e400,-1e400,1e-400]", "[inf,-inf,0]"},
      {"[4.9406564584124654e-324]", "[4.9406564584124654e-324]"},
      {"[2.,-01,012]", "[2,-1,12]"},
      {"[1e,1E+,0.3e-]", "[1,1,0.29999999999999999]"},
      {"[0x10,-0x1.8p1,0x1p]", "[16,-3,1]"},
      {"[-Infinity,-inf]", "[-inf,-inf]"},
      {"[-nan,-NaN(1)]", "<fail@10>"},
      {"[-NaN]", "[-nan]"},
      {"[-.5]", "[-0.5]"},
      {"[-infin]", "<fail@1>"},
      {"[-]", "<fail@1>"},
      {"[-+1]", "<fail@1>"},
      {"[0x]", "<fail@1>"},
      {"[+1]", "<fail@1>"},
      {"[.5]", "<fail@1>"},
  };
  for (const Case& c : kCases) EXPECT_EQ(Reparse(c.text), c.expected) << c.text;

  LcUJsonNode* root = LcUJsonNode::Parse("[3.9,-3.9,2147483647,2147483648,-2147483649,-nan]");
  ASSERT_NE(root, nullptr);
  const int32_t kInts[] = {3, -3, 2147483647, INT32_MIN, INT32_MIN, INT32_MIN};
  const LcUJsonNode* item = root->firstChild;
  for (int32_t expected : kInts) {
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->type, LcUJsonNode::eNUMBER);
    EXPECT_EQ(item->intValue, expected) << item->doubleValue;
    item = item->next;
  }
  LcUJsonNode::Delete(root);

  // A minus the scan cannot take leaves a node of type 0 and takes nothing.
  const char* text = "-x";
  const char* end = nullptr;
  root = LcUJsonNode::Parse(text, &end, false);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->type, LcUJsonNode::eFALSE);
  EXPECT_EQ(end, text);
  LcUJsonNode::Delete(root);
}

TEST(LcUJsonNode, StringsEscapesAndSurrogates) {
  const Case kCases[] = {
      {"[\"a\\u0041\"]", "aA"},
      {"[\"\\u00e9\\u20AC\"]", "\xC3\xA9\xE2\x82\xAC"},
      {"[\"\\u00ff\\u00FF\\u0fAf\\u00aa\"]", "\xC3\xBF\xC3\xBF\xE0\xBE\xAF\xC2\xAA"},
      {"[\"\\u007f\\u0080\\u07ff\\u0800\\uffff\"]", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {"[\"\\ud800\\udc00\\udbff\\udfff\"]", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {"[\"\\ud83d\\ude00\"]", "\xF0\x9F\x98\x80"},
      {"[\"\\uDBFF\\uDFFF\"]", "\xF4\x8F\xBF\xBF"},
      {"[\"a\\ud83db\"]", "ab"},
      {"[\"\\ud83d\\u0041\"]", "A"},
      {"[\"\\ud83d\\ud83d\\ude00\"]", "\xF0\x9F\x98\x80"},
      {"[\"x\\ude00y\"]", "xy"},
      {"[\"x\\u0000y\"]", "xy"},
      {"[\"\\u00zz1\"]", "1"},
      {"[\"\\u12\"]", ""},
      {"[\"\\b\\f\\n\\r\\t\\/\\\"\\\\\\q\"]", "\b\f\n\r\t/\"\\q"},
      {"[\"raw\x01\t\n\xFF\"]", "raw\x01\t\n\xFF"},
      {"\"unterminated", "unterminated"},
      {"\"ends in \\", "ends in "},
      {"[\"\"]", ""},
  };
  for (const Case& c : kCases) EXPECT_EQ(StringOf(c.text), c.expected) << c.text;
  // An unterminated string ends at the terminator without a failure of its own.
  EXPECT_EQ(Reparse("\"abc"), "\"abc\"");
  EXPECT_EQ(Reparse("[\"abc"), "<fail@5>");
}

TEST(LcUJsonNode, ErrorPositionAndDepth) {
  const char* text = "[1,2,x]";
  EXPECT_EQ(LcUJsonNode::Parse(text), nullptr);
  EXPECT_EQ(LcUJsonNode::jsonErrorPosition, text + 5);
  const char* end = nullptr;
  LcUJsonNode* root = LcUJsonNode::Parse("[1] x", &end, false);
  EXPECT_EQ(LcUJsonNode::jsonErrorPosition, nullptr) << "a parse clears it first";
  ASSERT_NE(root, nullptr);
  EXPECT_STREQ(end, " x");
  LcUJsonNode::Delete(root);

  std::string deep = std::string(LcUJsonNode::eMAX_DEPTH, '[') + std::string(LcUJsonNode::eMAX_DEPTH, ']');
  root = LcUJsonNode::Parse(deep.c_str());
  EXPECT_NE(root, nullptr);
  LcUJsonNode::Delete(root);
  std::string deeper = "[" + deep + "]";
  EXPECT_EQ(LcUJsonNode::Parse(deeper.c_str()), nullptr);
  EXPECT_EQ(LcUJsonNode::jsonErrorPosition, deeper.c_str() + LcUJsonNode::eMAX_DEPTH);
}

TEST(LcUJsonNode, CompactAndPrettyLayouts) {
  const char* compact = "{\"a\":1,\"b\":[1,2,{\"c\":\"x\"}],\"d\":{},\"e\":[],\"f\":[[],{\"g\":null}]}";
  LcUJsonNode* root = LcUJsonNode::Parse(compact);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(Print(root), compact);
  EXPECT_EQ(Print(root, true),
            "{\n"
            "\t\"a\":\t1,\n"
            "\t\"b\":\t[1, 2, {\n"
            "\t\t\t\"c\":\t\"x\"\n"
            "\t\t}],\n"
            "\t\"d\":\t{\n"
            "\t},\n"
            "\t\"e\":\t[],\n"
            "\t\"f\":\t[[], {\n"
            "\t\t\t\"g\":\tnull\n"
            "\t\t}]\n"
            "}");
  LcUJsonNode::Delete(root);
  root = LcUJsonNode::Parse("[{}]");
  EXPECT_EQ(Print(root, true), "[{\n\t}]");
  LcUJsonNode::Delete(root);
  EXPECT_EQ(Print(nullptr), "<null>");
}

// Without fractions the text's block is exactly its size: the printer
// measures before it writes, and must never measure short.
TEST(LcUJsonNode, PrintSizesItsTextExactly) {
  const char* const kTexts[] = {
      "[]",
      "{}",
      "[[[]],{},[{}],{\"a\":{\"b\":{\"c\":[{\"d\":[]}]}}}]",
      "{\"k\\\"ey\":\"v\\u0001\\n\\t\\\\\\\"\\b\\f\\r\",\"n\":[-12,0,7,99999999999999984,-0,-1e16],\"t\":true}",
      "[{\"a\":[{\"b\":1},{\"c\":[false,null]}]},[[{\"d\":\"\"}]]]",
  };
  HookCounter::Install();
  for (const char* text : kTexts) {
    LcUJsonNode* root = LcUJsonNode::Parse(text);
    ASSERT_NE(root, nullptr) << text;
    for (bool pretty : {false, true}) {
      size_t length = 0;
      char* printed = LcUJsonNode::Print(root, pretty, &length);
      ASSERT_NE(printed, nullptr);
      EXPECT_EQ(HookCounter::lastSize, length + 1) << printed;
      EXPECT_EQ(std::strlen(printed), length);
      LcUJsonNode::release(printed);
    }
    LcUJsonNode::Delete(root);
  }
  HookCounter::Uninstall();
}

TEST(LcUJsonNode, PrintedStringsAndNumbers) {
  LcUJsonNode* text = LcUJsonNode::CreateString("\"\\/\b\f\n\r\t\x01\x1F\x7F\xC3\xA9");
  EXPECT_EQ(Print(text), "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\xC3\xA9\"");
  LcUJsonNode::Delete(text);
  // A string without text prints as nothing at all.
  LcUJsonNode* none = LcUJsonNode::CreateString(nullptr);
  EXPECT_EQ(Print(none), "");
  LcUJsonNode::Delete(none);
  const std::pair<double, const char*> kNumbers[] = {
      {1.0, "1"},           {0.1, "0.10000000000000001"}, {-0.0, "-0"},
      {1e21, "1e+21"},      {1e-7, "9.9999999999999995e-08"}, {123456789.0, "123456789"},
      {-1.7976931348623157e308, "-1.7976931348623157e+308"},
      {std::numeric_limits<double>::infinity(), "inf"}};
  for (const auto& n : kNumbers) {
    LcUJsonNode* node = LcUJsonNode::CreateNumber(n.first);
    EXPECT_EQ(Print(node), n.second);
    LcUJsonNode::Delete(node);
  }
}

// Numbers print and parse as in the "C" locale whatever the process's locale.
TEST(LcUJsonNode, NumbersIgnoreTheProcessLocale) {
  if (!LocaleTesting::UseDecimalCommaLocale()) {
    std::setlocale(LC_ALL, "C");
    GTEST_SKIP() << "no locale with a decimal comma";
  }
  LcUJsonNode* root = LcUJsonNode::Parse("[1.5,2.25e1]");
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->firstChild->doubleValue, 1.5);
  EXPECT_EQ(Print(root), "[1.5,22.5]");
  LcUJsonNode::Delete(root);
  LcUJsonStream stream;
  ASSERT_TRUE(stream.LoadText("[0.25,\"-12\"]"));
  stream.EnterArray();
  EXPECT_EQ(stream.ReadDouble(), 0.25);
  EXPECT_EQ(stream.ReadInt64Text(), -12);
  stream.Clear();
  stream.BeginArray();
  stream.WriteDouble(0.1);
  stream.LeaveArray();
  LcUStringA text;
  EXPECT_TRUE(stream.PrintText(true, text));
  EXPECT_STREQ(text.Get(), "[0.10000000000000001]");
  std::setlocale(LC_ALL, "C");
}

TEST(LcUJsonNode, HooksSeeEveryNodeAndText) {
  HookCounter::Install();
  // Six nodes, two names and one string.
  LcUJsonNode* root = LcUJsonNode::Parse("{\"a\":[1,\"x\",null],\"B\":{}}");
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(HookCounter::allocations, 9u);
  EXPECT_EQ(HookCounter::releases, 0u);
  char* text = LcUJsonNode::Print(root, true);
  EXPECT_GT(HookCounter::allocations, 9u);
  LcUJsonNode::release(text);
  LcUJsonNode::Delete(root);
  EXPECT_EQ(HookCounter::releases, HookCounter::allocations);

  // A failed parse gives back what it built.
  HookCounter::Install();
  EXPECT_EQ(LcUJsonNode::Parse("[1,\"a\",{\"b\":[2,x"), nullptr);
  EXPECT_GT(HookCounter::allocations, 0u);
  EXPECT_EQ(HookCounter::releases, HookCounter::allocations);
  HookCounter::Uninstall();
}

// Every allocation in turn fails: each parse and print fails cleanly and leaks nothing.
TEST(LcUJsonNode, AllocationFailuresAreClean) {
  const char* text = "{\"a\":[1,\"x\\u00e9\",null,[true]],\"b\":{\"c\":-2.5}}";
  HookCounter::Install();
  LcUJsonNode* root = LcUJsonNode::Parse(text);
  ASSERT_NE(root, nullptr);
  size_t needed = HookCounter::allocations;
  LcUJsonNode::Delete(root);
  for (size_t failAt = 1; failAt <= needed; ++failAt) {
    HookCounter::Install(failAt);
    EXPECT_EQ(LcUJsonNode::Parse(text), nullptr) << failAt;
    EXPECT_EQ(HookCounter::releases, HookCounter::allocations) << failAt;
  }
  HookCounter::Install();
  root = LcUJsonNode::Parse(text);
  HookCounter::failFrom = HookCounter::allocations + 1;
  EXPECT_EQ(LcUJsonNode::Print(root, false), nullptr);
  EXPECT_EQ(LcUJsonNode::Duplicate(root, true), nullptr);
  HookCounter::failFrom = 0;
  LcUJsonNode::Delete(root);
  EXPECT_EQ(HookCounter::releases, HookCounter::allocations);
  HookCounter::Uninstall();
}

TEST(LcUJsonNode, TreeOperations) {
  HookCounter::Install();
  LcUJsonNode* object = LcUJsonNode::CreateObject();
  const int32_t ints[] = {1, -2};
  const float floats[] = {0.5f};
  const double doubles[] = {0.25, 3};
  const char* const texts[] = {"a", "b"};
  LcUJsonNode::AddToObject(object, "ints", LcUJsonNode::CreateIntArray(ints, 2));
  LcUJsonNode::AddToObject(object, "floats", LcUJsonNode::CreateFloatArray(floats, 1));
  LcUJsonNode::AddToObject(object, "doubles", LcUJsonNode::CreateDoubleArray(doubles, 2));
  LcUJsonNode* strings = LcUJsonNode::CreateStringArray(texts, 2);
  LcUJsonNode::AddToObject(object, "strings", strings);
  LcUJsonNode::AddToObject(object, "flags", LcUJsonNode::CreateArray());
  LcUJsonNode* flags = LcUJsonNode::ObjectItem(object, "FLAGS");
  ASSERT_NE(flags, nullptr);
  LcUJsonNode::AddToArray(flags, LcUJsonNode::CreateTrue());
  LcUJsonNode::AddToArray(flags, LcUJsonNode::CreateFalse());
  LcUJsonNode::AddToArray(flags, LcUJsonNode::CreateNull());
  EXPECT_FALSE(LcUJsonNode::AddToArray(flags, nullptr));
  EXPECT_EQ(Print(object),
            "{\"ints\":[1,-2],\"floats\":[0.5],\"doubles\":[0.25,3],\"strings\":[\"a\",\"b\"],"
            "\"flags\":[true,false,null]}");

  // References share; deleting them leaves the original alone.
  LcUJsonNode::AddReferenceToArray(flags, strings);
  LcUJsonNode::AddReferenceToObject(object, "again", strings);
  LcUJsonNode* ref = LcUJsonNode::ArrayItem(flags, 3);
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(ref->type, LcUJsonNode::eARRAY | LcUJsonNode::eREFERENCE);
  EXPECT_EQ(ref->firstChild, strings->firstChild);
  EXPECT_EQ(ref->name, nullptr);
  LcUJsonNode* copy = LcUJsonNode::Duplicate(ref, true);
  EXPECT_EQ(copy->type, LcUJsonNode::eARRAY);
  EXPECT_NE(copy->firstChild, strings->firstChild);
  EXPECT_EQ(Print(copy), "[\"a\",\"b\"]");
  LcUJsonNode* shallow = LcUJsonNode::Duplicate(copy, false);
  EXPECT_EQ(Print(shallow), "[]");
  LcUJsonNode::Delete(shallow);
  LcUJsonNode::DeleteFromArray(flags, 3);
  LcUJsonNode::DeleteFromObject(object, "again");
  EXPECT_EQ(Print(strings), "[\"a\",\"b\"]");

  // Detach, replace and look-ups.
  EXPECT_EQ(LcUJsonNode::ArraySize(flags), 3);
  LcUJsonNode* detached = LcUJsonNode::DetachFromArray(flags, 1);
  EXPECT_EQ(detached->type, LcUJsonNode::eFALSE);
  EXPECT_EQ(detached->next, nullptr);
  LcUJsonNode::Delete(detached);
  EXPECT_EQ(LcUJsonNode::DetachFromArray(flags, 5), nullptr);
  EXPECT_TRUE(LcUJsonNode::ReplaceInArray(flags, 0, LcUJsonNode::CreateNumber(7)));
  EXPECT_FALSE(LcUJsonNode::ReplaceInArray(flags, 9, copy));
  EXPECT_TRUE(LcUJsonNode::ReplaceInObject(object, "Ints", copy));
  EXPECT_EQ(Print(object),
            "{\"Ints\":[\"a\",\"b\"],\"floats\":[0.5],\"doubles\":[0.25,3],\"strings\":[\"a\",\"b\"],"
            "\"flags\":[7,null]}");
  LcUJsonNode::Delete(LcUJsonNode::DetachFromObject(object, "floats"));
  LcUJsonNode::DeleteFromArray(flags, 0);
  EXPECT_EQ(LcUJsonNode::ArrayItem(flags, 0)->type, LcUJsonNode::eNULL);
  EXPECT_EQ(LcUJsonNode::ArrayItem(flags, -1), nullptr);
  LcUJsonNode::Delete(object);
  EXPECT_EQ(HookCounter::releases, HookCounter::allocations);
  HookCounter::Uninstall();
}

// Nothing is added to or from a null, and the caller keeps the item.
TEST(LcUJsonNode, NullArgumentsAreRefused) {
  HookCounter::Install();
  LcUJsonNode* array = LcUJsonNode::CreateArray();
  LcUJsonNode* object = LcUJsonNode::CreateObject();
  LcUJsonNode* item = LcUJsonNode::CreateNumber(1);
  EXPECT_FALSE(LcUJsonNode::AddToArray(nullptr, item));
  EXPECT_FALSE(LcUJsonNode::AddToObject(nullptr, "a", item));
  EXPECT_FALSE(LcUJsonNode::AddToObject(object, "a", nullptr));
  EXPECT_FALSE(LcUJsonNode::AddReferenceToArray(nullptr, item));
  EXPECT_FALSE(LcUJsonNode::AddReferenceToArray(array, nullptr));
  EXPECT_FALSE(LcUJsonNode::AddReferenceToObject(nullptr, "a", item));
  EXPECT_FALSE(LcUJsonNode::AddReferenceToObject(object, "a", nullptr));
  EXPECT_FALSE(LcUJsonNode::ReplaceInObject(object, "a", item));
  EXPECT_EQ(item->name, nullptr);
  EXPECT_EQ(LcUJsonNode::ArraySize(array), 0);
  EXPECT_EQ(LcUJsonNode::ArraySize(object), 0);
  EXPECT_EQ(LcUJsonNode::ArraySize(nullptr), 0);
  EXPECT_EQ(LcUJsonNode::ObjectItem(nullptr, "a"), nullptr);
  EXPECT_EQ(LcUJsonNode::Duplicate(nullptr, true), nullptr);
  LcUJsonNode::Delete(item);
  LcUJsonNode::Delete(array);
  LcUJsonNode::Delete(object);
  LcUJsonNode::Delete(nullptr);
  EXPECT_EQ(HookCounter::releases, HookCounter::allocations);
  HookCounter::Uninstall();
}

TEST(LcUJsonNode, NamesMatchWithoutCase) {
  EXPECT_TRUE(LcUJsonNode::NamesMatch("Type", "tYPE"));
  EXPECT_TRUE(LcUJsonNode::NamesMatch(nullptr, nullptr));
  EXPECT_FALSE(LcUJsonNode::NamesMatch(nullptr, ""));
  EXPECT_FALSE(LcUJsonNode::NamesMatch("", nullptr));
  EXPECT_FALSE(LcUJsonNode::NamesMatch("Typ", "Type"));
  EXPECT_FALSE(LcUJsonNode::NamesMatch("[", "{"));
  EXPECT_FALSE(LcUJsonNode::NamesMatch("\xC9", "\xE9"));
  LcUJsonNode* root = LcUJsonNode::Parse("{\"KEY\":1,\"key\":2}");
  EXPECT_EQ(LcUJsonNode::ObjectItem(root, "Key")->intValue, 1);
  EXPECT_EQ(LcUJsonNode::ObjectItem(root, "ke"), nullptr);
  LcUJsonNode::Delete(root);
}

// The exact fast paths against the standard "%.17g" conversion, over
// random bit patterns and over the decimal fractions descriptions hold.
TEST(LcUJsonNumber, PrintAgreesWithTheGeneralConversion) {
  auto agrees = [](double value) {
    char ours[LcUJsonNumber::ePRINT_SIZE];
    LcUJsonNumber::Print(value, ours);
    char expected[32];
    std::to_chars_result r = std::to_chars(expected, expected + 31, value, std::chars_format::general, 17);
    *r.ptr = 0;
    return std::string(ours) == expected ? ::testing::AssertionSuccess()
                                         : ::testing::AssertionFailure() << ours << " for " << expected;
  };
  uint64_t seed = 0x9E3779B97F4A7C15ull;
  auto next = [&seed] {
    seed ^= seed << 13;
    seed ^= seed >> 7;
    seed ^= seed << 17;
    return seed;
  };
  for (int i = 0; i < 200000; ++i) {
    double value;
    if (i % 2) {
      uint64_t bits = next();
      std::memcpy(&value, &bits, 8);
    } else {
      value = double(int64_t(next() % 2000000001) - 1000000000) / std::pow(10.0, double(next() % 30));
    }
    ASSERT_TRUE(agrees(value)) << i;
  }
  // Ties round to even; carries reach a new decade.
  for (double value : {0.5, 2.5e-5, 9.9999999999999999e22, 0.99999999999999999, 1e-5, 1e-4, 1e16, 1e17,
                       123456789012345.67, 5e-324, 0.30000000000000004})
    EXPECT_TRUE(agrees(value));
}
