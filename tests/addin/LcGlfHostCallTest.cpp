#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "TestHost.h"
#include "addin/LcGlfErrorInfo.h"
#include "addin/LcGlfHostCall.h"

namespace {
const DISPID kAnswer = 0x3000101;

VARIANT Typed(VARTYPE type) {
  VARIANT v;
  VariantInit(&v);
  v.vt = type;
  return v;
}

VARIANT Text(const char16_t* text) {
  VARIANT v = Typed(VT_BSTR);
  v.bstrVal = text ? SysAllocString(reinterpret_cast<const OLECHAR*>(text)) : nullptr;
  return v;
}

struct Answer {
  const char* name;
  VARIANT value;
};

// The host's answer to one get of kAnswer, coerced to type.
HRESULT Ask(const VARIANT& answer, VARTYPE type, VARIANT& result) {
  TestDispatch host;
  host.SetProperty(kAnswer, answer);
  return LcGlfHostCall::Invoke(&host, kAnswer, DISPATCH_PROPERTYGET, type, &result);
}

std::u16string Read(const VARIANT& value) {
  return value.bstrVal ? std::u16string(reinterpret_cast<const char16_t*>(value.bstrVal), SysStringLen(value.bstrVal))
                       : u"(null)";
}
}  // namespace

// The platform's own conversion rules: the values are those of Windows'
// VariantChangeType, and the Linux build must give the same.
TEST(LcGlfHostCall, AWindowHandleInAnyIntegerOrRealType) {
  struct Case {
    Answer answer;
    HRESULT hr;
    LONG value;
  };
  auto make = [](VARTYPE type, auto set) {
    VARIANT v = Typed(type);
    set(v);
    return v;
  };
  const Case cases[] = {
      {{"UI4 above INT_MAX keeps its bits", make(VT_UI4, [](VARIANT& v) { v.ulVal = 0x80000000u; })}, S_OK, INT_MIN},
      {{"I8 in range", make(VT_I8, [](VARIANT& v) { v.llVal = -7; })}, S_OK, -7},
      {{"I8 out of range", make(VT_I8, [](VARIANT& v) { v.llVal = 0x100000000LL; })}, DISP_E_OVERFLOW, 0},
      {{"R4 halves go to even", make(VT_R4, [](VARIANT& v) { v.fltVal = 2.5f; })}, S_OK, 2},
      {{"R4 1.5", make(VT_R4, [](VARIANT& v) { v.fltVal = 1.5f; })}, S_OK, 2},
      {{"R4 -2.5", make(VT_R4, [](VARIANT& v) { v.fltVal = -2.5f; })}, S_OK, -2},
      {{"R8 at the lower bound", make(VT_R8, [](VARIANT& v) { v.dblVal = -2147483648.5; })}, S_OK, INT_MIN},
      {{"R8 rounding past the top", make(VT_R8, [](VARIANT& v) { v.dblVal = 2147483647.5; })}, DISP_E_OVERFLOW, 0},
      {{"UI1", make(VT_UI1, [](VARIANT& v) { v.bVal = 200; })}, S_OK, 200},
      {{"I2", make(VT_I2, [](VARIANT& v) { v.iVal = -3; })}, S_OK, -3},
      {{"BOOL", make(VT_BOOL, [](VARIANT& v) { v.boolVal = VARIANT_TRUE; })}, S_OK, -1},
      {{"empty", Typed(VT_EMPTY)}, S_OK, 0},
      {{"null", Typed(VT_NULL)}, DISP_E_TYPEMISMATCH, 0},
      {{"error", Typed(VT_ERROR)}, DISP_E_TYPEMISMATCH, 0},
      {{"text with spaces", Text(u" 42 ")}, S_OK, 42},
      {{"text with a separator", Text(u"1,000")}, S_OK, 1000},
      {{"hexadecimal text", Text(u"&H10")}, S_OK, 16},
      {{"text rounds", Text(u"2.5")}, S_OK, 2},
      {{"not a number", Text(u"abc")}, DISP_E_TYPEMISMATCH, 0},
      {{"empty text", Text(u"")}, DISP_E_TYPEMISMATCH, 0},
  };
  for (const Case& c : cases) {
    VARIANT result;
    EXPECT_EQ(c.hr, Ask(c.answer.value, VT_I4, result)) << c.answer.name;
    if (c.hr != S_OK) continue;
    EXPECT_EQ(VT_I4, result.vt) << c.answer.name;
    EXPECT_EQ(c.value, result.lVal) << c.answer.name;
  }
}

TEST(LcGlfHostCall, AnAngleOrFlagInAnyNumericType) {
  VARIANT r4 = Typed(VT_R4), i8 = Typed(VT_I8), r8 = Typed(VT_R8), one = Typed(VT_BOOL);
  r4.fltVal = 0.1f;
  i8.llVal = 0x100000000LL;
  r8.dblVal = 0.1;
  one.boolVal = 1;
  VARIANT result;
  ASSERT_EQ(S_OK, Ask(r4, VT_R8, result));
  EXPECT_EQ(double(0.1f), result.dblVal);
  ASSERT_EQ(S_OK, Ask(i8, VT_R8, result));
  EXPECT_EQ(4294967296.0, result.dblVal);
  ASSERT_EQ(S_OK, Ask(Text(u"-1e3"), VT_R8, result));
  EXPECT_EQ(-1000.0, result.dblVal);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Ask(Typed(VT_NULL), VT_R8, result));

  struct Flag {
    Answer answer;
    VARIANT_BOOL value;
  };
  const Flag flags[] = {{{"a fraction", r8}, VARIANT_TRUE},  {{"true as 1", one}, VARIANT_TRUE},
                        {{"empty", Typed(VT_EMPTY)}, VARIANT_FALSE}, {{"word", Text(u"True")}, VARIANT_TRUE},
                        {{"lower case", Text(u"false")}, VARIANT_FALSE}, {{"number text", Text(u"42")}, VARIANT_TRUE}};
  for (const Flag& f : flags) {
    ASSERT_EQ(S_OK, Ask(f.answer.value, VT_BOOL, result)) << f.answer.name;
    EXPECT_EQ(VT_BOOL, result.vt) << f.answer.name;
    EXPECT_EQ(f.value, result.boolVal) << f.answer.name;
  }
}

TEST(LcGlfHostCall, ANameInAnyType) {
  VARIANT i4 = Typed(VT_I4), tiny = Typed(VT_R8), third = Typed(VT_R8), thirdF = Typed(VT_R4), flag = Typed(VT_BOOL),
          big = Typed(VT_UI4);
  i4.lVal = 123;
  tiny.dblVal = 0.000001;
  third.dblVal = 1.0 / 3;
  thirdF.fltVal = 1.0f / 3;
  flag.boolVal = VARIANT_TRUE;
  big.ulVal = 0x80000000u;
  struct Case {
    Answer answer;
    const char16_t* text;
  };
  const Case cases[] = {{{"empty", Typed(VT_EMPTY)}, u""},      {{"I4", i4}, u"123"},
                        {{"small R8", tiny}, u"1E-06"},         {{"R8", third}, u"0.333333333333333"},
                        {{"R4", thirdF}, u"0.3333333"},         {{"BOOL", flag}, u"-1"},
                        {{"UI4", big}, u"2147483648"},          {{"null string", Text(nullptr)}, u"(null)"},
                        {{"string", Text(u"Default")}, u"Default"}};
  for (const Case& c : cases) {
    VARIANT result;
    ASSERT_EQ(S_OK, Ask(c.answer.value, VT_BSTR, result)) << c.answer.name;
    EXPECT_EQ(VT_BSTR, result.vt) << c.answer.name;
    EXPECT_EQ(std::u16string(c.text), Read(result)) << c.answer.name;
    VariantClear(&result);
  }
  VARIANT result;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Ask(Typed(VT_NULL), VT_BSTR, result));
  EXPECT_EQ(VT_EMPTY, result.vt);
}

TEST(LcGlfHostCall, OnlyAnObjectOrNothingWhereAnObjectIsWanted) {
  VARIANT result;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Ask(Typed(VT_NULL), VT_DISPATCH, result));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Ask(Typed(VT_EMPTY), VT_DISPATCH, result));
  VARIANT number = Typed(VT_I4);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Ask(number, VT_DISPATCH, result));
  ASSERT_EQ(S_OK, Ask(Typed(VT_UNKNOWN), VT_DISPATCH, result));
  EXPECT_EQ(VT_DISPATCH, result.vt);
  EXPECT_EQ(nullptr, result.pdispVal);

  TestDispatch object;
  VARIANT unknown = Typed(VT_UNKNOWN);
  unknown.punkVal = &object;
  ASSERT_EQ(S_OK, Ask(unknown, VT_DISPATCH, result));
  EXPECT_EQ(static_cast<IDispatch*>(&object), result.pdispVal);
  EXPECT_EQ(2u, object.GetRefs());
  VariantClear(&result);
  EXPECT_EQ(1u, object.GetRefs());
}

TEST(LcGlfHostCall, AHostExceptionPassesTheHostsOwnCode) {
  const SCODE refused = static_cast<SCODE>(0x80041234);
  for (bool deferred : {false, true}) {
    TestDispatch host;
    host.SetException(kAnswer, refused, deferred);
    VARIANT result;
    EXPECT_EQ(refused, LcGlfHostCall::Invoke(&host, kAnswer, DISPATCH_PROPERTYGET, VT_I4, &result)) << deferred;
    EXPECT_EQ(VT_EMPTY, result.vt);
    LcUString description;
    LcGlfErrorInfo::GetDescription(description);
    EXPECT_EQ(std::u16string(u"host refused"), std::u16string(description.Get() ? description.Get() : u""))
        << deferred;
  }
  // An exception told by its wCode alone has no code of its own to pass on.
  TestDispatch host;
  host.SetException(kAnswer, 0);
  EXPECT_EQ(DISP_E_EXCEPTION, LcGlfHostCall::Invoke(&host, kAnswer, DISPATCH_METHOD, VT_EMPTY, nullptr));
}
