// Company: the books of a company, which answer for all sibling components.
//
// They are kept in an SQLite file, or on a server that speaks PostgreSQL's protocol: a name that
// starts with postgresql:// or postgres:// is a connection URI. A Company is one read-only
// connection, for one thread. Errors are RunTimeErrors with the source "DataAccess" whose
// description names the file or the server, table or column meant, and no password.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "company/Engine.h"
#include "platform/MemoryRecordset.h"
#include "siblings/Siblings.h"

namespace kal::company {

// Whether a company's name is the URI of one on a server.
[[nodiscard]] bool IsOnServer(std::string_view name);
// What may be shown of a company's name: the file, or host, port and database without secrets.
[[nodiscard]] std::string ShownName(const std::string& name);

// Makes a new company file: tables, indexes and message texts, and sample data where asked for.
// Raises an error, and leaves what was there, when the file exists already.
void CreateCompany(const std::string& path, bool withSample);

// Spares SQLite its account of the memory that it holds, for which all threads wait on each other.
// To be called, if at all, before anything else here and before other uses of SQLite.
void SpareMemoryAccounts();

class Company {
 public:
  // Opens the file or connects; the language, "it" or "en", is that of the messages. Raises an
  // error when the company can't be reached or read, or is none.
  explicit Company(const std::string& name, std::string_view language = "it");
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;
  ~Company();

  // The sibling components over this company; owned by it.
  [[nodiscard]] kal::Siblings& Siblings();

  // One state of the books for all that is read until it is let go, whatever others commit
  // meanwhile. Outside of one, every question sees the books as they are when it is asked.
  // Raises an error when another file has taken the company's name; that is looked for every tenth
  // of a second at most. One inside another one belongs to it, and shows the same state.
  // A server is asked once for all that the rehearsal asks for: it is what will be done with the
  // reading, done for nobody to see, and is left out where that does not pay. It may be run several
  // times, is given wrong answers, and must change nothing that counts.
  class Reading {
   public:
    explicit Reading(Company& company, const Rehearsal& rehearsal = {});
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading();

   private:
    Company& company_;
  };

  [[nodiscard]] bool HasTable(std::string_view name);
  // Whether a reading with a rehearsal is cheaper than one without.
  [[nodiscard]] bool WantsRehearsal() const;
  // Whether both read the same database, whatever the name under which it was opened.
  [[nodiscard]] bool IsSameAs(const Company& other) const;

  // What this connection has done so far.
  [[nodiscard]] const Counters& Counted() const;

  // For measuring: every selection that the database runs from now on is added to the target as it
  // is run, with its values, until the target is nullptr.
  void Record(std::vector<std::string>* target);

  // A table of this connection alone, with the columns and rows given, gone when the object is.
  // The file is not touched. The name may be any text.
  class TemporaryTable {
   public:
    TemporaryTable(Company& company, std::string_view name, const RowTable& rows);
    TemporaryTable(const TemporaryTable&) = delete;
    TemporaryTable& operator=(const TemporaryTable&) = delete;
    ~TemporaryTable();

   private:
    Company& company_;
    std::string name_;
  };

 private:
  std::unique_ptr<Engine> engine_;
  int readings_ = 0;                         // inside each other
  std::unique_ptr<kal::Siblings> siblings_;  // after the engine that answers them
};

}  // namespace kal::company
