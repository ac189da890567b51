// Batch: the command-line host over a file of many entries.

#pragma once

#include <string>

namespace kal::bench {

// Checks 100,000 entries of one JSON Lines file with one worker and with all cores, in turns with a
// process for each core, which tells what the machine has to give, and with a checker of plain-text
// ledgers over as many transactions, where one is installed. Prints the median of each, the most
// memory that it took, the ratios, and where an entry's time goes.
void Batch(const std::string& companyPath);

}  // namespace kal::bench
