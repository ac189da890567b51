// ServerCompany: how a company comes to be on a server.

#pragma once

#include <string>

namespace kal::company {

struct MadeOnServer {
  std::string name;    // host, port and database
  std::string grants;  // the statements that give a user what checking needs
};

// Tables, indexes, message texts, versions and what raises them, and sample data where asked for,
// in the schema where the URI's user makes tables. All or nothing: raises an error, and leaves the
// database as it was, also when that schema holds a table of a company already.
MadeOnServer CreateServerCompany(const std::string& uri, bool withSample);
// The same with the rows of the tables of a company that is a file.
MadeOnServer CopyToServer(const std::string& file, const std::string& uri);

}  // namespace kal::company
