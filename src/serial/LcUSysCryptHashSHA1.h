#pragma once
#include "serial/LcUSysCryptHashWinBase.h"

class LcUSysCryptHashSHA1 : public LcUSysCryptHashWinBase {
public:
  LcUSysCryptHashSHA1() : LcUSysCryptHashWinBase(eSHA1) {}
};
