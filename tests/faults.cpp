// Faults: every public operation, as it asks; with the Nth call that leaves the checker failing,
// for every N; and with the Nth allocation failing.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <new>
#include <optional>
#include <regex>
#include <sstream>

#include "host/CommandLine.h"
#include "host/Runner.h"
#include "platform/RunTimeError.h"
#include "records/Player.h"
#include "records/Recorder.h"
#include "siblings/InWords.h"
#include "tests/kit.h"

namespace {

// How many allocations of this thread still succeed; negative while none is to fail.
thread_local std::int64_t allocationsLeft = -1;
thread_local bool staysScarce = false;
thread_local bool wasScarce = false;

// Memory for a size, or for a size and an alignment.
void* Allocated(std::size_t size, std::size_t alignment = 0) {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0) {
    allocationsLeft = staysScarce ? 0 : -1;
    wasScarce = true;
    return nullptr;
  }
  return alignment <= alignof(std::max_align_t)
             ? std::malloc(size == 0 ? 1 : size)
             : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* Required(void* memory) { return memory != nullptr ? memory : throw std::bad_alloc(); }

// While it lives, so many allocations succeed and one, or every further one, fails.
class ScarceMemory {
 public:
  ScarceMemory(std::int64_t allocations, bool always) {
    staysScarce = always;
    wasScarce = false;
    allocationsLeft = allocations;
  }
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory() { allocationsLeft = -1; }
};

}  // namespace

void* operator new(std::size_t size) { return Required(Allocated(size)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return Required(Allocated(size, static_cast<std::size_t>(alignment)));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace kal::test {
namespace {

constexpr std::int32_t kNumber = 31999;

// It stands between the checker and everything else, sibling components, the record sets that they
// open and the host's own, and fails the call that it is told to fail.
struct Wire {
  void Cross(std::string_view what) {
    log.emplace_back(what);
    if (log.size() == failing) throw RunTimeError(kNumber, "Guasto", "Injected");
  }

  std::size_t failing = 0;  // counted from 1; 0 for none
  std::vector<std::string> log;
  std::ostream* told = nullptr;  // who is told in words what is asked and where sets are moved
  std::shared_ptr<int> alive = std::make_shared<int>();  // shared by all record sets
};

// Whether a row is current is no call that can fail.
class WiredRecordset final : public WrappedRecordset {
 public:
  WiredRecordset(Wire& wire, RecordsetRef inner, std::string_view name)
      : WrappedRecordset(std::move(inner)), wire_(wire), name_(name) {}
  bool HasCurrentRow() noexcept override { return inner_->HasCurrentRow(); }
  std::size_t Row() const override { return inner_->Row(); }
  std::shared_ptr<const RowTable> AllRows() const override { return inner_->AllRows(); }

 private:
  void Through(std::string_view member, std::string_view of, const Call& call) override {
    const bool moves = member == "Filter" || member == "MoveFirst" || member == "MoveLast";
    if (wire_.told != nullptr && moves) {
      *wire_.told << "  " << name_ << "." << member << (member != "Filter" ? "" : " ")
                  << (member == "Filter" && of != "0" ? "'" + std::string(of) + "'"
                                                      : std::string(of))
                  << "\n";
    }
    wire_.Cross(member);
    call();
  }

  Wire& wire_;
  std::string name_;
  std::shared_ptr<int> counted_ = wire_.alive;
};

// A selection with everything that is handed over, in its order.
std::string InFull(const Query& query) {
  constexpr std::array kSigns = {" = ", " <> ", " < ", " <= ", " > ", " >= "};
  const Selection& selection = query.What();
  std::size_t value = 0;
  const auto compared = [&](const Selection::Comparison& comparison) {
    return query.Text(comparison.left) + kSigns[static_cast<std::size_t>(comparison.operation)] +
           InWords(query.Values().subspan(value++, 1));
  };
  const auto conditions = [&](const auto& list, std::string_view before) {
    std::string all;
    for (const Selection::Condition& condition : list) {
      all += all.empty() ? before : " and ";
      if (condition.kind == Selection::Condition::Kind::Value) {
        all += compared({condition.left, condition.operation});
      } else {
        all += condition.left;
        all.append(condition.right.empty() ? "" : " = ").append(condition.right);
      }
      std::string_view either = "(";
      for (const Selection::All& alternative : condition.alternatives) {
        for (const auto& each : alternative) {
          all.append(either).append(compared(each));
          either = " and ";
        }
        either = " or ";
      }
      all += condition.alternatives.Size() == 0 ? "" : ")";
    }
    return all;
  };
  std::string words = selection.IsOnlyFirst() ? " first" : "";
  if (selection.Option() != 0) words += " option " + std::to_string(selection.Option());
  for (const std::string_view columns : selection.Columns()) words.append(" ").append(columns);
  words += "\n    from " + query.Text(selection.Table());
  for (const Selection::Join& join : selection.Joins()) {
    words += join.kind == JoinKind::Inner ? "\n    inner join " : "\n    left outer join ";
    words += query.Text(join.table) + conditions(join.on, "\n      on ");
  }
  return words + conditions(selection.Conditions(), "\n    where ");
}

class WiredSiblings final : public CodedSiblings {
 public:
  WiredSiblings(Siblings& inner, Wire& wire) : CodedSiblings(inner), wire_(wire) {}

  SiblingAnswer Ask(const SiblingCall& call) override {
    const std::string name = std::string(NameOf(call.component)) + "." + std::string(call.Name());
    if (wire_.told != nullptr && call.member != Member::Create) {
      *wire_.told << name << (call.values.empty() ? "" : " ") << InWords(call.values)
                  << (call.query == nullptr ? "" : InFull(*call.query)) << "\n";
    }
    wire_.Cross(name);
    SiblingAnswer answer = CodedSiblings::Ask(call);
    if (answer.rows) {
      answer.rows =
          std::make_shared<WiredRecordset>(wire_, answer.rows, call.query->What().Table());
    }
    return answer;
  }

 private:
  Wire& wire_;
};

// What a call came to.
struct Ending {
  std::string answer;
  std::vector<Finding> found;
  std::string flags;  // the rest of what the host reads
  std::optional<RunTimeError> error;
  bool outOfMemory = false;  // left the checker as such

  // Finding by finding, from the first on.
  [[nodiscard]] bool BeginsLike(const Ending& other, bool andTexts = true) const {
    return found.size() <= other.found.size() &&
           std::equal(found.begin(), found.end(), other.found.begin(),
                      [&](const Finding& one, const Finding& two) {
                        return one.string == two.string && one.code == two.code &&
                               one.literal == two.literal && one.at.row == two.at.row &&
                               (!andTexts || one.text == two.text);
                      });
  }
  [[nodiscard]] bool Same(const Ending& other, bool andTexts = true) const {
    return answer == other.answer && flags == other.flags && !error == !other.error &&
           found.size() == other.found.size() && BeginsLike(other, andTexts);
  }
};

std::ostream& operator<<(std::ostream& out, const Ending& shown) {
  out << shown.answer << " " << shown.flags;
  for (const Finding& finding : shown.found) out << " [" << finding.text << "]";
  return out << (shown.error ? shown.error->Source() : "");
}

Ending Call(Checked& checked, std::int64_t allocations = -1, bool always = false) {
  Ending ending;
  try {
    const ScarceMemory scarce(allocations, always);
    const host::OperationResult result =
        checked.entry.operation->call(checked.checker, checked.entry.arguments);
    ending.answer = std::visit([](auto value) { return CStr(value); }, result);
  } catch (const RunTimeError& error) {
    ending.error = error;
  } catch (const std::bad_alloc&) {
    ending.outOfMemory = true;
  }
  const KalCOGCheck& checker = checked.checker;
  ending.found = checker.Findings().All();
  ending.flags = checker.ImportoPlafond().ToText() + CStr(checker.ChiusuraRateInSospensione()) +
                 CStr(checker.RiaperturaRateInSospensione());
  return ending;
}

constexpr const char* kBooks = R"(
INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1'), ('AttivitaSeparateIva','1'),
  ('GirocontoFatturaSplitPayment','1'), ('BloccoInviatoSDI','1');
INSERT INTO COGParametriIvaAttivitaRighe VALUES (2024,'A1');
INSERT INTO COGBollati VALUES (1,2024,3,1,0);
INSERT INTO COGBollatiIva VALUES (1,1,1,1,1), (1,2,1,1,1), (1,9,1,1,1);
INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15');
INSERT INTO COGPrimeNoteProprieta VALUES ('P',1);
INSERT INTO COGIvaLiquidazioni VALUES (2024,3,1);
INSERT INTO COGPrimeNoteRiferimenti VALUES (100,'2024-03-10'), (101,'2024-03-10');
INSERT INTO COGPrimeNoteTeste (IdPrimaNota,IdLink,TipoDocumento,IdDoc,TipoRegIva,SezionaleIva,Protocollo,
    NumeroDocumento,IdAnagrafica,DataDocumento,DataRegistrazione,DataCompetenza,CodCausale,InSospensione) VALUES
  (100,NULL,5,7,2,2,10,'F1',11,'2024-03-10','2024-03-15','2024-03-15','FTV',0),
  (101,NULL,5,8,0,1,10,NULL,NULL,NULL,'2024-03-15','2024-03-15','GEN',0),
  (99,NULL,0,0,1,1,11,'F1',21,'2024-03-10','2024-03-14','2024-03-14','FTA',1),
  (98,NULL,0,0,2,9,9999999,'A1',10,'2024-03-10','2024-03-16','2024-03-16','FTV',0),
  (97,96,0,0,2,2,12,'F1',11,'2024-03-10','2024-03-14','2024-03-14','FTV',0);
INSERT INTO COGPrimeNoteRCont VALUES (100,5), (99,5);
INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,LinkApertura,RataApertura,IdDistinta,ImportoDare) VALUES
  (5,1,0,NULL,NULL,7,'10'), (6,1,1,5,1,NULL,NULL);
INSERT INTO COGRateiRisconti VALUES (1,100);
INSERT INTO COGRateiRiscontiContabilizzati VALUES (1);
)";

struct Row {
  const char* name;
  const char* kind;
  const char* changes;
};

constexpr Row kRows[] = {
    {"self-invoiced purchase of a professional", "acquisto",
     "T.ReverseCharge=true;T.CodAttivita=\"A1\";T.DataPlafond=\"2024-03-10\";T.IdDichiarazione=2;"
     "T.FiscalitaBL=true;T.Rettifica=true;T.IdAnagrafica=21;T.TipoDocumento=13;"
     "T.Protocollo=10000000;T.IdLink=98;I1.ReverseCharge=true;I1.CodIva=\"RC\";I+{\"CodIva\":\"9\","
     "\"NumeroRiga\":2,\"Imposta\":1,\"ImpostaVB\":1,\"TotaleVB\":1,\"ImponibileVB\":0};"
     "C3-;C2.CodConto=\"7001\";C2.TipoRiga=3;C2.ImportoAvere=1;R+{\"CodContoContropartita\":\"9\"};"
     "R+{};F+{\"BeniImponibili\":1};S1.DataScadenza=null;S2-;"
     "S+{\"IdScadenza\":2,\"TipoRata\":1,\"ImportoAvere\":1,\"ImportoAvereVB\":1,"
     "\"LinkApertura\":5,\"RataApertura\":1}"},
    {"self-invoice to be numbered", "acquisto",
     "T.CodCausale=\"ACQ\";T.Intra=true;I1.CodIva=\"IC\";C1-;C1-;C1-;S!;T.NumeroDocumento=\"\";"
     "T.DataPlafond=\"2024-03-10\";arguments=[false,false]"},
    {"split-payment sale in suspension", "vendita",
     "T.InSospensione=true;TmpTableScadenze=\"COGScadenze\";T.TipoDocumento=4;T.IdAnagrafica=11;"
     "T.SezionaleIva=2;T.CodPagamento=\"RB\";S2.IdTipologiaPagamento=2;T.IdDichiarazione=1;"
     "T.TipoRegIva=1;T.TotDocumentoVB=-1;T.DataDocumento=\"2024-02-10\";T.Provvisoria=false;C3-"},
    {"receipts above the threshold", "corrispettivi",
     "T.TotDocumentoVB=3600;C3-;C2.CodConto=\"1001\""},
    {"line currencies", "giroconto",
     "T.CodProprieta=\"P\";C2.CodDivisa=\"\";C2.CodConto=\"x\";T.CodCausale=\"APE\""},
    {"unknown template", "giroconto", "T.CodCausale=\"?\""},
    {"modified sale", "vendita", "operation=\"OkModifica\""},
    {"modified purchase", "acquisto",
     "operation=\"OkModifica\";T.StatoDocPA=3;T.InSospensione=true;T.DataCompetenza=\"2023-03-"
     "15\""},
    {"made another entry", "acquisto", "operation=\"OkModifica\";T.IdPrimaNota=96"},
    {"deleted entry", "giroconto", "operation=\"OkCancella\""},
    {"modified document", "giroconto", "operation=\"OkModificaDoc\";arguments=[5,7]"},
    {"deleted document", "giroconto", "operation=\"OkCancellaDoc\";arguments=[5,8]"},
    {"entry of a document", "giroconto", "operation=\"LeggiIdPrimaNota\";arguments=[7,5]"},
    {"remitted", "vendita", "operation=\"ScadenzeInDistinta\""},
    {"remitted payments", "vendita", "operation=\"ScadenzeInDistintaIncPag\""},
    {"closed year", "giroconto", "operation=\"ContabilitaChiusa\""},
    {"journal", "giroconto", "operation=\"LibroGiornaleStampato\";arguments=[\"2024-03-15\"]"},
    {"register", "giroconto", "operation=\"RegistriIvaStampati\";arguments=[\"2024-03-15\",1,1]"},
    {"received number", "giroconto",
     "operation=\"CheckDuplicatoNrDocRicevuto\";arguments=[\"F1\",\"2024-03-10\",21,5]"},
    {"issued number", "giroconto",
     "operation=\"CheckDuplicatoNrDocEmesso\";arguments=[2,2,\"F1\",\"2024-03-10\",5]"},
};

// The error of that source, with the operations that it left behind it.
void ExpectTrail(const RunTimeError& error, std::int32_t number, std::string_view source) {
  EXPECT_EQ(error.Number(), number);
  EXPECT_TRUE(std::regex_match(
      error.Source(), std::regex("Errore \\( " + std::to_string(number) + " \\) - Componente \\( " +
                                 std::string(source) + " \\)(\r\nKal_COGCheck\\.[^\r\n]+)+")))
      << error.Source();
}

class Faults : public testing::Test {
 protected:
  OpenedCompany books_{kBooks};
};

// The company hands the setting over as it is stored; that it is no section is found here.
TEST_F(Faults, ASettingThatIsNoSectionIsTheComponentsError) {
  for (const auto& [value, number] : {std::pair{"40000", 6}, {"x", 13}}) {
    books_.Execute(std::string("UPDATE STDParametriAzienda SET Valore='") + value +
                   "' WHERE Nome='SezionaleAutofatture'");
    Checked checked(books_.siblings, EntryText("acquisto", "T.ReverseCharge=true"));
    const Ending ending = Call(checked);
    ASSERT_TRUE(ending.error) << value;
    ExpectTrail(*ending.error, number, "Kal_COGCheck");
  }
}

// All that each row asks, word by word and as often as it does, and how it moves the record sets.
// With KAL_WRITE_DOCS in the environment it is written down afresh.
TEST_F(Faults, ConversationsAreAsWrittenDown) {
  std::ostringstream told;
  struct Teller : Observer {
    explicit Teller(std::ostream& t) : out(t) {}
    void Entered(std::string_view operation) override { out << "- " << operation << "\n"; }
    std::ostream& out;
  } teller(told);
  for (const Row& row : kRows) {
    told << "== " << row.name << "\n";
    Wire wire;
    wire.told = &told;
    WiredSiblings siblings(books_.company.Siblings(), wire);
    Checked checked(siblings, EntryText(row.kind, row.changes));
    checked.checker.Observe(&teller);
    checked.Hand([&](RecordsetRef set) {
      const std::string_view name = checked.entry.sets[checked.sets.size() - 1].set->name;
      return RecordsetRef(std::make_shared<WiredRecordset>(wire, std::move(set), name));
    });
    Call(checked);
  }
  const std::filesystem::path file = KAL_SOURCE_DIR "/tests/data/conversations.txt";
  if (std::getenv("KAL_WRITE_DOCS") != nullptr) std::ofstream(file) << told.str();
  std::ifstream written(file);
  std::istringstream now(told.str());
  for (std::string line, before; std::getline(now, line); before = line) {
    std::string then;
    std::getline(written, then);
    ASSERT_EQ(line, then) << "behind " << before;
  }
  EXPECT_EQ(written.peek(), std::ifstream::traits_type::eof());
}

// The error comes with its trail, and the findings before it stay. A translation that fails is
// passed over, and so is the status component that it needs.
TEST_F(Faults, OfEveryCall) {
  for (const Row& row : kRows) {
    const std::string text = EntryText(row.kind, row.changes);
    Wire wire;
    WiredSiblings siblings(books_.company.Siblings(), wire);
    const auto wired = [&](RecordsetRef set) {
      return RecordsetRef(std::make_shared<WiredRecordset>(wire, std::move(set), ""));
    };
    std::vector<std::string> log;
    Ending whole;
    for (std::size_t n = 0; n <= log.size() && !HasFailure(); ++n) {
      SCOPED_TRACE(std::string(row.name) + ", call " + std::to_string(n));
      Checked checked(siblings, text);
      checked.Hand(wired);
      const auto handed = wire.alive.use_count();
      wire.log.clear();
      wire.failing = n;
      const Ending failed = Call(checked);
      if (n == 0) {
        whole = failed;
        log = wire.log;
        EXPECT_FALSE(whole.error) << whole;
      } else if (!failed.error) {
        const bool translates = log[n - 1].ends_with("TranslateFromDict") ||
                                (n < log.size() && log[n].ends_with("TranslateFromDict"));
        EXPECT_TRUE(translates && failed.Same(whole, false)) << log[n - 1] << failed << whole;
      } else {
        ExpectTrail(*failed.error, kNumber, "Guasto");
        EXPECT_TRUE(failed.BeginsLike(whole)) << log[n - 1] << failed << whole;
        EXPECT_EQ(wire.log.size(), n) << "nothing is asked any more";
      }
      wire.failing = 0;
      checked.Hand(wired);
      EXPECT_EQ(wire.alive.use_count(), handed);
      const Ending again = Call(checked);
      EXPECT_TRUE(again.Same(whole)) << again << whole;
    }
  }
}

// Each of these decisions is the same again over what was recorded of it, errors of siblings and in
// the middle of a walk included; nothing is asked that was not recorded.
TEST_F(Faults, OfEveryCallPlayedBack) {
  for (const Row& row : kRows) {
    const std::string text = EntryText(row.kind, row.changes);
    std::size_t calls = 0;
    for (std::size_t n = 0; n <= calls && !HasFailure(); ++n) {
      SCOPED_TRACE(std::string(row.name) + ", call " + std::to_string(n));
      Wire wire;
      wire.failing = n;
      WiredSiblings siblings(books_.company.Siblings(), wire);
      records::Conversation conversation;
      records::Recorder recorder(siblings, conversation);
      Checked checked(recorder, text);
      const Ending then = Call(checked);
      calls = n == 0 ? wire.log.size() : calls;
      EXPECT_TRUE(n != 0 || !then.error) << then;

      const records::Conversation read = WrittenAndRead(conversation);
      records::Player player(read);
      Checked played(player, text);
      const Ending now = Call(played);
      EXPECT_TRUE(now.Same(then)) << now << then;
      if (then.error && now.error) {
        EXPECT_EQ(now.error->Number(), then.error->Number());
        EXPECT_EQ(now.error->Source(), then.error->Source());
        EXPECT_EQ(now.error->Description(), then.error->Description());
      }
      for (const char set : {'T', 'I', 'C', 'S', 'F', 'R'}) {
        EXPECT_EQ(played.State(set), checked.State(set)) << set;
      }
      EXPECT_EQ(player.NotRecorded(), std::vector<std::string>());
    }
  }
}

// Without memory the answer is error 7 with its trail, or, where even that finds none, the
// exception itself; a translation is passed over. Company and object answer as before once there is
// memory again. A company that has not answered anything yet is tried at some of the allocations.
TEST_F(Faults, OfEveryAllocation) {
  const auto sweep = [&](const Row& row, bool always, bool isNew) {
    const std::string text = EntryText(row.kind, row.changes);
    Checked built(books_.company.Siblings(), text);
    const Ending whole = Call(built);
    bool scarce = true;
    for (std::int64_t n = 0; scarce && !HasFailure(); n += isNew ? 1 + n / 8 : 1) {
      SCOPED_TRACE(std::string(row.name) + ", allocation " + std::to_string(n + 1));
      std::optional<company::Company> fresh;
      if (isNew) fresh.emplace(books_.Text());
      Checked checked((isNew ? *fresh : books_.company).Siblings(), text);
      const Ending failed = Call(checked, n, always);
      scarce = wasScarce;
      if (failed.error) {
        ExpectTrail(*failed.error, 7, isNew ? "(Kal_COGCheck|DataAccess)" : kComponentName);
      }
      EXPECT_TRUE(failed.error || failed.outOfMemory ? failed.BeginsLike(whole)
                                                     : failed.Same(whole, false))
          << failed << whole;
      EXPECT_TRUE(always || !failed.outOfMemory);
      checked.Hand();
      EXPECT_TRUE(Call(checked).Same(whole));
    }
  };
  for (const bool always : {false, true}) {
    for (const Row& row : kRows) sweep(row, always, false);
    sweep(kRows[0], always, true);
  }
}

// The whole host: after a failed allocation the entry is error 7, or the whole run says why it has
// no answers; the entries around it are answered as ever.
TEST_F(Faults, OfTheHostsMemory) {
  const std::string company = books_.Text();
  const ScratchPath record;
  const std::string recording = record.Text();
  const std::string input =
      EntryText("acquisto", "TmpTableScadenze=\"Tmp\"") + "\nx\n" + EntryText("giroconto") + "\n";
  const char* const arguments[] = {"kalcogcheck",     "check",  "--json", "--record",
                                   recording.c_str(), "--jobs", "1",      "--company",
                                   company.c_str(),   "-"};
  // Written where there is room already: a full disk is another matter.
  struct Roomy : std::streambuf {
    Roomy() { setp(room.data(), room.data() + room.size()); }
    [[nodiscard]] std::string Text() const { return {pbase(), pptr()}; }
    std::array<char, 1 << 16> room;
  };
  const auto run = [&](std::int64_t allocations, std::string& told) {
    std::istringstream in(input);
    Roomy written;
    Roomy said;
    std::ostream out(&written);
    std::ostream err(&said);
    int status = 0;
    {
      const ScarceMemory scarce(allocations, false);
      status = host::Run(std::size(arguments), arguments, in, out, err);
    }
    told = said.Text();
    std::vector<std::string> answers;
    std::istringstream lines(written.Text());
    for (std::string line; std::getline(lines, line);) answers.push_back(line);
    EXPECT_EQ(status, 2);
    return answers;
  };
  std::string told;
  const std::vector<std::string> whole = run(-1, told);
  ASSERT_EQ(whole.size(), 3U);
  std::size_t without = 0;
  bool scarce = true;
  for (std::int64_t n = 0; scarce && !HasFailure(); n += 1 + n / 64) {
    SCOPED_TRACE("allocation " + std::to_string(n + 1));
    const std::vector<std::string> answers = run(n, told);
    scarce = wasScarce;
    EXPECT_TRUE(answers.size() == 3 || (answers.empty() && !told.empty()))
        << answers.size() << told;
    for (std::size_t i = 0; i < answers.size(); ++i) {
      const bool isLost = answers[i].find("\"error\":{\"number\":7,") != std::string::npos;
      EXPECT_TRUE(isLost || answers[i] == whole[i]) << answers[i];
      without += isLost ? 1 : 0;
    }
  }
  EXPECT_GT(without, 20U);
}

// The same where SQLite finds no memory, at any depth of opening a company and asking it.
TEST_F(Faults, OfTheDatabasesMemory) {
  const std::string text = EntryText(kRows[0].kind, kRows[0].changes);
  Checked built(books_.company.Siblings(), text);
  const Ending whole = Call(built);
  bool scarce = true;
  for (std::int64_t room = 0; scarce && !HasFailure(); room += 512 + room / 64) {
    SCOPED_TRACE(std::to_string(room) + " bytes");
    std::optional<company::Company> fresh;
    std::optional<Ending> ending;
    std::int32_t error = 0;
    sqlite3_hard_heap_limit64(sqlite3_memory_used() + room);
    try {
      fresh.emplace(books_.Text());
      Checked checked(fresh->Siblings(), text);
      ending = Call(checked);
    } catch (const RunTimeError& refused) {
      error = refused.Number();
    }
    sqlite3_hard_heap_limit64(0);
    scarce = !ending || ending->error;
    if (ending && ending->error) {
      error = 7;
      ExpectTrail(*ending->error, 7, kDataAccessSource);
      Checked checked(fresh->Siblings(), text);
      EXPECT_TRUE(Call(checked).Same(whole));
    } else if (ending) {
      EXPECT_TRUE(ending->Same(whole)) << *ending << whole;
    }
    EXPECT_EQ(error, scarce ? 7 : 0);
  }
}

// What an entry costs once its company has answered one like it: the books are asked (duplicate
// number, protocol order), everything else is known.
TEST_F(Faults, AnEntryTakesFewQuestionsAndLittleMemory) {
  constexpr std::int64_t kPlenty = 1'000'000;
  const auto allocations = [&] {
    Checked checked(books_.company.Siblings(), EntryText("acquisto", ""));
    const company::Company::Reading reading(books_.company);
    const ScarceMemory plenty(kPlenty, true);
    checked.entry.operation->call(checked.checker, checked.entry.arguments);
    return kPlenty - allocationsLeft;
  };
  allocations();
  allocations();  // asks where the books end
  const company::Counters before = books_.company.Counted();
  EXPECT_LE(allocations(), 50);
  const company::Counters after = books_.company.Counted();
  EXPECT_EQ(after.queries - before.queries, 2);
  EXPECT_EQ(after.prepared - before.prepared, 0);
  EXPECT_EQ(after.transactions - before.transactions, 1);
}

}  // namespace
}  // namespace kal::test
