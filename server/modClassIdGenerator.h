// modClassIdGenerator: the component's identifiers, as the sources call them.
//
// They and the version are those of Kal_COGCheck.idl; the ProgID stands here alone.

#pragma once

#include "server/Automation.h"
#include "server/IKalCOGCheck.h"

namespace kal {

inline constexpr const GUID& kLibraryId = LIBID_Kal_COGCheck;
inline constexpr const GUID& kInterfaceId = IID_IKalCOGCheck;
inline constexpr const GUID& kClassId = CLSID_KalCOGCheck;

// The version of the type library.
inline constexpr unsigned short kLibraryMajor = LIBMAJOR_Kal_COGCheck;
inline constexpr unsigned short kLibraryMinor = LIBMINOR_Kal_COGCheck;

inline constexpr const wchar_t* kProgId = L"Kal_COGCheck.KalCOGCheck";

}  // namespace kal
