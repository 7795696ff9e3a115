#pragma once
#include "addin/LcGlfCom.h"

// Fixed for good: changing any of them breaks registered installations.
extern const CLSID CLSID_TWVeerbackGlfServer;
extern const IID IID_ITWVeerbackGlfServer;
extern const GUID LIBID_TWVeerbackGlfLib;
// The host's add-in category, and the four host interfaces reached by
// QueryInterface rather than by property.
extern const GUID CATID_GlfAddIns;
extern const IID IID_GlfAddInSite;
extern const IID IID_GlfPartDocument;
extern const IID IID_GlfAssemblyDocument;
extern const IID IID_GlfAssemblyDefinition;

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" into text of at least 39 units.
void LcGlfGuidToText(REFGUID guid, char16_t* text);
