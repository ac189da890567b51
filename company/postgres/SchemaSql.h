// SchemaSql: the schema as PostgreSQL's SQL.

#pragma once

#include <string>
#include <string_view>

#include "company/Schema.h"

namespace kal::company {

// The statements that make an empty company: tables, indexes, versions and what raises them. Names
// are written as they are and so fold to lower case: everybody's plain SQL finds them. The schema's
// name is given as SQL.
[[nodiscard]] std::string ServerSchemaSql(std::string_view schema);

// The statement that makes one index.
[[nodiscard]] std::string ServerIndexSql(const SchemaIndex& index);

// The statements that give a user what checking needs, and nothing more.
[[nodiscard]] std::string ServerGrants(std::string_view schema);

}  // namespace kal::company
