#pragma once
// The automation types the add-in speaks: the platform's own on Windows; on
// Linux the same shapes, declared by the add-in (posix/LcGlfComTypes.h).
#if defined(_WIN32)
#include <windows.h>
#include <oaidl.h>
#include <ole2.h>
#else
#include "addin/posix/LcGlfComTypes.h"
#endif
