#include "geometry/LcNvCamera.h"

void LcNvCamera::DepthRange(const LcLBox3f& box, double& nearDepth, double& farDepth) const {
  LcLVector3f direction = ViewDirection().Normalised();
  LcLPoint3f nearest;
  LcLPoint3f farthest;
  for (int k = 0; k < 3; ++k) {
    bool ahead = direction[k] >= 0.0;
    nearest[k] = ahead ? box.min[k] : box.max[k];
    farthest[k] = ahead ? box.max[k] : box.min[k];
  }
  nearDepth = Depth(nearest);
  farDepth = Depth(farthest);
}

void LcNvCamera::FitClipPlanes(const LcLBox3f& box, int nearMode, double nearValue, int farMode, double farValue,
                               double minRatio) {
  double rawNear = -1.0;
  double rawFar = -1.0;
  if (!box.IsEmpty()) DepthRange(box, rawNear, rawFar);

  if (nearMode != eCLIP_AUTOMATIC && farMode != eCLIP_AUTOMATIC && nearValue >= farValue) {
    nearMode = farMode = eCLIP_AUTOMATIC;
  }
  if (IsPerspective()) {
    if (nearValue <= 0.0) nearMode = eCLIP_AUTOMATIC;
    if (farValue <= 0.0) farMode = eCLIP_AUTOMATIC;
  }

  auto fallBack = [&] {
    nearDistance = nearMode == eCLIP_AUTOMATIC ? 1.0 : nearValue;
    farDistance = farMode == eCLIP_FIXED ? farValue : nearDistance * 10.0;
  };
  if (rawNear > rawFar) {
    fallBack();
    return;
  }

  // A little room either side so the box's faces aren't clipped.
  double n = rawNear * (rawNear > 0.0 ? 0.999 : 1.001);
  double f = rawFar * (rawFar > 0.0 ? 1.001 : 0.999);

  if (!IsPerspective()) {
    if (n >= f) {
      n = -1.0;
      f = 1.0;
    }
    if (nearMode == eCLIP_FIXED && nearValue >= f) f = nearValue + 1.0;
    if (farMode == eCLIP_FIXED && n >= farValue) n = farValue - 1.0;
    nearDistance = nearMode == eCLIP_FIXED ? nearValue : n;
    farDistance = farMode == eCLIP_FIXED ? farValue : f;
    return;
  }

  if (f <= 0.0) {
    fallBack();
    return;
  }
  if (nearMode == eCLIP_FIXED) n = nearValue;
  if (farMode == eCLIP_FIXED) f = farValue;
  if (f * minRatio <= n && n <= f) {
    if (n == f) n = f * 0.5;
    nearDistance = nearMode == eCLIP_FIXED ? nearValue : n;
    farDistance = farMode == eCLIP_FIXED ? farValue : f;
    return;
  }

  // The range is deeper than minRatio allows: give up depth at the side that
  // isn't pinned.
  double pulledIn = f * minRatio;
  if (nearMode == eCLIP_CLAMPED) nearValue = n > nearValue ? n : nearValue;
  if (farMode == eCLIP_CLAMPED) farValue = f < farValue ? f : farValue;
  if (nearMode == eCLIP_FIXED) {
    f = nearValue / minRatio;
    if (farMode == eCLIP_CLAMPED && farValue > f) f = farValue;
  } else if (farMode == eCLIP_FIXED) {
    if (nearMode == eCLIP_CLAMPED && farValue * minRatio < nearValue) nearValue = farValue * minRatio;
    if (nearMode == eCLIP_AUTOMATIC) nearValue = farValue * minRatio;
  } else if (nearMode == eCLIP_CLAMPED && farMode == eCLIP_AUTOMATIC) {
    if (pulledIn < nearValue) nearValue = pulledIn;
    f = nearValue / minRatio;
  } else if (nearMode == eCLIP_CLAMPED && farMode == eCLIP_CLAMPED) {
    if (pulledIn > nearValue) f = farValue > nearValue / minRatio ? farValue : nearValue / minRatio;
  } else if (nearMode == eCLIP_AUTOMATIC) {
    nearValue = pulledIn;
  }
  nearDistance = nearValue;
  farDistance = farMode == eCLIP_FIXED ? farValue : f;
}
