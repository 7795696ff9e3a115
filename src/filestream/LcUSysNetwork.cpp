#include "filestream/LcUSysNetwork.h"

#include "foundation/LcUSysError.h"

LcUComponent LcUSysNetwork::component;

bool LcUSysNetwork::Initialize() {
  LcUSysError::RegisterComponent(&component, "LcUSysNetwork");
  return true;
}

void LcUSysNetwork::Terminate() {
  LcUSysError::UnregisterComponent(&component);
}

bool LcUSysNetwork::IsNetworkUp() {
  return true;
}
