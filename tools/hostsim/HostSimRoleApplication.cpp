// The roles of the application and what hangs from it directly: the site,
// documents and their opening, the file service and transient options.
#include "HostSim.h"
#include "HostSimCall.h"
#include "HostSimRole.h"
#include "HostSimText.h"
#include "addin/LcGlfHostRoles.h"

namespace {
using K = HostSimKind;
using R = HostSimRole;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;
// What the host answers, for an open or a file service name, when a path
// names no document of the model.
constexpr HRESULT kNoSuchFile = HRESULT(0x80070002);

template <HostSimKind kind>
HRESULT GiveShared(HostSimCall& c) {
  return c.GiveObject(&c.host.Shared(kind));
}

HRESULT ActiveDocument(HostSimCall& c) {
  HostSimModel::Document* document = c.host.model.activeDocument;
  return c.GiveObject(document ? &c.host.Shared(K::eDocument, document) : nullptr);
}

HRESULT ActiveView(HostSimCall& c) {
  HostSimModel::Document* document = c.host.model.activeDocument;
  int view = c.host.model.activeView;
  return c.GiveObject(document && view >= 0 ? &c.host.Shared(K::eView, document, nullptr, view) : nullptr);
}

HRESULT GetModeFlag(HostSimCall& c) {
  return c.GiveBool(c.host.model.modeFlag);
}

HRESULT PutModeFlag(HostSimCall& c) {
  c.host.model.modeFlag = c.Arg(0).boolVal;
  return S_OK;
}

HRESULT MainWindow(HostSimCall& c) {
  return c.GiveI4(c.host.mainWindow);
}

HRESULT Open(HostSimCall& c, int visible, const std::string& how) {
  HostSimModel::Document* document = c.host.Open(c.String(0), c.Arg(visible).boolVal != 0, how);
  return document ? c.GiveObject(&c.host.Shared(K::eDocument, document)) : kNoSuchFile;
}

HRESULT DocumentsOpen(HostSimCall& c) {
  return Open(c, 1, "opened plain");
}

HRESULT DocumentsOpenWithOptions(HostSimCall& c) {
  HostSimObject* options = c.Object(1);
  if (c.Arg(1).pdispVal && (!options || options->kind != K::eOptionsMap)) return E_INVALIDARG;
  std::string how = "opened with options";
  if (options)
    for (const auto& option : options->options) how += " " + HostSimText::ToUtf8(option.first) + "=" + option.second;
  return Open(c, 2, how);
}

HRESULT FileServiceName(HostSimCall& c, std::u16string HostSimModel::Document::*name) {
  HostSimModel::Document* document = c.host.model.Find(c.String(0), true);
  return document ? c.GiveString(document->*name) : kNoSuchFile;
}

HRESULT LevelOfDetailName(HostSimCall& c) {
  return FileServiceName(c, &HostSimModel::Document::levelOfDetail);
}

HRESULT DesignViewName(HostSimCall& c) {
  return FileServiceName(c, &HostSimModel::Document::designView);
}

// Open documents only, by their full path as it stands, case included; a
// miss fails with E_INVALIDARG rather than giving null.
HRESULT EntriesItem(HostSimCall& c) {
  if (c.Arg(0).vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
  HostSimModel::Document* document = c.host.model.Find(c.String(0), false);
  if (!document || !document->open) return E_INVALIDARG;
  return c.GiveObject(&c.host.Shared(K::eDocument, document));
}

HRESULT CreateOptions(HostSimCall& c) {
  return c.GiveObject(&c.host.Make(K::eOptionsMap));
}

HRESULT OptionsValue(HostSimCall& c) {
  c.self.options[c.String(0)] = c.host.Show(c.Arg(1));
  return S_OK;
}
}  // namespace

const HostSimRole HostSimRole::kApplicationRoles[] = {
    {"SiteApplication", K::eAddInSite, eSiteApplication, kGet, {}, R::eDISPATCH, GiveShared<K::eApplication>},
    {"ApplicationActiveDocument", K::eApplication, eApplicationActiveDocument, kGet, {}, R::eDISPATCH,
     ActiveDocument},
    {"ApplicationDocuments", K::eApplication, eApplicationDocuments, kGet, {}, R::eDISPATCH,
     GiveShared<K::eDocuments>},
    {"ApplicationActiveView", K::eApplication, eApplicationActiveView, kGet, {}, R::eDISPATCH, ActiveView},
    {"ApplicationModeFlag", K::eApplication, eApplicationModeFlag, kGet, {}, R::eBOOL, GetModeFlag},
    {"ApplicationModeFlag", K::eApplication, eApplicationModeFlag, kPut, {R::eBOOL}, R::eNONE, PutModeFlag},
    {"ApplicationMainWindow", K::eApplication, eApplicationMainWindow, kGet, {}, R::eI4, MainWindow},
    {"ApplicationTransientFactory", K::eApplication, eApplicationTransientFactory, kGet, {}, R::eDISPATCH,
     GiveShared<K::eTransientFactory>},
    {"ApplicationFileService", K::eApplication, eApplicationFileService, kGet, {}, R::eDISPATCH,
     GiveShared<K::eFileService>},
    {"DocumentsOpen", K::eDocuments, eDocumentsOpen, kMethod, {R::eBSTR, R::eBOOL}, R::eDISPATCH, DocumentsOpen},
    {"DocumentsOpenWithOptions", K::eDocuments, eDocumentsOpenWithOptions, kMethod,
     {R::eBSTR, R::eDISPATCH, R::eBOOL}, R::eDISPATCH, DocumentsOpenWithOptions},
    {"FileServiceEntries", K::eFileService, eFileServiceEntries, kGet, {}, R::eDISPATCH,
     GiveShared<K::eFileEntries>},
    {"FileServiceLevelOfDetailName", K::eFileService, eFileServiceLevelOfDetailName, kMethod, {R::eBSTR}, R::eBSTR,
     LevelOfDetailName},
    {"FileServiceDesignViewName", K::eFileService, eFileServiceDesignViewName, kMethod, {R::eBSTR}, R::eBSTR,
     DesignViewName},
    {"EntriesItem", K::eFileEntries, eEntriesItem, kGet, {R::eVARIANT}, R::eDISPATCH, EntriesItem},
    {"TransientCreateOptions", K::eTransientFactory, eTransientCreateOptions, kMethod, {}, R::eDISPATCH,
     CreateOptions},
    {"OptionsValue", K::eOptionsMap, eOptionsValue, kPut, {R::eBSTR, R::eVARIANT}, R::eNONE, OptionsValue},
};
const size_t HostSimRole::kApplicationRoleCount = sizeof(kApplicationRoles) / sizeof(kApplicationRoles[0]);
