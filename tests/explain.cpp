// Every finding explained: the observer, the findings for programs, the tree and the pages.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>

#include "host/CommandLine.h"
#include "host/ExplainPages.h"
#include "host/ExplainTree.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

using nlohmann::json;
using test::EntryText;
using test::TestCompany;

// Each does one thing to an entry; several at once make errors, warnings and run-time errors.
constexpr const char* kChanges[] = {
    "T.TipoDocumento=4",
    "T.TipoDocumento=13",
    "T.Provvisoria=true",
    "T.InSospensione=true;TmpTableScadenze=\"COGScadenze\"",
    "T.ReverseCharge=true",
    "T.Intra=true",
    "T.Protocollo=0",
    "T.Protocollo=10000000",
    "T.NumeroDocumento=\"\"",
    "T.DataDocumento=null",
    "T.DataDocumento=\"2024-02-15\"",
    "T.DataCompetenza=\"2030-03-15\"",
    "T.DataCompetenza=null",
    "T.DataRegistrazione=\"2024-01-15\"",
    "T.DataPlafond=\"2024-02-10\"",
    "T.SezionaleIva=2",
    "T.IdAnagrafica=11",
    "T.IdAnagrafica=21",
    "T.IdDichiarazione=1",
    "T.IdDichiarazione=2",
    "T.FiscalitaBL=true",
    "T.Rettifica=true",
    "T.StatoDocPA=3",
    "T.CodCausale=\"X\"",
    "T.CodCausale=\"LIB\"",
    "T.CodProprieta=\"P\"",
    "T.TotDocumentoVB=\"-1\"",
    "T!",
    "C1.CodConto=\"\"",
    "C2.CodConto=\"7001\"",
    "C1.CodConto=null",
    "C1.ImportoDareVB=\"0.0001\"",
    "C2.TipoRiga=4",
    "C2.ImportoAvere=null",
    "I1.CodIva=\"99\"",
    "I1.CodIva=\"\"",
    "I1.CodIva=\"IC\"",
    "I1.CodIva=\"x'y\"",
    "I1.ImponibileVB=0",
    "S1.DataScadenza=null",
    "S1.IdTipologiaPagamento=2",
    "S1.TipoRata=1;S1.LinkApertura=5;S1.RataApertura=1",
    "S!",
    "R+{\"CodContoContropartita\":\"9\"};R+{}",
    "F+{\"BeniImponibili\":1}",
    "operation=\"OkModifica\"",
    "operation=\"OkCancella\"",
    "arguments=[true,false]",
};

// What hangs on the entry 100 in the books.
constexpr const char* kBooks = R"(
INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1'),('AttivitaSeparateIva','1');
INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,Protocollo,NumeroDocumento,
    IdAnagrafica,DataDocumento,DataRegistrazione) VALUES
    (1,1,1,12,'F1',20,'2024-03-10','2024-01-14'),(2,2,1,12,'F1',10,'2024-03-10','2024-01-14');
INSERT INTO COGPrimeNoteRCont VALUES (100,5);
INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,IdDistinta,LinkApertura,RataApertura) VALUES
    (5,1,0,7,NULL,NULL),(6,1,1,NULL,5,1);
INSERT INTO COGPrimeNoteRiferimenti VALUES (100,'2024-03-10');
INSERT INTO COGBollati VALUES (1,2024,1,1,0);
INSERT INTO COGBollatiIva VALUES (1,1,1,1,1);
INSERT INTO COGPrimeNoteProprieta VALUES ('P',1);
)";

std::vector<std::string> RandomEntries(std::size_t count) {
  std::mt19937 random(20240315);
  std::vector<std::string> entries;
  for (std::size_t i = 0; i < count; ++i) {
    static constexpr const char* kKinds[] = {"acquisto", "vendita", "corrispettivi", "giroconto"};
    std::map<std::string_view, std::string_view> changes;  // one for each field
    for (std::size_t n = random() % 5; n > 0; --n) {
      const std::string_view change = kChanges[random() % std::size(kChanges)];
      changes[change.substr(0, change.find('='))] = change;
    }
    std::string all;
    for (const auto& [field, change] : changes) all += std::string(change) + ";";
    // A set can't be changed once it is gone.
    for (const char* const gone : {"T!", "S!"}) {
      if (all.find(std::string(gone) + ";") != std::string::npos) all = gone;
    }
    try {
      entries.push_back(EntryText(kKinds[i % 4], all));
    } catch (const std::exception&) {  // a change of a row that this kind does not have
    }
  }
  return entries;
}

std::map<std::string, std::string> Samples() {
  std::map<std::string, std::string> samples;
  for (const auto& file :
       std::filesystem::directory_iterator(std::string(KAL_SOURCE_DIR) + "/host/samples")) {
    std::ostringstream text;
    text << std::ifstream(file.path()).rdbuf();
    samples[file.path().stem().string()] = text.str();
  }
  return samples;
}

class SampleCompany {
 public:
  SampleCompany() {
    std::filesystem::remove(path_);
    company::CreateCompany(path_, true);
  }
  ~SampleCompany() { std::filesystem::remove(path_); }
  SampleCompany(const SampleCompany&) = delete;
  SampleCompany& operator=(const SampleCompany&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_ = testing::TempDir() + "kal_explain_" + std::to_string(std::random_device{}());
};

// The findings of one result string, put together as messages are appended.
std::string Joined(const json& findings, std::string_view string) {
  std::string joined;
  for (const json& finding : findings) {
    if (finding.at("string") == string) {
      joined += (joined.empty() ? "" : "\r\n") + finding.at("text").get<std::string>();
    }
  }
  return joined;
}

void ExpectSameAnswerHoweverWatched(company::Company& company, const std::string& text) {
  const json plain = json::parse(ToJson(CheckEntry(company, {text, "F", ""}, Detail::None)));
  for (const Detail detail : {Detail::Findings, Detail::FindingsAndSteps}) {
    json watched = json::parse(ToJson(CheckEntry(company, {text, "F", ""}, detail)));
    for (const std::string_view name : kResultStringNames) {
      EXPECT_EQ(Joined(watched.at("findings"), name), plain.at(std::string(name))) << text;
    }
    watched["findings"] = json::array();
    EXPECT_EQ(watched, plain) << text;
  }
}

// The operations called by each run of an operation itself, each once.
std::vector<std::string_view> Children(const std::vector<Step>& steps, std::string_view operation) {
  std::vector<std::string_view> children;
  std::size_t inside = 0;
  for (const Step& step : steps) {
    if (step.kind != Step::Kind::Operation) continue;
    if (step.name == operation) {
      inside = step.depth + 1;
    } else if (inside != 0 && step.depth == inside &&
               std::ranges::find(children, step.name) == children.end()) {
      children.push_back(step.name);
    }
  }
  return children;
}

bool EndsEarly(const Outcome& outcome) {
  static const std::set<std::string_view> kEnds = {"CausaleInesistente", "EsisteIntegrazioneIntra",
                                                   "EsisteIntegrazioneReverse",
                                                   "GenerataDaSplitPayment"};
  return outcome.error || std::ranges::any_of(outcome.findings, [](const Finding& finding) {
           return kEnds.contains(finding.name);
         });
}

// What all runs together show of an operation's order.
struct OrderSeen {
  std::string_view operation;
  std::set<std::string_view> entered{};

  void Add(const Outcome& outcome) {
    const std::vector<std::string_view> children = Children(outcome.steps, operation);
    const bool ran = std::ranges::any_of(outcome.steps,
                                         [&](const Step& step) { return step.name == operation; });
    std::vector<std::string_view> listed;
    for (const OrderedCheck& check : OrderOf(operation)) {
      const bool here = std::ranges::find(children, check.name) != children.end();
      if (here) listed.push_back(check.name);
      EXPECT_TRUE(here || !ran || !check.applies.IsEmpty() || EndsEarly(outcome)) << check.name;
    }
    EXPECT_EQ(children, listed) << operation << " of " << outcome.place;
    entered.insert(children.begin(), children.end());
  }
};

TEST(Explain, ObserversChangeNothingAndHearEverything) {
  const TestCompany file(kBooks);
  company::Company company(file.Path().string());
  OrderSeen save{"OkAggiorna"};
  OrderSeen modify{"OkModifica"};
  std::set<std::string_view> asked;
  std::set<std::string_view> messages;
  const auto see = [&](company::Company& books, const std::string& name, const std::string& text) {
    ExpectSameAnswerHoweverWatched(books, text);
    const Outcome outcome = CheckEntry(books, {text, name, ""}, Detail::FindingsAndSteps);
    save.Add(outcome);
    modify.Add(outcome);
    for (const Finding& finding : outcome.findings) messages.insert(finding.name);
    for (const Step& step : outcome.steps) {
      if (step.kind == Step::Kind::Question) asked.insert(step.name);
    }
    for (const Language language : {Language::Italian, Language::English}) {
      std::istringstream lines(ExplainTree(outcome, {language, false}));
      for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(std::ranges::count_if(line, [](char c) { return (c & 0xC0) != 0x80; }), 100)
            << line;
        EXPECT_EQ(line.find_first_of("\r\x1b"), std::string::npos) << line;
      }
    }
  };
  for (const std::string& text : RandomEntries(600)) see(company, "random", text);
  EXPECT_GE(messages.size(), 35U) << "the random entries do not reach enough messages";
  const SampleCompany sampleFile;
  company::Company sample(sampleFile.Path());
  for (const auto& [name, text] : Samples()) see(sample, name, text);
  see(company, "activities",
      EntryText("acquisto", "T.ReverseCharge=true;I1.ReverseCharge=true;T.CodAttivita=\"A1\""));
  EXPECT_EQ(save.entered.size(), OrderOf("OkAggiorna").size());
  EXPECT_EQ(modify.entered.size(), OrderOf("OkModifica").size());
  EXPECT_EQ(asked.size(), 11U) << "not every sibling was asked";
}

TEST(Explain, EveryMessageHasAPageAndASampleThatGivesIt) {
  const SampleCompany file;
  company::Company company(file.Path());
  const std::map<std::string, std::string> samples = Samples();
  for (const Message& page : Catalogue()) {
    SCOPED_TRACE(page.name);
    EXPECT_EQ(FindPage(page.name), &page);
    if (page.name == "AttivitaAutofatturaDiversa") {
      EXPECT_EQ(page.sample, "");  // the sample company has no separate VAT activities
      continue;
    }
    ASSERT_TRUE(samples.contains(std::string(page.sample))) << page.sample;
    const Outcome outcome = CheckEntry(company, {samples.at(std::string(page.sample)), "F", ""},
                                       Detail::FindingsAndSteps);
    const auto finding = std::ranges::find(outcome.findings, page.name, &Finding::name);
    ASSERT_NE(finding, outcome.findings.end()) << page.sample;
    EXPECT_EQ(finding->code, page.code);
    EXPECT_EQ(finding->row != 0, !page.set.empty());
    EXPECT_TRUE(std::ranges::any_of(outcome.steps,
                                    [&](const Step& step) { return step.name == page.check; }));
  }
}

TEST(Explain, FindingsSayWhereTheyWereMade) {
  const struct {
    const char* kind;
    const char* changes;
    const char* finding;
  } rows[] = {
      {"giroconto", "C2.CodConto=\"10\"",
       R"({"at":{"RsRCont":2},"check":"OkQuadratura","code":10520,"kind":"error",)"
       R"("parameters":[2],"path":["OkAggiorna","OkQuadratura"],)"
       R"("string":"ErrString","text":"Riga 2: il conto manca o non è un conto di registrazione )"
       R"(del piano dei conti"})"},
      {"acquisto", "S2.ImportoAvereVB=\"60.9999\"", R"("at":{"RsRCont":1},"check":"QuadraScad)"},
      {"giroconto", "C1.ImportoDareVB=1", R"("at":{},"check":"OkQuadratura","code":10492)"},
      {"giroconto", "C2.IdCliFor=20;C2.TipoCliFor=2;T.TotDocumentoVB=1",  // alone under its filter
       R"("at":{"RsRCont":2},"check":"QuadraScadenze","code":10489)"},
      {"acquisto", "T.TipoDocumento=4;S2.IdTipologiaPagamento=2;S1.TipoRata=1",
       R"("at":{"RsScadenze":2},"check":"OkAggiorna","code":10510)"},
      {"acquisto", "T.Protocollo=3", R"("parameters":["2024-01-14",12],"path":["OkAggiorna","Te)"},
      {"vendita", "T.SezionaleIva=2",
       R"("code":null,"kind":"warning","parameters":[],"path":["OkAggiorna"])"},
      {"vendita", "T.SezionaleIva=2", R"(la gestione abilitata\r\n"})"},
      {"acquisto", "operation=\"OkCancella\"",
       R"("parameters":[],"path":["OkCancella","OkModifica"])"},
  };
  const TestCompany file(kBooks);
  company::Company company(file.Path().string());
  for (const auto& row : rows) {
    const std::string entry = EntryText(row.kind, row.changes);
    const json result = json::parse(ToJson(CheckEntry(company, {entry, "F", ""})));
    EXPECT_NE(result.at("findings").dump().find(row.finding), std::string::npos)
        << row.changes << "\n"
        << result.at("findings").dump();
  }
}

TEST(Explain, TheTreeShowsTheDecisionInOrder) {
  const std::pair<const char*, const char*> rows[] = {
      {"T.TipoDocumento=4;C1.CodConto=null", R"(  OkAggiorna: stopped
    AttivitaSeparateIva = yes
    CreaRecordCausale: silent
      COGCausaliContabili (CodCausale = 'GEN'): found
    warning 10699 DocumentoSenzaRegistroIva: The type of document needs a VAT register, but the
        posting template has none
    CheckDateScadenza: yes
    OkQuadratura: run-time error 94: Invalid use of Null: a text was wanted
      CreaRecordCausale: silent
  Checks that were not reached or do not apply:
    not reached: OkDivisaSuRighe, OkCastellettoIva, QuadraScadenze,
        CheckChiusuraContenstualeSospensione, CheckIncassiInSospensione, CheckPlafond, CheckCodIva,
        CheckSegnoRigheIva, CheckCompilazioneParcella, CheckCongruenzaAliquote, CheckInfragruppo,
        EsisteSezionale, CheckBanca, CheckEffettiSplitPayment, ControllaCongruenzaDate,
        ContabilitaChiusa, LibroGiornaleStampato, RegistriIvaStampati, ParametriIvaOk,
        SezionaleIvaAutofattura, CheckRateiRisconti, TestEsercizioCompetenza,
        EseguiControlliDichiarazioneIntento, CheckDuplicatoNrDocRicevuto, CheckDuplicatoNrDocEmesso,
        TestProtocollo, TestProtocolloIntra, CheckQuadraturaDatiFiscalitaBL
)"},
      {"operation=\"OkModifica\";T.Provvisoria=true", R"(  OkModifica: no
    COGPrimeNoteTeste (IdLink = 100): no row
    ScadenzeDocChiuse: yes
      COGNroChiusurePrimaNota (100, 1) = 1
    ScadenzeInDistinta: yes
      COGPrimeNoteRCont + COGScadenze AS COGSCadenzeApertura (COGSCadenzeApertura.TipoRata = 0,
          COGPrimeNoteRCont.IDPrimaNota = 100, Not COGSCadenzeApertura.IdDistinta Is Null): found
    ScadenzeInDistintaIncPag: no
      COGPrimeNoteRCont + COGScadenze AS COGSCadenzeApertura + COGScadenze AS COGSCadenzeChiusura
          ((COGScadenzeChiusura.TipoDocumento = 23 | COGScadenzeChiusura.TipoDocumento = 24))
          (COGSCadenzeApertura.TipoRata = 0, COGPrimeNoteRCont.IDPrimaNota = 100,
          isnull(COGScadenzeChiusura.IdDistinta,0) <> 0): no row
    warning 10518 ScadenzeInDistintaPresenti: Installments of the entry are already in a remittance
  Checks that were not reached or do not apply:
    IsDocumentoSplitPayment: only for purchases and sales with closed installments
    ContabilitaChiusa: only for definitive entries
    LibroGiornaleStampato: only for definitive entries
    RegistriIvaStampati: only for definitive entries
    CheckPeriodoLiquidato: only without a VAT register, if the entry refers to a VAT date
    RRContabilizzati: only for definitive entries
)"},
  };
  const TestCompany file(kBooks);
  company::Company company(file.Path().string(), "en");
  for (const auto& [changes, tree] : rows) {
    const std::string entry = EntryText("giroconto", changes);
    const Outcome outcome = CheckEntry(company, {entry, "F", ""}, Detail::FindingsAndSteps);
    EXPECT_EQ(ExplainTree(outcome, {Language::English, false}), tree);
    EXPECT_NE(ExplainTree(outcome, {Language::English, true}).find("\x1b[3"), std::string::npos);
  }
}

TEST(Explain, QuestionsAreToldInWords) {
  QueryBuilder query;
  query.Select("*")
      .From("A")
      .JoinWith(JoinKind::Inner, "B as C")
      .On("A.x", "C.y")
      .OnAnyOf({{{"C.z", CompareWith::Equal, 1}}, {{"C.z", CompareWith::Less, Null}}})
      .Where("D", CompareWith::GreaterOrEqual, *Date::FromYmd(2024, 3, 15))
      .WhereLiteral("Not E Is Null")
      .WhereEqual("F", "x");
  EXPECT_EQ(InWords(query),
            "A + B as C ((C.z = 1 | C.z < Null)) (D >= 15/03/2024, Not E Is Null, "
            "F = 'x')");
}

// What an observer throws takes the way of every error, and the next call starts afresh.
TEST(Explain, AnObserverThatThrowsStopsTheOperation) {
  struct Refusing : Observer {
    void Entered(std::string_view operation) override {
      if (operation == "OkDivisaSuRighe" && refuses) throw std::runtime_error("no");
    }
    void Added(const ObservedMessage& message) override { depth = message.operation.Path().size(); }
    bool refuses = true;
    std::size_t depth = 0;
  } refusing;
  const TestCompany file;
  company::Company company(file.Path().string());
  test::CodedSiblings siblings(company.Siblings());
  test::Checked checked(siblings, EntryText("giroconto", "C1.CodConto=\"\""));
  checked.checker.Observe(&refusing);
  EXPECT_EQ(checked.Run(), "Error 51 in OkDivisaSuRighe < OkAggiorna Err: 10520(1)");
  refusing.refuses = false;
  EXPECT_EQ(checked.Run(), "False Err: 10520(1)");
  EXPECT_EQ(refusing.depth, 2U);
}

TEST(Explain, TheProgramExplains) {
  const TestCompany file(kBooks);
  const std::string company = file.Path().string();
  const std::string good = EntryText("giroconto", "T.Infragruppo=true");
  const std::string bad = EntryText("giroconto", "C1.CodConto=\"\"");
  const struct {
    std::vector<const char*> arguments;
    std::string input;
    int status;
    const char* out;  // must be there, and nothing of an escape sequence
    const char* err;
  } rows[] = {
      {{"explain", "10489"}, "", 0, "10489 ScadenzeNonQuadrano\n  Riga %s: ", ""},
      {{"explain", "TrasmessoSdi", "--lang", "en"}, "", 0, "- TrasmessoSdi\n  Warning! ", ""},
      {{"explain", "10753"}, "", 0, "attività IVA separate", ""},
      {{"explain", "--list"}, "", 0, "\n10492 SbilancioVB ", ""},
      {{"explain", "10499"}, "", 2, "", "there is no message 10499"},
      {{"explain"}, "", 2, "", "--list"},
      {{"check", "--company", company.c_str(), "--explain", "-"},
       good + "\n" + good,
       0,
       "2 registrazioni: 2 libere\n",
       ""},
      {{"check", "--company", company.c_str(), "--explain", "--lang", "en", "-"},
       good + "\nx\n" + bad,
       2,
       "error 10520 ContoMancante (RsRCont row 1): Line 1: ",
       ""},
      {{"check", "--company", company.c_str(), "--explain", "-"}, bad, 1, "1 bloccata", ""},
      {{"check", "--company", company.c_str(), "--explain", "--json", "-"}, bad, 2, "", "--json"},
  };
  for (const auto& row : rows) {
    std::vector<const char*> argv = {"kalcogcheck"};
    argv.insert(argv.end(), row.arguments.begin(), row.arguments.end());
    std::istringstream in(row.input);
    std::ostringstream out;
    std::ostringstream err;
    const std::string called = row.arguments.front() + std::string(" ") + row.arguments.back();
    EXPECT_EQ(host::Run(static_cast<int>(argv.size()), argv.data(), in, out, err), row.status)
        << called;

    EXPECT_NE(out.str().find(row.out), std::string::npos) << called << "\n" << out.str();
    EXPECT_NE(err.str().find(row.err), std::string::npos) << called << "\n" << err.str();
    EXPECT_EQ(out.str().find('\x1b'), std::string::npos) << called;
  }
}

}  // namespace
}  // namespace kal::host
