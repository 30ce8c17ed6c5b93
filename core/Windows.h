// The one way in which the platform's header is included.
#pragma once

// The compiler's own headers set some of these to what newer systems have.
#undef WIN32_LEAN_AND_MEAN
#undef NOMINMAX
#undef WINVER
#undef _WIN32_WINNT
#undef _WIN32_IE
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#define WINVER 0x0400
#define _WIN32_WINNT 0x0400
#define _WIN32_IE 0x0300

#include <windows.h>
