#pragma once
#include "serial/LcUSysCryptHashWinBase.h"

class LcUSysCryptHashSHA256 : public LcUSysCryptHashWinBase {
public:
  LcUSysCryptHashSHA256() : LcUSysCryptHashWinBase(eSHA256) {}
};
