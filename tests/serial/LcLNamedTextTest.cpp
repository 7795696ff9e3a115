#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "geometry/LcLNamedText.h"
#include "geometry/LcNvCamera.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"

namespace {
class NamedText : public ::testing::Test {
protected:
  static void SetUpTestSuite() { LcUXMLDOMStream::Initialize(); }
  static void TearDownTestSuite() { LcUXMLDOMStream::Terminate(); }
  void SetUp() override { previous = LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get()); }
  void TearDown() override { LcUXMLDOMStream::SetProvider(previous); }
  LcUXMLDOMStreamProvider* previous = nullptr;
};

// Writes with `write`, then reads the text back with `read`; the text.
template <typename W, typename R>
std::string RoundTrip(W write, R read) {
  LcUXMLDOMStream* out = LcUXMLDOMStream::CreateWriteStream(nullptr, 441, 0, 0);
  EXPECT_NE(nullptr, out);
  if (!out) return "";
  out->BeginElement("root", 0);
  write(*out);
  out->EndElement("root");
  LcUStringA text;
  out->Save(text);
  LcUXMLDOMStream::DestroyStream(out);
  LcUString wide;
  LcUString::UTF8ToUTF16(text.Get(), -1, wide);
  LcUXMLDOMStream* in = LcUXMLDOMStream::CreateReadStream(wide.Get(), 0);
  EXPECT_NE(nullptr, in);
  if (!in) return "";
  in->BeginElement("root", 0);
  read(*in);
  LcUXMLDOMStream::DestroyStream(in);
  return text.Get();
}

TEST_F(NamedText, GeometryElementsRoundTrip) {
  LcLPoint3f p(0.1, -2.5, 1e300);
  LcLVector2f v(3, -0.0625);
  LcLColor3f c(0.25, 0.5, 1.0 / 3.0);
  LcLPlane plane(LcLVector3f(0, 0, 1), -4.5);
  LcLBox3f box(LcLPoint3f(-1, -2, -3), LcLPoint3f(1, 2, 3));
  LcLRotation r(0, 0, 0.6, 0.8);
  std::string text = RoundTrip(
      [&](LcUXMLDOMStream& s) {
        EXPECT_TRUE(LcLNamedText::Serialise(s, p));
        EXPECT_TRUE(LcLNamedText::Serialise(s, v));
        EXPECT_TRUE(LcLNamedText::Serialise(s, c));
        EXPECT_TRUE(LcLNamedText::Serialise(s, plane));
        EXPECT_TRUE(LcLNamedText::Serialise(s, box));
        EXPECT_TRUE(LcLNamedText::Serialise(s, r));
      },
      [&](LcUXMLDOMStream& s) {
        LcLPoint3f p2;
        LcLVector2f v2;
        LcLColor3f c2;
        LcLPlane plane2(LcLVector3f(1, 0, 0), 0);
        LcLBox3f box2;
        LcLRotation r2;
        EXPECT_TRUE(LcLNamedText::Serialise(s, p2));
        EXPECT_TRUE(LcLNamedText::Serialise(s, v2));
        EXPECT_TRUE(LcLNamedText::Serialise(s, c2));
        EXPECT_TRUE(LcLNamedText::Serialise(s, plane2));
        EXPECT_TRUE(LcLNamedText::Serialise(s, box2));
        EXPECT_TRUE(LcLNamedText::Serialise(s, r2));
        for (int i = 0; i < 3; ++i) EXPECT_EQ(p[i], p2[i]);
        EXPECT_EQ(v[1], v2[1]);
        EXPECT_EQ(c.blue, c2.blue);
        EXPECT_EQ(-4.5, plane2.distance);
        EXPECT_EQ(1.0, plane2.normal.z);
        EXPECT_EQ(-3.0, box2.min.z);
        EXPECT_EQ(3.0, box2.max.z);
        EXPECT_NEAR(0.8, r2.w, 1e-15);
      });
  // Some documents lay their text out in lines; the layout is theirs.
  std::string flat;
  for (char ch : text)
    if (ch != '\n' && ch != '\r' && ch != '\t') flat += ch;
  text = flat;
  EXPECT_NE(std::string::npos, text.find("<quaternion a=\"0\" b=\"0\" c=\"0.6\" d=\"0.8\""));
  EXPECT_NE(std::string::npos, text.find("<min><pos3f x=\"-1\" y=\"-2\" z=\"-3\"")) << text;
}

TEST_F(NamedText, RotationsAreRenormalisedAndBadNumbersRefused) {
  LcUXMLDOMStream* in = LcUXMLDOMStream::CreateReadStream(
      u"<r><rotation><quaternion a=\"0\" b=\"0\" c=\"3\" d=\"4\"/></rotation>"
      u"<pos3f x=\"1\" y=\"two\" z=\"3\"/></r>",
      0);
  ASSERT_NE(nullptr, in);
  in->BeginElement("r", 0);
  LcLRotation r;
  EXPECT_TRUE(LcLNamedText::Serialise(*in, r));
  EXPECT_DOUBLE_EQ(0.6, r.z);
  EXPECT_DOUBLE_EQ(0.8, r.w);
  LcLPoint3f p(7, 7, 7);
  EXPECT_FALSE(LcLNamedText::Serialise(*in, p));
  EXPECT_EQ(7.0, p.x);
  LcUXMLDOMStream::DestroyStream(in);
}

TEST_F(NamedText, CameraElement) {
  LcNvCamera camera;
  camera.projection = LcNvCamera::eORTHOGRAPHIC;
  camera.position = LcLPoint3f(1, 2, 3);
  camera.rotation = LcLRotation(0, 0.6, 0, 0.8);
  camera.nearDistance = 0.5;
  camera.farDistance = 500;
  camera.aspect = 1.5;
  camera.height = 12;
  camera.verticalOffset = 0.3;
  std::string text = RoundTrip([&](LcUXMLDOMStream& s) { EXPECT_TRUE(camera.SerialiseXML(s)); },
                               [&](LcUXMLDOMStream& s) {
                                 LcNvCamera back;
                                 EXPECT_TRUE(back.SerialiseXML(s));
                                 EXPECT_EQ(LcNvCamera::eORTHOGRAPHIC, back.projection);
                                 EXPECT_EQ(3.0, back.position.z);
                                 EXPECT_EQ(500.0, back.farDistance);
                                 EXPECT_EQ(12.0, back.height);
                                 EXPECT_NEAR(0.6, back.rotation.y, 1e-15);
                                 EXPECT_EQ(0.0, back.verticalOffset);  // not part of this form
                               });
  EXPECT_NE(std::string::npos, text.find("projection=\"ortho\""));
  LcUXMLDOMStream* in = LcUXMLDOMStream::CreateReadStream(u"<camera projection=\"fisheye\"/>", 0);
  ASSERT_NE(nullptr, in);
  LcNvCamera back;
  back.projection = LcNvCamera::eORTHOGRAPHIC;
  EXPECT_FALSE(back.SerialiseXML(*in));
  EXPECT_EQ(LcNvCamera::ePERSPECTIVE, back.projection);
  EXPECT_EQ(15, in->errorCode);
  LcUXMLDOMStream::DestroyStream(in);
}
}  // namespace
