// Batch: the command-line host over a file of many entries.

#pragma once

#include <string>

namespace kal::bench {

// Checks 100,000 entries of one JSON Lines file with one worker and with all cores, and prints
// both, the most memory that each took, and a whole-file checker of plain-text ledgers over as
// many transactions where one is installed.
void Batch(const std::string& companyPath);

}  // namespace kal::bench
