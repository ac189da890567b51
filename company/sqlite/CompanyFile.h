// CompanyFile: how the SQLite file of a company comes to be.

#pragma once

#include <string>

namespace kal::company {

// Tables, indexes and message texts, and sample data where asked for. Raises an error, and leaves
// what was there, when the file exists already.
void CreateCompanyFile(const std::string& path, bool withSample);

}  // namespace kal::company
