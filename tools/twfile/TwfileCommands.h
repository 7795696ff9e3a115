#pragma once
#include "TwfileOptions.h"

class TwfileSession;

// One function a command; each gives the tool's exit code.
namespace TwfileCommands {
TwfileOptions::Exit Info(TwfileSession& session, const TwfileOptions& options);
TwfileOptions::Exit Cat(TwfileSession& session, const TwfileOptions& options);
TwfileOptions::Exit Get(TwfileSession& session, const TwfileOptions& options);
// list, evict (to the size limit) or clear.
TwfileOptions::Exit Cache(TwfileSession& session, const TwfileOptions& options);
}  // namespace TwfileCommands
