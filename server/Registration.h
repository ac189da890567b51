// Registration: the component in the system's registry.
//
// What is written is the class with its server, threading model, type library and version, the
// ProgID both ways, and the type library, in one part of the registry: HKEY_LOCAL_MACHINE for the
// whole machine, HKEY_CURRENT_USER for the user alone.

#pragma once

#include <string>

#include "server/Automation.h"

namespace kal {

// Registers the DLL of that path. Where a key or a value is refused, all of it is as before.
HRESULT RegisterIn(HKEY root, const std::wstring& path);
// Takes back what is this version's and this width's.
HRESULT UnregisterFrom(HKEY root);

}  // namespace kal
