#include <cmath>

#include "geometry/LcNvCamera.h"

LcLBox2f LcNvCamera::ScreenBounds(const LcLBox3f& box, double givenAspect) const {
  LcLBox2f bound;
  LcLMatrix4 toWorld;
  LcLMatrix4 toScreen;
  if (!box.IsEmpty() && GetViewProjection(toWorld, givenAspect) && toWorld.GetInverse(toScreen)) {
    for (int i = 0; i < LcLBox3f::eCORNERS; ++i) {
      LcLPoint3f p = toScreen.TransformPoint(box.Corner(i));
      bound.Extend(LcLPoint2f(p.x, p.y));
    }
  }
  for (int k = 0; k < 2; ++k) {
    bound.min[k] = (bound.min[k] + 1.0) * 0.5;
    bound.max[k] = (bound.max[k] + 1.0) * 0.5;
  }
  return bound;
}

void LcNvCamera::FitScreenRect(const LcLBox2f& rect, double nearMargin, double farMargin, double givenAspect) {
  double a = AspectInUse(givenAspect);
  if (rect.IsEmpty() || !IsVolumeValid(a)) return;
  LcLPoint2f low(rect.min.x * 2.0 - 1.0, rect.min.y * 2.0 - 1.0);
  LcLPoint2f high(rect.max.x * 2.0 - 1.0, rect.max.y * 2.0 - 1.0);
  double w = high.x - low.x;
  double h = high.y - low.y;
  // The world point under the rectangle's centre at the near margin comes
  // back under the view's centre at the end. The nearest content grows most
  // when the camera closes in, so centring it there keeps it all in view.
  LcLPoint3f anchor = Unproject((low.x + high.x) * 0.5, (low.y + high.y) * 0.5, nearMargin, a);

  if (IsPerspective()) {
    bool vertical = h >= w;
    double tangent = std::tan(height * 0.5) * (vertical ? 1.0 : a);
    double share = vertical ? h : w * a;
    // At depth m the rectangle spans share / 2 view heights; the camera must
    // stand half that extent over the tangent away, with 1 % to spare.
    auto move = [&](double margin) {
      double halfExtent = share * 0.25 * ViewHeightAt(margin);
      return halfExtent / tangent * 1.01 - margin;
    };
    double nearMove = move(nearMargin);
    double farMove = move(farMargin);
    position += rotation.Rotate(LcLVector3f(0.0, 0.0, nearMove > farMove ? nearMove : farMove));
  } else {
    double extent = w > h ? w : h;
    if (extent > 0.0) height *= extent * 0.505;
  }
  PanTo(anchor, givenAspect);
}

void LcNvCamera::PanTo(const LcLPoint3f& point, double givenAspect) {
  double a = AspectInUse(givenAspect);
  double depth = Depth(point);
  if (!(depth > 0.0) || !IsVolumeValid(a)) return;
  position += point - Unproject(0.0, 0.0, depth, a);
}

void LcNvCamera::ZoomToBox(const LcLBox3f& box, double givenAspect) {
  double a = AspectInUse(givenAspect);
  if (box.IsEmpty() || !IsVolumeValid(a)) return;
  LcLPoint3f c = box.Center();
  double r = (box.max - c).Length();
  LcLVector3f direction = ViewDirection().Normalised();
  if (r > 0.0) {
    double d = r;
    if (IsPerspective()) {
      // Back off until the box's bounding sphere fits in the view cone.
      double t = std::sin(height * 0.5);
      if (a < 1.0) t *= a;
      if (t > 0.0 && r <= r / t) d = r / t;
    } else {
      height = r * 2.0;
      if (a < 1.0) height /= a;
    }
    position = c - direction * d;
  } else if (r == 0.0) {
    // A point: slide onto the line of sight without changing its depth.
    position += c - (position + direction * (c - position).Dot(direction));
  }
  if (horizontalOffset != 0.0 || verticalOffset != 0.0) PanTo(c, 0.0);
  if (r > 0.0) {
    double nearMargin, farMargin;
    DepthRange(box, nearMargin, farMargin);
    FitScreenRect(ScreenBounds(box, givenAspect), nearMargin, farMargin, givenAspect);
  }
}
