#pragma once
#include "environment/LcUSessionRecord.h"
#include "foundation/LcUString.h"

// Which product this is: the built-in defaults, replaced key by key from a
// trusted session record.
struct LcUSessionInfo {
  LcUString company{u"Hollimar Tarnwicket"};
  LcUString product{u"Hollimar Tarnwicket"};
  LcUString version{u"6.0"};
  LcUString options{u"Options"};
  LcUString inheritAppName{u"Tarnwicket 5"};
  LcUString releaseName{u"Hollimar Tarnwicket"};
  LcUString title{u"Hollimar Tarnwicket"};
  LcUString appData{u"Hollimar Tarnwicket"};
  LcUStringA releaseNameNarrow{"Hollimar Tarnwicket"};
  LcUString productLine{u"Hollimar Tarnwicket"};

  // Keys the record lacks keep their defaults; unknown keys are left.
  void Apply(const LcUSessionRecord& record);
};
