#pragma once
#include "addin/LcGlfHostObject.h"
#include "addin/LcOmWin32TrackBackReceiver.h"
#include "foundation/LcUString.h"

// The add-in's receiver: the Veerback. A record brings the host forward,
// makes its document active (opening it if need be), sets the active view's
// camera and selects the whole document or the named item. Best effort:
// each step runs only if the one before succeeded, and nothing is undone.
class LcGlfTrackBackReceiver : public LcOmWin32TrackBackReceiver {
public:
  int onTrackBack(const LcOmTrackBackRecord& record) override;

private:
  void Veerback(const LcOmTrackBackRecord& record);
  bool ActivateOrOpen(const LcOmTrackBackRecord& record);
  bool OpenDocument(const LcOmTrackBackRecord& record);
  HRESULT OpenAssembly(const LcGlfHostObject& documents, const LcGlfBstr& path);
  HRESULT ApplyCamera(const LcNvCamera& camera, IDispatch* hostCamera);
  void SelectWholeDocument(const LcGlfHostObject& document, const LcGlfHostObject& selectSet);
  void SelectItem(const LcGlfHostObject& document, const LcOmTrackBackRecord& record);
  void SelectItemPath(IDispatch* document, const LcUString& itemText);
};
