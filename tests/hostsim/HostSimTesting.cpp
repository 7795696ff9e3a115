#include "HostSimTesting.h"

#include "HostSimState.h"
#include "addin/LcGlfGuids.h"
#include "addin/LcGlfVariant.h"

void HostSimTest::TearDown() {
  for (IDispatch* object : held) object->Release();
  for (BSTR text : strings) SysFreeString(text);
}

void HostSimTest::Load(const char* text) {
  for (IDispatch* object : held) object->Release();
  held.clear();
  host.reset();
  model = std::make_unique<HostSimModel>();
  std::string error;
  ASSERT_TRUE(HostSimModelReader::Read(text, *model, error)) << error;
  host = std::make_unique<HostSim>(*model, journal);
  host->mainWindow = 0x1234;
}

HRESULT HostSimTest::Call(IDispatch* object, DISPID id, WORD kind, const std::vector<VARIANT>& args,
                          VARIANT* result) {
  std::vector<VARIANT> packed(args.rbegin(), args.rend());
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params = {packed.data(), nullptr, UINT(packed.size()), 0};
  if (kind == DISPATCH_PROPERTYPUT) {
    params.rgdispidNamedArgs = &named;
    params.cNamedArgs = 1;
  }
  VARIANT answer;
  HRESULT hr = object->Invoke(id, IID_NULL, 0, kind, &params, &answer, nullptr, nullptr);
  if (result)
    *result = answer;
  else
    VariantClear(&answer);
  return hr;
}

IDispatch* HostSimTest::Object(IDispatch* object, DISPID id, const std::vector<VARIANT>& args, WORD kind) {
  VARIANT result;
  HRESULT hr = Call(object, id, kind, args, &result);
  EXPECT_EQ(S_OK, hr) << Last();
  if (FAILED(hr) || result.vt != VT_DISPATCH || !result.pdispVal) {
    ADD_FAILURE() << "no object from " << Last();
    return host->Site();
  }
  held.push_back(result.pdispVal);
  return result.pdispVal;
}

IDispatch* HostSimTest::Document(const char16_t* path) {
  IDispatch* entries = Object(Object(Application(), 0x300014E), 0x300B608);
  return Object(entries, 0, {Bstr(path)});
}

IDispatch* HostSimTest::Occurrence(IDispatch* document, const std::vector<const char16_t*>& names) {
  IDispatch* definition = Object(document, 0x6000102);
  IDispatch* occurrence = nullptr;
  for (const char16_t* name : names) {
    if (occurrence) definition = Object(occurrence, 0x4001333);
    occurrence = Object(Object(definition, 0x4001134), 0x7F000027, {Bstr(name)});
  }
  return occurrence;
}

std::string HostSimTest::State() const {
  return HostSimState::Text(*host);
}

VARIANT HostSimTest::Bstr(const char16_t* text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = text ? SysAllocString(reinterpret_cast<const OLECHAR*>(text)) : nullptr;
  strings.push_back(value.bstrVal);
  return value;
}

VARIANT HostSimTest::I4(int32_t number) {
  return LcGlfVariant::I4(number);
}

VARIANT HostSimTest::R8(double number) {
  return LcGlfVariant::Double(number);
}

VARIANT HostSimTest::Bool(int16_t flag) {
  VARIANT value = LcGlfVariant::Bool(false);
  value.boolVal = flag;  // as given, not normalised
  return value;
}

VARIANT HostSimTest::Dispatch(IDispatch* object) {
  return LcGlfVariant::Dispatch(object);
}
