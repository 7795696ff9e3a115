#pragma once
#include "addin/LcOmTrackBackRecord.h"
#include "foundation/LcUString.h"

// The viewer's end of the TrackBack channel. The contract: write all 1728
// bytes, close the file, then deliver the message, and leave the file alone
// until the listener has taken it. Send does all of that as one step under
// the channel's lock, so senders on one machine don't overwrite each other.
//
//   LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();
//   record.setDocumentPath(u"C:\\Models\\Gearbox.gam");
//   LcOmTrackBackSender::Result result = LcOmTrackBackSender::Send(record, u"Shaft:1|Gear:1");
class LcOmTrackBackSender {
public:
  enum Result {
    eTAKEN = 0,          // the listener has handled the message
    eNO_LISTENER = 1,    // nobody is listening, or the listener went away
    eBUSY = 2,           // another sender held the channel for the whole timeout
    eTIMED_OUT = 3,      // the listener didn't handle the message within the timeout
    eWRITE_FAILED = 4,   // the record or the item file couldn't be written
  };
  enum { eDEFAULT_TIMEOUT_MS = 30000 };

  // A record with empty texts, no item, and the camera, scale and offset at
  // their defaults. A plain LcOmTrackBackRecord leaves the texts and hasItem
  // to be filled, as the add-in fills them from the file.
  static LcOmTrackBackRecord NewRecord();

  // Where this user's add-in looks for the record: the product line's shared
  // folder, then trackback, then LcGlfPlugin. In this platform's own form
  // ('/' on Linux), as a user can open or paste it.
  static bool GetRecordPath(LcUString& path);
  // Beside the record: the text file whose first line names the item.
  static bool GetItemFilePath(LcUString& path);
  // A path as given, made absolute against the current folder when relative,
  // in this platform's own form. The host resolves relative paths against
  // its own folder, so none goes into a record.
  static bool MakeAbsolute(const char16_t* path, LcUString& absolute);

  // Writes the record (with itemText, when given, into the item file it then
  // names) and delivers it, holding the channel's lock from the first write
  // until the listener has handled the message. Waits up to timeoutMs for
  // the lock (eBUSY after that), then up to timeoutMs for the listener.
  static Result Send(const LcOmTrackBackRecord& record, const char16_t* itemText = nullptr,
                     int timeoutMs = eDEFAULT_TIMEOUT_MS);

  // The steps of Send, without the lock. Makes the folder when missing, writes
  // the record whole (a relative item file path made absolute) and closes it.
  static bool WriteRecord(const char16_t* path, const LcOmTrackBackRecord& record);
  // Writes text in the narrow code page with no line end, as the add-in reads it.
  static bool WriteItemFile(const char16_t* path, const char16_t* text);
  // Sends the registered message to the listener found by its title and
  // waits up to timeoutMs until it has been handled: eTAKEN, eNO_LISTENER or
  // eTIMED_OUT.
  static Result Deliver(int timeoutMs = eDEFAULT_TIMEOUT_MS);
  static bool IsListenerRunning();

private:
  static bool EnsureFolderOf(const char16_t* path);
  static bool WriteFile(const char16_t* path, const void* data, size_t bytes);
  // Platform: the path in this platform's own separators.
  static void ToPlatformForm(LcUString& path);
};
