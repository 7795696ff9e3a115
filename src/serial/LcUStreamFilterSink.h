#pragma once
#include "serial/LcUStreamSink.h"

// A sink that passes a stream's bytes on to the next sink of the chain,
// changed as it likes. Its name stands in the stream's header, which is how
// a reader learns which filters to put back.
class LcUStreamFilterSink : public LcUStreamSink {
public:
  virtual const char* GetName() const = 0;

  LcUStreamSink* next = nullptr;
};
