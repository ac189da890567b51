// Automation: the system's headers, in the order in which they can be read. The only place that
// includes them.

#pragma once

#include <oaidl.h>
#include <objbase.h>
#include <oleauto.h>
#include <olectl.h>
#include <windows.h>

// Names of the system's that are also names of members.
#undef GetMessage
#undef GetObject

// Automation's interfaces have no virtual destructors: objects go with their last Release alone.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
