#include "addin/LcGlfTrackBackReceiver.h"
#include "addin/LcGlfVariant.h"
#include "geometry/LcLPlane.h"

namespace {
// Writes p into a host point or unit vector, stopping at the first failure;
// a unit vector's y write alone goes unchecked.
HRESULT WritePoint(const LcGlfHostObject& point, const LcLPoint3f& p) {
  HRESULT hr = point.PutDouble(ePointX, p.x);
  if (SUCCEEDED(hr)) hr = point.PutDouble(ePointY, p.y);
  if (SUCCEEDED(hr)) hr = point.PutDouble(ePointZ, p.z);
  return hr;
}

HRESULT WriteUnitVector(const LcGlfHostObject& vector, const LcLVector3f& v) {
  HRESULT hr = vector.PutDouble(eUnitVectorX, v.x);
  if (FAILED(hr)) return hr;
  vector.PutDouble(eUnitVectorY, v.y);
  return vector.PutDouble(eUnitVectorZ, v.z);
}
}  // namespace

HRESULT LcGlfTrackBackReceiver::ApplyCamera(const LcNvCamera& camera, IDispatch* hostCamera) {
  if (!hostCamera) return E_INVALIDARG;
  hostCamera->AddRef();
  LcGlfHostObject host(hostCamera);
  const LcLPoint3f eye = camera.position;
  const LcLVector3f viewDirection = camera.ViewDirection();
  const LcLVector3f up = camera.UpVector();

  // The host's extents are asked for and not used; only the call's success counts.
  double width = 0.0, height = 0.0;
  VARIANT extents[2] = {LcGlfVariant::DoubleRef(&width), LcGlfVariant::DoubleRef(&height)};
  HRESULT hr = host.Call(eCameraGetExtents, DISPATCH_METHOD, VT_EMPTY, nullptr, extents, 2);
  if (FAILED(hr)) return hr;

  LcGlfHostObject eyePoint, targetPoint, upVector;
  VARIANT dropped;
  if (FAILED(hr = host.GetObject(eCameraEye, eyePoint))) return hr;
  if (FAILED(hr = host.GetObject(eCameraTarget, targetPoint))) return hr;
  if (FAILED(hr = host.GetObject(eCameraUpVector, upVector))) return hr;
  if (FAILED(hr = host.Call(eCameraPerspective, DISPATCH_PROPERTYGET, VT_BOOL, &dropped))) return hr;
  if (FAILED(hr = host.Call(eCameraPerspectiveAngle, DISPATCH_PROPERTYGET, VT_R8, &dropped))) return hr;

  if (FAILED(hr = WritePoint(eyePoint, eye))) return hr;
  if (FAILED(hr = WriteUnitVector(upVector, up))) return hr;
  if (FAILED(hr = host.PutObject(eCameraEye, eyePoint))) return hr;
  if (FAILED(hr = host.PutObject(eCameraUpVector, upVector))) return hr;

  // The target lies on the line of sight: mid clip range in perspective,
  // on the far plane in orthographic.
  const LcLVector3f direction = viewDirection.Normalised();
  const LcLLine sight(eye, direction);
  const LcLPlane farPlane(direction, eye + viewDirection * camera.farDistance);
  LcLPoint3f target;
  const bool perspective = camera.projection == 0;
  if (perspective) {
    const LcLPlane nearPlane(direction, eye + viewDirection * camera.nearDistance);
    LcLPoint3f nearPoint, farPoint;
    bool hasNear = nearPlane.Intersect(sight, nearPoint);
    bool hasFar = farPlane.Intersect(sight, farPoint);
    target = hasNear && hasFar ? nearPoint + (farPoint - nearPoint) * 0.5 : nearPoint;
    if (FAILED(hr = WritePoint(targetPoint, target))) return hr;
    if (FAILED(hr = host.PutObject(eCameraTarget, targetPoint))) return hr;
    if (FAILED(hr = host.PutDouble(eCameraPerspectiveAngle, camera.height))) return hr;
  } else {
    farPlane.Intersect(sight, target);
    if (FAILED(hr = WritePoint(targetPoint, target))) return hr;
    if (FAILED(hr = host.PutObject(eCameraTarget, targetPoint))) return hr;
    VARIANT size[2] = {LcGlfVariant::Double(camera.aspect * camera.height), LcGlfVariant::Double(camera.height)};
    if (FAILED(hr = host.Call(eCameraSetExtents, DISPATCH_METHOD, VT_EMPTY, nullptr, size, 2))) return hr;
  }
  if (FAILED(hr = host.PutBool(eCameraPerspective, perspective))) return hr;
  // Only now does the host show the new view.
  return host.Method(eCameraApply);
}
