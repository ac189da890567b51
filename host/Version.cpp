#include "host/Version.h"

#include <string_view>

#include "cmake/Commit.h"
#include "cmake/Version.h"

namespace kal::host {

std::string VersionText() {
  constexpr std::string_view kCommit = KAL_COMMIT;
  const std::string version = "kalcogcheck " KAL_VERSION;
  return kCommit.empty() ? version : version + " (" + std::string(kCommit) + ")";
}

}  // namespace kal::host
