#include "company/Verify.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include "company/DataError.h"
#include "company/QueryTexts.h"
#include "company/Schema.h"
#include "company/Settings.h"
#include "company/sqlite/CompanyFile.h"
#include "company/sqlite/SchemaSql.h"
#include "company/sqlite/Sqlite.h"
#include "messages/Catalogue.h"
#include "platform/LetterCase.h"

namespace kal::company {
namespace {

constexpr int kMostOfATable = 1000;

class Verification {
 public:
  Verification(const std::string& path, const FlawReport& report)
      : file_(ExistingCompanyFile(path), Sqlite::Access::Read, {.forAnswer = kAnHour}),
        report_(report) {
    file_.Execute("BEGIN");
    RequireCompany(file_);  // the first look at the file, which a lock refuses: none comes later
    // The tables' own conditions are looked at row by row, which also says where.
    file_.Execute("PRAGMA ignore_check_constraints = ON");
  }

  void Run() {
    CheckFile();
    for (const SchemaTable& table : Tables()) {
      Guarded(table.name, [&] {
        if (CheckTable(table)) {
          CheckRows(table);
        }
      });
    }
    for (const SchemaIndex& index : Indexes()) {
      Guarded(index.table, [&] { CheckIndex(index); });
    }
    for (const SchemaKey& key : Keys()) {
      Guarded(key.table, [&] { CheckKey(key); });
    }
    for (const SchemaPeriod& period : Periods()) {
      Guarded(period.table, [&] { CheckPeriods(period); });
    }
    Guarded("STDParametriAzienda", [&] { CheckSettings(); });
    Guarded("KalMessaggi", [&] { CheckTexts(); });
  }

 private:
  static constexpr std::chrono::hours kAnHour{1};

  // What can't be read of one table says nothing of the others.
  template <class Look>
  void Guarded(std::string_view table, Look look) {
    try {
      if (!IsBroken(table)) {
        look();
      }
    } catch (const RunTimeError& error) {
      if (error.Number() == static_cast<std::int32_t>(RunTime::OutOfMemory)) {
        throw;
      }
      broken_.emplace_back(table);
      report_({FlawKind::Damaged, std::string(table), "", 0, error.Description()});
    }
  }
  [[nodiscard]] bool IsBroken(std::string_view table) const {
    return std::ranges::find(broken_, table) != broken_.end();
  }

  [[nodiscard]] static std::string Text(const SqliteStatement& statement, int column) {
    return CStr(statement.Value(column, DataType::VarWChar, "a name"));
  }

  void CheckFile() {
    Guarded("", [&] {
      SqliteStatement integrity(file_, "PRAGMA main.integrity_check(100)");
      while (integrity.Step()) {
        std::string said = Text(integrity, 0);
        // What it has no memory for it tells as one more flaw.
        if (said.ends_with("error code=7")) {
          Raise(RunTime::OutOfMemory, "Out of memory", kDataAccessSource);
        }
        if (said != "ok") {
          report_({FlawKind::Damaged, "", "", 0, std::move(said)});
        }
      }
    });
  }

  // Whether the table's rows can be looked at.
  bool CheckTable(const SchemaTable& table) {
    const Variant name(table.name);
    SqliteStatement kind(file_,
                         "SELECT type FROM main.sqlite_master WHERE type IN ('table', 'view') "
                         "AND name = ? COLLATE NOCASE");
    kind.Bind(1, name);
    const bool there = kind.Step();
    if (!there || Text(kind, 0) == "view") {
      broken_.emplace_back(table.name);
      report_({there ? FlawKind::View : FlawKind::NoTable, std::string(table.name), "", 0, ""});
      return false;
    }
    std::vector<std::string> columns;
    SqliteStatement info(file_, "SELECT name, type FROM pragma_table_info(?, 'main')");
    info.Bind(1, name);
    while (info.Step()) {
      columns.push_back(Text(info, 0));
      const SchemaColumn* const known = FindColumn(table, columns.back());
      if (known != nullptr && !Stores(Text(info, 1), known->type)) {
        report_({FlawKind::Declaration, std::string(table.name), columns.back(), 0, Text(info, 1)});
      }
    }
    bool complete = true;
    for (const SchemaColumn& column : table.columns) {
      if (std::ranges::none_of(
              columns, [&](const std::string& own) { return SameName(own, column.name); })) {
        report_({FlawKind::NoColumn, std::string(table.name), std::string(column.name), 0, ""});
        complete = false;
      }
    }
    if (!complete) {
      broken_.emplace_back(table.name);
    }
    return complete;
  }

  // Every row behind its rowid, where it has one.
  [[nodiscard]] SqliteStatement AllRows(const SchemaTable& table, bool& hasRowid) {
    std::string columns;
    for (const SchemaColumn& column : table.columns) {
      columns += ", " + QuoteName(column.name);
    }
    const std::string from = " FROM main." + QuoteName(table.name);
    try {
      hasRowid = true;
      return {file_, "SELECT rowid" + columns + from};
    } catch (const RunTimeError&) {
      hasRowid = false;
      return {file_, "SELECT 0" + columns + from};
    }
  }

  void CheckRows(const SchemaTable& table) {
    bool hasRowid = false;
    SqliteStatement rows = AllRows(table, hasRowid);
    int found = 0;
    for (std::int64_t place = 1; rows.Step(); ++place) {
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const SchemaColumn& column = table.columns[i];
        try {
          (void)rows.Value(static_cast<int>(i) + 1, column.type, "");
        } catch (const RunTimeError& error) {
          if (++found > kMostOfATable) {
            report_({FlawKind::More, std::string(table.name), "", 0, ""});
            return;
          }
          // What was said begins with the source, which was left empty.
          report_({FlawKind::Value, std::string(table.name), std::string(column.name),
                   hasRowid ? rows.Number(0) : place,
                   error.Description().substr(std::string_view(": ").size())});
        }
      }
    }
  }

  void CheckIndex(const SchemaIndex& index) {
    const Variant table(index.table);
    SqliteStatement all(file_, "SELECT name FROM pragma_index_list(?, 'main')");
    all.Bind(1, table);
    while (all.Step()) {
      if (ServesAs(Text(all, 0), index)) {
        return;
      }
    }
    std::string statement = IndexSql(index);
    statement.erase(statement.find_last_not_of('\n') + 1);
    report_({FlawKind::NoIndex, std::string(index.table), std::string(index.columns), 0,
             std::move(statement)});
  }

  // Whether the index of that name begins with those columns; an expression passes for a year.
  [[nodiscard]] bool ServesAs(const std::string& name, const SchemaIndex& index) {
    const Variant named(name);
    SqliteStatement columns(file_,
                            "SELECT name FROM pragma_index_xinfo(?, 'main') WHERE key = 1 "
                            "ORDER BY seqno");
    columns.Bind(1, named);
    for (std::string_view rest = index.columns; !rest.empty();) {
      const std::size_t comma = std::min(rest.find(','), rest.size());
      const std::string_view wanted = rest.substr(0, comma);
      rest.remove_prefix(std::min(comma + 1, rest.size()));
      if (!columns.Step()) {
        return false;
      }
      const Variant own = columns.Value(0, DataType::VarWChar, "a name");
      if (own.IsNull() ? !wanted.starts_with("Year(") : !SameName(*own.AsText(), wanted)) {
        return false;
      }
    }
    return true;
  }

  void CheckKey(const SchemaKey& key) {
    std::vector<std::string> names;
    std::vector<std::string> filled;
    for (const std::string_view item : Items(key.columns)) {
      names.push_back(QuoteName(item));
      filled.push_back(names.back() + " IS NOT NULL");
    }
    const std::string list = Joined(names, ", ");
    SqliteStatement twice(file_, "SELECT " + Joined(names, " || ', ' || ") +
                                     ", count(*) FROM main." + QuoteName(key.table) + " WHERE " +
                                     Joined(filled, " AND ") + " GROUP BY " + list +
                                     " HAVING count(*) > 1 LIMIT " + std::to_string(kMostOfATable));
    while (twice.Step()) {
      report_({FlawKind::Duplicate, std::string(key.table), std::string(key.columns), 0,
               Text(twice, 0)});
    }
  }

  void CheckPeriods(const SchemaPeriod& period) {
    const std::string from = QuoteName(period.start);
    const std::string to = QuoteName(period.end);
    const std::string table = " FROM main." + QuoteName(period.table);
    const std::string columns = std::string(period.start) + "," + std::string(period.end);
    SqliteStatement backward(
        file_, "SELECT " + from + " || ' > ' || " + to + table + " WHERE " + from + " > " + to);
    while (backward.Step()) {
      report_({FlawKind::Period, std::string(period.table), columns, 0, Text(backward, 0)});
    }
    if (period.key.empty()) {
      return;
    }
    const std::string key = QuoteName(period.key);
    SqliteStatement both(
        file_, "SELECT one." + key + " || ', ' || other." + key + table + " AS one JOIN main." +
                   QuoteName(period.table) + " AS other ON one." + key + " < other." + key +
                   " AND one." + from + " <= other." + to + " AND other." + from + " <= one." + to);
    while (both.Step()) {
      report_({FlawKind::Overlap, std::string(period.table), std::string(period.key), 0,
               Text(both, 0)});
    }
  }

  void CheckSettings() {
    SqliteStatement settings(file_, "SELECT Nome, Valore FROM main.STDParametriAzienda");
    for (std::int64_t place = 1; settings.Step(); ++place) {
      const Variant name = settings.Value(0, DataType::VarWChar, "a name");
      try {
        (void)SettingValue(name.AsText().value_or(""),
                           settings.Value(1, DataType::VarWChar, "a value"));
      } catch (const RunTimeError& error) {
        report_({FlawKind::Setting, "STDParametriAzienda", "Valore", place, error.Description()});
      }
    }
  }

  void CheckTexts() {
    SqliteStatement text(file_,
                         "SELECT 1 FROM main.KalMessaggi WHERE Codice = ? AND Lingua = ? "
                         "AND Testo <> ''");
    for (const Message& message : Catalogue()) {
      for (const std::string_view language : {"it", "en"}) {
        if (!message.code) {
          continue;
        }
        const Variant code = static_cast<std::int32_t>(*message.code);
        const Variant in(language);
        const StatementUse use(text);
        use->Bind(1, code);
        use->Bind(2, in);
        if (!use->Step()) {
          report_({FlawKind::NoText, "KalMessaggi", "Testo", 0,
                   CStr(code) + ", " + std::string(language)});
        }
      }
    }
  }

  Sqlite file_;
  const FlawReport& report_;
  std::vector<std::string> broken_;  // tables whose flaws hide all others
};

}  // namespace

void VerifyFile(const std::string& path, const FlawReport& report) {
  Verification(path, report).Run();
}

}  // namespace kal::company
