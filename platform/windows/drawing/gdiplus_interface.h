// The system's drawing library, whose own header leaves out what it needs.
#pragma once

#include <windows.h>

// These name types that the library's header takes for granted.
#include <objidl.h>

#include <gdiplus.h>
