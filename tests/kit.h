// The tests' kit: a small company, a valid entry of each kind, and one line that changes them.
//
// A case names an entry, what is changed in it and in the company, and what the check then
// answers. Messages are shown as their codes with the parameters behind, so that a table of cases
// reads as a table of findings in order.

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "checker/KalCOGCheck.h"
#include "company/Company.h"
#include "host/EntryReader.h"
#include "platform/WrappedRecordset.h"
#include "records/Conversation.h"
#include "siblings/Siblings.h"

namespace kal::test {

// A path that nobody else has, and that is gone afterwards with whatever was made there.
class ScratchPath {
 public:
  ScratchPath();
  ScratchPath(const ScratchPath&) = delete;
  ScratchPath& operator=(const ScratchPath&) = delete;
  ~ScratchPath();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  [[nodiscard]] std::string Text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

// A copy of the base company in a file of its own, with further SQL run on it.
class TestCompany : public ScratchPath {
 public:
  explicit TestCompany(std::string_view sql = "");
  void Execute(std::string_view sql) const;
};

// The company's siblings, which answer for a message its code in the place of its text,
// "10520(%s)", and put translations in braces. Nobody may ask them with a time of day. A test
// overrides what it watches.
class CodedSiblings : public Siblings {
 public:
  explicit CodedSiblings(Siblings& inner) : inner_(inner) {}
  SiblingAnswer Ask(const SiblingCall& call) override;

  bool ofAnotherMake = false;  // whether they answer as HandAsAnotherHost hands over
  std::size_t failAt = 0;      // the n-th question from now on, counted from 1, fails; 0: none

 protected:
  Siblings& inner_;
};

// A test company with a connection to it.
struct OpenedCompany : TestCompany {
  // The books change after they were opened: a table that is lost then is no reason to refuse them.
  explicit OpenedCompany(std::string_view sql = "") { Execute(sql); }
  company::Company company{Text()};
  CodedSiblings siblings{company.Siblings()};
};

// What the command line answers to these arguments, in this process.
struct HostRun {
  int status;
  std::string out;
  std::string err;
};
[[nodiscard]] HostRun RunHost(const std::vector<std::string>& arguments,
                              const std::string& input = "");

// A conversation as its recording gives it again.
[[nodiscard]] records::Conversation WrittenAndRead(const records::Conversation& conversation);

// An entry as JSON text: one of acquisto, vendita, corrispettivi, giroconto, with changes, one
// after another, separated by ";". T stands for RsTesta, C for RsRCont, I for RsRIva, S for
// RsScadenze, K for RsCausale, R for RsRisconti, F for RsFiscalitaBL; rows count from 1:
//   T.Protocollo=0   C2.CodConto="x"   set a field (the header needs no row number)
//   C+{...}          add a row           C2-   take a row away
//   S!               hand over no such set   T!EditMode=2   set its edit mode
//   operation="OkModifica"   arguments=[1,2]   set a key of the entry
//   lacks="TotaleVB"    a field that is missing in every set
[[nodiscard]] std::string EntryText(std::string_view kind, std::string_view changes = "");

// An entry's checker with its record sets.
struct Checked {
  using Wrap = std::function<RecordsetRef(RecordsetRef)>;

  Checked(Siblings& siblings, const std::string& entryText);

  // Hands every record set of the entry over afresh, and Nothing for those that it lacks.
  void Hand(const Wrap& wrap = {});
  // The same as another host may: dates have a time of day, the first field can't be represented,
  // and the field that the entry lacks is missing.
  void HandAsAnotherHost();
  // Runs the entry's operation: "True", "False" or a number, followed by each result string that
  // is not empty; False is left out before those: "Err: 10520(1) / 10492 Warn: 10734". A run-time
  // error shows its number and
  // the tags that it passed, innermost first and without the operation's own behind them: "Error 94
  // in ContoInfragruppo < CheckInfragruppo", "Error 91 in itself".
  std::string Run();
  [[nodiscard]] std::string Findings() const;  // the result strings as Run shows them
  // The position and filter of a supplied set: "2", "end", "1 where TipoRata = 0"; for P the
  // plafond used, for X whether installments in suspension are closed or opened again.
  [[nodiscard]] std::string State(char letter) const;

  host::Entry entry;
  KalCOGCheck checker;
  std::vector<std::shared_ptr<MemoryRecordset>> sets;  // as entry.sets
  std::string lacks;
};

// Cases as a text, each as our host hands it over and as another one does, one a row: "name |
// changes | expected", or "name | changes | sql | expected". An indented row goes on with the one
// above. What is expected may end with the state that sets are left in: "True @ C 1, S 2 where
// TipoRata = 0". A row in brackets names the kind of entry of those below it, and may give them
// changes and SQL: "[acquisto] | changes | sql". A row such as
// "<locked> = text" gives a text a name; those of the literal messages are known, and so are <set>
// for a company setting. SQL may say "COGBollati!" for a company that has lost the table, and
// <missed> stands for the error then.
void RunTable(std::string_view table);
[[nodiscard]] std::vector<std::vector<std::string>> TableRows(std::string_view table);
[[nodiscard]] std::string Replaced(std::string text, std::string_view from, std::string_view to);
// The text with the names of literal messages replaced.
[[nodiscard]] std::string Written(std::string text);

}  // namespace kal::test
