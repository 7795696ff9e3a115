#pragma once
#include "addin/LcOmTrackBackRecord.h"
#include "foundation/LcUString.h"

// The viewer's end of the TrackBack channel. The contract: write all 1728
// bytes, close the file, then deliver the message, and leave the file alone
// until the listener has taken it.
class LcOmTrackBackSender {
public:
  enum Result { eTAKEN = 0, eNO_LISTENER = 1 };

  // Where this user's add-in looks for the record: the product line's shared
  // folder, then trackback, then LcGlfPlugin.
  static bool GetRecordPath(LcUString& path);
  // Beside the record: the text file whose first line names the item.
  static bool GetItemFilePath(LcUString& path);
  // Makes the folder when missing, writes the record whole and closes it.
  static bool WriteRecord(const char16_t* path, const LcOmTrackBackRecord& record);
  // Writes text in the narrow code page with no line end, as the add-in reads it.
  static bool WriteItemFile(const char16_t* path, const char16_t* text);
  // Sends the registered message to the listener found by its title and
  // waits until it has been handled.
  static Result Deliver();
  static bool IsListenerRunning();

private:
  static bool EnsureFolderOf(const char16_t* path);
  static bool WriteFile(const char16_t* path, const void* data, size_t bytes);
};
