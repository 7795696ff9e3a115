#include "filestream/LcUURLParts.h"

void LcUURLParts::Clear() {
  scheme.Free();
  host.Free();
  user.Free();
  password.Free();
  port = 0;
  path.Free();
  params.Free();
  query.Free();
  fragment.Free();
}
