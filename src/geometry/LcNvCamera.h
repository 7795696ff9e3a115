#pragma once
#include <cstddef>
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "geometry/LcLBox.h"
#include "geometry/LcLMatrix4.h"
#include "geometry/LcLPlane.h"
#include "geometry/LcLRotation.h"

class LcUStreamReader;
class LcUStreamWriter;

// A viewpoint: position, orientation and view volume. Its memory image is the
// camera of the TrackBack record, so the fields, their order and the padding
// after projection are fixed. Unrotated it looks down -z with +y up.
//
// Operations taking an aspect use the camera's own when given 0. Nothing
// here fails loudly: an unusable view volume gives false or no change, and
// NaN or infinite fields pass through without harm.
class LcNvCamera {
public:
  enum { ePERSPECTIVE = 0, eORTHOGRAPHIC = 1 };
  // How FitClipPlanes treats a given near or far value.
  enum { eCLIP_AUTOMATIC = 0, eCLIP_CLAMPED = 1, eCLIP_FIXED = 2 };

  static bool Initialize();
  static void Terminate();
  static LcUComponent component;

  bool IsPerspective() const { return projection == ePERSPECTIVE; }

  LcLVector3f ViewDirection() const { return rotation.Rotate(LcLVector3f(0.0, 0.0, -1.0)); }
  LcLVector3f UpVector() const { return rotation.Rotate(LcLVector3f(0.0, 1.0, 0.0)); }
  void GetFrame(LcLPoint3f& eye, LcLVector3f& direction, LcLVector3f& up) const;
  LcLPlane NearPlane() const { return PlaneAt(nearDistance); }
  LcLPlane FarPlane() const { return PlaneAt(farDistance); }
  // Signed distance from the eye along the view direction.
  double Depth(const LcLPoint3f& p) const { return (p - position).Dot(ViewDirection().Normalised()); }

  double ViewHeightAt(double distance) const;
  double ViewWidthAt(double distance) const { return ViewHeightAt(distance) * aspect; }
  double HorizontalOffsetAt(double distance) const { return ViewWidthAt(distance) * horizontalOffset; }
  double VerticalOffsetAt(double distance) const { return ViewHeightAt(distance) * verticalOffset; }

  // The view volume's sides at the near distance. False, outputs untouched,
  // when near >= far, aspect <= 0, height <= 0, or near <= 0 in perspective.
  bool GetFrustum(double& left, double& right, double& bottom, double& top, double aspect = 0.0) const;
  // Normalised device coordinates to eye space.
  bool GetProjection(LcLMatrix4& matrix, double aspect = 0.0) const;
  // Normalised device coordinates to world space.
  bool GetViewProjection(LcLMatrix4& matrix, double aspect = 0.0) const;

  void SetExtents(double distance, double width, double height);
  void SetHorizontalOffsetFrom(double distance, double offset) { horizontalOffset = offset / ViewWidthAt(distance); }
  void SetVerticalOffsetFrom(double distance, double offset) { verticalOffset = offset / ViewHeightAt(distance); }

  // Turns by the shortest arc; a zero direction is ignored.
  void SetViewDirection(const LcLVector3f& direction);
  void LookAt(const LcLPoint3f& point);
  // Turns so that point lies where the offset view's centre was.
  void LookAtKeepingOffset(const LcLPoint3f& point);
  // Turns about the view direction towards up; an up along the view is ignored.
  void SetUpVector(const LcLVector3f& up);
  void SetFrame(const LcLVector3f& direction, const LcLVector3f& up);
  // Moves the camera with the world; orthographic views scale with it.
  void Transform(const LcLMatrix4& matrix);

  // Sets near and far around box; the modes are eCLIP_... for each value.
  void FitClipPlanes(const LcLBox3f& box, int nearMode, double nearValue, int farMode, double farValue,
                     double minRatio);
  // Where box falls on the view, 0 to 1 both ways; empty when it can't be told.
  LcLBox2f ScreenBounds(const LcLBox3f& box, double aspect = 0.0) const;
  // Moves so that rect (0 to 1 both ways) fills the view; the margins are
  // the depths of the content it frames.
  void FitScreenRect(const LcLBox2f& rect, double nearMargin, double farMargin, double aspect = 0.0);
  // Slides sideways so that point sits at the view's centre.
  void PanTo(const LcLPoint3f& point, double aspect = 0.0);
  void ZoomToBox(const LcLBox3f& box, double aspect = 0.0);

  // The object stream form; streams older than version 425 carry no offsets,
  // and reading them leaves the offsets as they were.
  bool Read(LcUStreamReader& stream);
  bool Write(LcUStreamWriter& stream) const;

  int32_t projection = ePERSPECTIVE;
  LcLPoint3f position{0.0, 0.0, 1.0};
  LcLRotation rotation;
  double aspect = 1.0;
  // Vertical angle in perspective, view height in orthographic. The default
  // is the record's stored constant, not the nearest double to pi / 4.
  double height = 0.785398;
  double nearDistance = 1.0;
  double farDistance = 10.0;
  double verticalOffset = 0.0;
  double horizontalOffset = 0.0;

private:
  LcLPlane PlaneAt(double distance) const;
  double AspectInUse(double given) const { return given == 0.0 ? aspect : given; }
  bool IsVolumeValid(double aspectInUse) const;
  // The world point seen at normalised device (x, y), depth ahead.
  LcLPoint3f Unproject(double x, double y, double depth, double aspectInUse) const;
  void DepthRange(const LcLBox3f& box, double& nearDepth, double& farDepth) const;
};

// The record stores this image at bytes 1552 to 1663.
static_assert(sizeof(LcNvCamera) == 112, "camera image size");
static_assert(offsetof(LcNvCamera, projection) == 0, "camera image layout");
static_assert(offsetof(LcNvCamera, position) == 8, "camera image layout");
static_assert(offsetof(LcNvCamera, rotation) == 32, "camera image layout");
static_assert(offsetof(LcNvCamera, aspect) == 64, "camera image layout");
static_assert(offsetof(LcNvCamera, height) == 72, "camera image layout");
static_assert(offsetof(LcNvCamera, nearDistance) == 80, "camera image layout");
static_assert(offsetof(LcNvCamera, farDistance) == 88, "camera image layout");
static_assert(offsetof(LcNvCamera, verticalOffset) == 96, "camera image layout");
static_assert(offsetof(LcNvCamera, horizontalOffset) == 104, "camera image layout");
