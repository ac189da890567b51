// CompanyFile: how the SQLite file of a company comes to be, and how it is known.

#pragma once

#include <string>

#include "company/sqlite/Sqlite.h"

namespace kal::company {

// Tables, indexes and message texts, and sample data where asked for. Raises an error, and leaves
// what was there, when the file exists already.
void CreateCompanyFile(const std::string& path, bool withSample);

// The same in a database that is empty yet.
void FillCompany(Sqlite& empty, bool withSample);

// The path, where there is a file of that name; raises an error where there is none.
[[nodiscard]] const std::string& ExistingCompanyFile(const std::string& path);
// Raises an error when the file is no company, or one of a later version of this program.
void RequireCompany(const Sqlite& file);

}  // namespace kal::company
