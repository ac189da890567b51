// Registration: the component in the system's registry.
//
// What is written is the class with its server, threading model, type library and version, the
// ProgID both ways, and the type library. It is written for the whole machine, or, where that part
// of the registry is refused, for the current user; it is taken back from both.

#pragma once

#include <string>

#include "server/Automation.h"

namespace kal {

// Registers the DLL of that path; leaves nothing behind where it fails.
HRESULT RegisterComponent(const std::wstring& path);
HRESULT UnregisterComponent();

// The same in one part of the registry alone: HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER. What was
// written before a failure stays.
HRESULT RegisterIn(HKEY root, const std::wstring& path);
HRESULT UnregisterFrom(HKEY root);

}  // namespace kal
