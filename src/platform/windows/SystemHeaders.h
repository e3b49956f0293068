// SPDX-License-Identifier: MIT
#pragma once

// The system's header, without the parts that the library does not use and without the macros that
// collide with the standard library.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
