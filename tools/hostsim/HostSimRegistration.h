#pragma once
#include <string>

#include "addin/LcGlfCom.h"

// Gearloft's way to its add-ins through the classes root of the registry.
class HostSimRegistration {
public:
  // The first class of the add-in category whose Settings say
  // LoadOnStartUp "1".
  static bool FindStartUpAddIn(GUID& clsid);
  // The module the class names under InprocServer32, as UTF-8.
  static bool GetModule(REFGUID clsid, std::string& path);
};
