#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "environment/LcUSysFileHandle.h"

bool LcUSysFileHandle::Open(const char16_t* path, int access, int creation, int mode, int sharing, int hints,
                            int permission) {
  Close();
  if (!path || access < 0 || access > 3 || creation < 0 || creation > 4 || sharing < 0 || sharing > 3) return false;
  static const int kAccess[] = {_O_RDONLY, _O_WRONLY, _O_WRONLY | _O_APPEND, _O_RDWR};
  static const int kCreation[] = {_O_CREAT | _O_EXCL, _O_CREAT | _O_TRUNC, _O_CREAT, 0, _O_TRUNC};
  static const int kSharing[] = {_SH_DENYRW, _SH_DENYWR, _SH_DENYRD, _SH_DENYNO};
  static const char* const kStream[] = {"r", "w", "a", "r+"};
  int flags = kAccess[access] | kCreation[creation];
  if (mode == eMODE_BINARY) flags |= _O_BINARY;
  if (mode == eMODE_TEXT) flags |= _O_TEXT;
  if (hints & eHINT_TEMPORARY) flags |= _O_TEMPORARY;
  if (hints & eHINT_SHORT_LIVED) flags |= _O_SHORT_LIVED;
  if (hints & eHINT_SEQUENTIAL) flags |= _O_SEQUENTIAL;
  if (hints & eHINT_RANDOM) flags |= _O_RANDOM;
  int fd = -1;
  if (_wsopen_s(&fd, reinterpret_cast<const wchar_t*>(path), flags, kSharing[sharing],
                permission & (_S_IREAD | _S_IWRITE)) != 0)
    return false;
  wchar_t streamMode[4] = {};
  const char* base = kStream[access];
  int n = 0;
  while (base[n]) streamMode[n] = wchar_t(base[n]), ++n;
  if (mode != eMODE_DEFAULT) streamMode[n] = mode == eMODE_BINARY ? L'b' : L't';
  stream = _wfdopen(fd, streamMode);
  if (!stream) _close(fd);
  return stream != nullptr;
}
