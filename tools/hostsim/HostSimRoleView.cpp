// The roles of a document's views and of the camera with its points. A
// camera is a copy of its view's until CameraApply gives it back.
#include <algorithm>
#include <iterator>

#include "HostSim.h"
#include "HostSimCall.h"
#include "HostSimRole.h"
#include "addin/LcGlfHostRoles.h"

namespace {
using K = HostSimKind;
using R = HostSimRole;
using Camera = HostSimModel::Camera;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;

template <HostSimKind kind>
HRESULT GiveOfDocument(HostSimCall& c) {
  return c.GiveObject(&c.host.Shared(kind, c.self.document));
}

HRESULT ViewsItem(HostSimCall& c) {
  int32_t index = c.Arg(0).lVal;
  if (index < 1 || size_t(index) > c.self.document->views.size()) return E_INVALIDARG;
  return c.GiveObject(&c.host.Shared(K::eView, c.self.document, nullptr, index - 1));
}

HRESULT ViewActivate(HostSimCall& c) {
  c.host.Activate(c.self.document, c.self.view);
  return S_OK;
}

HRESULT ViewCamera(HostSimCall& c) {
  HostSimObject& camera = c.host.Make(K::eHostCamera);
  camera.document = c.self.document;
  camera.view = c.self.view;
  camera.camera = c.self.document->views[size_t(c.self.view)];
  return c.GiveObject(&camera);
}

HRESULT CameraApply(HostSimCall& c) {
  c.self.document->views[size_t(c.self.view)] = c.self.camera;
  return S_OK;
}

// Eye, target and up come out as new point objects and go back in whole.
template <double (Camera::*field)[3], HostSimKind kind>
HRESULT GetVector(HostSimCall& c) {
  HostSimObject& vector = c.host.Make(kind);
  std::copy(std::begin(c.self.camera.*field), std::end(c.self.camera.*field), vector.xyz);
  return c.GiveObject(&vector);
}

template <double (Camera::*field)[3], HostSimKind kind>
HRESULT PutVector(HostSimCall& c) {
  HostSimObject* vector = c.Object(0);
  if (!vector || vector->kind != kind) return E_INVALIDARG;
  std::copy(std::begin(vector->xyz), std::end(vector->xyz), c.self.camera.*field);
  return S_OK;
}

template <int axis>
HRESULT PutAxis(HostSimCall& c) {
  c.self.xyz[axis] = c.Arg(0).dblVal;
  return S_OK;
}

HRESULT GetPerspective(HostSimCall& c) {
  return c.GiveBool(c.self.camera.perspective);
}

HRESULT PutPerspective(HostSimCall& c) {
  c.self.camera.perspective = c.Arg(0).boolVal;
  return S_OK;
}

HRESULT GetAngle(HostSimCall& c) {
  return c.GiveR8(c.self.camera.angle);
}

HRESULT PutAngle(HostSimCall& c) {
  c.self.camera.angle = c.Arg(0).dblVal;
  return S_OK;
}

HRESULT SetExtents(HostSimCall& c) {
  c.self.camera.extents[0] = c.Arg(0).dblVal;
  c.self.camera.extents[1] = c.Arg(1).dblVal;
  return S_OK;
}

HRESULT GetExtents(HostSimCall& c) {
  *c.Arg(0).pdblVal = c.self.camera.extents[0];
  *c.Arg(1).pdblVal = c.self.camera.extents[1];
  return S_OK;
}
}  // namespace

const HostSimRole HostSimRole::kViewRoles[] = {
    {"DocumentViews", K::eDocument, eDocumentViews, kGet, {}, R::eDISPATCH, GiveOfDocument<K::eViews>},
    {"DocumentSelectSet", K::eDocument, eDocumentSelectSet, kGet, {}, R::eDISPATCH, GiveOfDocument<K::eSelectSet>},
    {"ViewsItem", K::eViews, eViewsItem, kGet, {R::eI4}, R::eDISPATCH, ViewsItem},
    {"ViewActivate", K::eView, eViewActivate, kMethod, {}, R::eNONE, ViewActivate},
    {"ViewCamera", K::eView, eViewCamera, kGet, {}, R::eDISPATCH, ViewCamera},
    {"CameraApply", K::eHostCamera, eCameraApply, kMethod, {}, R::eNONE, CameraApply},
    {"CameraEye", K::eHostCamera, eCameraEye, kGet, {}, R::eDISPATCH, GetVector<&Camera::eye, K::ePoint>},
    {"CameraEye", K::eHostCamera, eCameraEye, kPut, {R::eDISPATCH}, R::eNONE, PutVector<&Camera::eye, K::ePoint>},
    {"CameraTarget", K::eHostCamera, eCameraTarget, kGet, {}, R::eDISPATCH, GetVector<&Camera::target, K::ePoint>},
    {"CameraTarget", K::eHostCamera, eCameraTarget, kPut, {R::eDISPATCH}, R::eNONE,
     PutVector<&Camera::target, K::ePoint>},
    {"CameraUpVector", K::eHostCamera, eCameraUpVector, kGet, {}, R::eDISPATCH,
     GetVector<&Camera::up, K::eUnitVector>},
    {"CameraUpVector", K::eHostCamera, eCameraUpVector, kPut, {R::eDISPATCH}, R::eNONE,
     PutVector<&Camera::up, K::eUnitVector>},
    {"CameraPerspective", K::eHostCamera, eCameraPerspective, kGet, {}, R::eBOOL, GetPerspective},
    {"CameraPerspective", K::eHostCamera, eCameraPerspective, kPut, {R::eBOOL}, R::eNONE, PutPerspective},
    {"CameraPerspectiveAngle", K::eHostCamera, eCameraPerspectiveAngle, kGet, {}, R::eR8, GetAngle},
    {"CameraPerspectiveAngle", K::eHostCamera, eCameraPerspectiveAngle, kPut, {R::eR8}, R::eNONE, PutAngle},
    {"CameraSetExtents", K::eHostCamera, eCameraSetExtents, kMethod, {R::eR8, R::eR8}, R::eNONE, SetExtents},
    {"CameraGetExtents", K::eHostCamera, eCameraGetExtents, kMethod, {R::eR8_OUT, R::eR8_OUT}, R::eNONE, GetExtents},
    {"PointX", K::ePoint, ePointX, kPut, {R::eR8}, R::eNONE, PutAxis<0>},
    {"PointY", K::ePoint, ePointY, kPut, {R::eR8}, R::eNONE, PutAxis<1>},
    {"PointZ", K::ePoint, ePointZ, kPut, {R::eR8}, R::eNONE, PutAxis<2>},
    {"UnitVectorX", K::eUnitVector, eUnitVectorX, kPut, {R::eR8}, R::eNONE, PutAxis<0>},
    {"UnitVectorY", K::eUnitVector, eUnitVectorY, kPut, {R::eR8}, R::eNONE, PutAxis<1>},
    {"UnitVectorZ", K::eUnitVector, eUnitVectorZ, kPut, {R::eR8}, R::eNONE, PutAxis<2>},
};
const size_t HostSimRole::kViewRoleCount = sizeof(kViewRoles) / sizeof(kViewRoles[0]);
