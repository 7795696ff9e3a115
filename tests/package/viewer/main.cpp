#include "addin/LcOmTrackBackSender.h"

int main() {
  LcUString::Initialize();
  LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();   // empty texts, no item, default camera
  record.setDocumentPath(u"C:\\Models\\Gearbox.gam");
  record.camera.position = LcLPoint3f(0.0, 0.0, 50.0);
  record.camera.nearDistance = 10.0;
  record.camera.farDistance = 90.0;
  // Writes the record and the item file, delivers, and waits up to 5 s.
  LcOmTrackBackSender::Result result = LcOmTrackBackSender::Send(record, u"Shaft:1|Gear:1", 5000);
  LcUString::Terminate();
  return result;   // eTAKEN 0, eNO_LISTENER 1, eBUSY 2, eTIMED_OUT 3, eWRITE_FAILED 4
}
