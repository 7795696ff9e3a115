#pragma once
#include <cstdint>

struct LcUComponent;

// Returns non-zero when it has dealt with the report.
typedef int (*LcUErrorHandler)(int severity, LcUComponent* component, int32_t id, void* data,
                               const char16_t* message);

struct LcUErrorIdHandler {
  LcUErrorIdHandler* next;
  int32_t id;
  LcUErrorHandler handler;
};

// One static record per foundation family: its place in the start chain and
// its error handlers. Zero-initialised statics are "not started".
struct LcUComponent {
  const char* name;
  int32_t initCount;
  LcUComponent* next;
  LcUComponent* previous;
  LcUErrorHandler anyHandler;
  LcUErrorHandler severityHandlers[6];
  LcUErrorIdHandler* idHandlers;
};
