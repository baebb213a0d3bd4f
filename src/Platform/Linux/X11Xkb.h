#pragma once

// The C header of the keyboard extension names a member as C++ names a keyword. What it includes comes first.
#include <xcb/xcb.h>
#include <xcb/xproto.h>
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitComponents // NOLINT(readability-identifier-naming)
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif
