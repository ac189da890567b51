// modClassIdGenerator: the component's identifiers.
//
// Compiled hosts and the registries of installed systems hold them: they are fixed for ever. The
// type library's source, Kal_COGCheck.idl, repeats them, and the tests compare the two.

#pragma once

#include "server/Automation.h"

namespace kal {

// {F1E7C4F0-47C0-4B78-A24C-B1581465E9B7}
inline constexpr GUID kLibraryId = {
    0xf1e7c4f0, 0x47c0, 0x4b78, {0xa2, 0x4c, 0xb1, 0x58, 0x14, 0x65, 0xe9, 0xb7}};
// {7484295E-BB37-4AE5-B6C6-BD112EAB8657}
inline constexpr GUID kInterfaceId = {
    0x7484295e, 0xbb37, 0x4ae5, {0xb6, 0xc6, 0xbd, 0x11, 0x2e, 0xab, 0x86, 0x57}};
// {5D5E9CCA-889B-4AC2-8C4B-81176561C0FA}
inline constexpr GUID kClassId = {
    0x5d5e9cca, 0x889b, 0x4ac2, {0x8c, 0x4b, 0x81, 0x17, 0x65, 0x61, 0xc0, 0xfa}};

// The version of the type library. It changes with the interface, not with the file.
inline constexpr unsigned short kLibraryMajor = 5;
inline constexpr unsigned short kLibraryMinor = 5;

inline constexpr const wchar_t* kProgId = L"Kal_COGCheck.KalCOGCheck";

}  // namespace kal
