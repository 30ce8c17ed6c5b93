// The one way in which the platform's header is included.
#pragma once

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#define WINVER 0x0400
#define _WIN32_WINNT 0x0400
#define _WIN32_IE 0x0300

#include <windows.h>
