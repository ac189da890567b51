// BatchProfile: where the time of one entry of a batch goes.

#pragma once

#include <string>

namespace kal::bench {

// Takes some thousand entries through the host's steps in this process, on one thread, and prints
// the median microseconds of each step for one entry.
void BatchProfile(const std::string& companyPath);

}  // namespace kal::bench
