// Every finding explained: where it was made, the findings for programs, the tree and the pages.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/ExplainTree.h"
#include "host/Report.h"
#include "host/Runner.h"
#include "siblings/InWords.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

using nlohmann::json;
using test::EntryText;
using test::OpenedCompany;
using test::TestCompany;

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
       R"("at":{"RsScadenze":2},"check":"CheckBanca","code":10510)"},
      {"acquisto", "T.Protocollo=3", R"("parameters":["2024-01-14",12],"path":["OkAggiorna","Te)"},
      {"vendita", "T.SezionaleIva=2",
       R"("code":null,"kind":"warning","parameters":[],"path":["OkAggiorna"])"},
      {"vendita", "T.SezionaleIva=2", R"(la gestione abilitata\r\n"})"},
      {"acquisto", "operation=\"OkCancella\"",
       R"("parameters":[],"path":["OkCancella","OkModifica"])"},
  };
  OpenedCompany books(kBooks);
  for (const auto& row : rows) {
    const std::string entry = EntryText(row.kind, row.changes);
    const json result = json::parse(ToJson(CheckEntry(books.company, {entry, {"F"}})));
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
    not reached: OkDivisaSuRighe, )"},
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
  company::Company company(file.Text(), "en");
  for (const auto& [changes, tree] : rows) {
    const std::string entry = EntryText("giroconto", changes);
    const Outcome outcome = CheckEntry(company, {entry, {"F"}}, Detail::FindingsAndSteps);
    // The list of what was not reached goes on with the rows of the order, whatever they are.
    const std::string shown = ExplainTree(outcome, {Language::English, false});
    const std::string_view expected(tree);
    EXPECT_EQ(expected.ends_with('\n') ? shown : shown.substr(0, expected.size()), expected);
    EXPECT_NE(ExplainTree(outcome, {Language::English, true}).find("\x1b[3"), std::string::npos);
  }
}

TEST(Explain, QuestionsAreToldInWords) {
  constexpr Selection kQuestion = Selection()
                                      .Select("*")
                                      .From("A")
                                      .JoinWith(JoinKind::Inner, "? as C")
                                      .On("A.x", "C.y")
                                      .OnAnyOf({{{"C.z"}}, {{"C.z", CompareWith::Less}}})
                                      .Where("D", CompareWith::GreaterOrEqual)
                                      .WhereLiteral("Not E Is Null")
                                      .WhereEqual("F");
  const Variant values[] = {1, Null, *Date::FromYmd(2024, 3, 15), "x"};
  EXPECT_EQ(InWords(Query::OfPassing(kQuestion, values, "B")),
            "A + B as C ((C.z = 1 | C.z < Null)) (D >= 15/03/2024, Not E Is Null, F = 'x')");
}

TEST(Explain, AnObserverThatThrowsStopsTheOperation) {
  struct Refusing : Observer {
    void Entered(std::string_view operation) override {
      if (operation == "OkDivisaSuRighe" && refuses) throw std::runtime_error("no");
    }
    void Added(const Finding& finding) override { depth = finding.path.size(); }
    bool refuses = true;
    std::size_t depth = 0;
  } refusing;
  OpenedCompany books;
  test::Checked checked(books.siblings, EntryText("giroconto", "C1.CodConto=\"\""));
  checked.checker.Observe(&refusing);
  EXPECT_EQ(checked.Run(), "Error 51 in OkDivisaSuRighe Err: 10520(1)");
  refusing.refuses = false;
  EXPECT_EQ(checked.Run(), "Err: 10520(1)");
  EXPECT_EQ(refusing.depth, 2U);
}

TEST(Explain, TheProgramExplains) {
  const TestCompany file(kBooks);
  const std::string company = file.Text();
  const std::string good = EntryText("giroconto", "T.Infragruppo=true");
  const std::string bad = EntryText("giroconto", "C1.CodConto=\"\"");
  const struct {
    std::vector<std::string> arguments;
    std::string input;
    int status;
    const char* out;  // must be there, and nothing of an escape sequence
    const char* err;
  } rows[] = {
      {{"explain", "10489"}, "", 0, "10489 ScadenzeNonQuadrano\n  Riga %s: ", ""},
      {{"explain", "TrasmessoSdi", "--lang", "en"}, "", 0, "- TrasmessoSdi\n  Warning! ", ""},
      {{"explain", "10753"}, "", 0, "attività IVA separate", ""},
      {{"explain", "--list"}, "", 0, "\n10492 SbilancioVB ", ""},
      {{"explain", "10499"}, "", 2, "", "non c'è un messaggio 10499"},
      {{"explain"}, "", 2, "", "--list"},
      {{"check", "--company", company, "--explain", "-"},
       good + "\n" + good,
       0,
       "2 registrazioni: 2 libere\n",
       ""},
      {{"check", "--company", company, "--explain", "--lang", "en", "-"},
       good + "\nx\n" + bad,
       2,
       "error 10520 ContoMancante (RsRCont row 1): Line 1: ",
       ""},
      {{"check", "--company", company, "--explain", "-"}, bad, 1, "1 bloccata", ""},
      {{"check", "--company", company, "--explain", "--json", "-"}, bad, 2, "", "--json"},
  };
  for (const auto& row : rows) {
    const std::string called = row.arguments.front() + " " + row.arguments.back();
    const test::HostRun run = test::RunHost(row.arguments, row.input);
    EXPECT_EQ(run.status, row.status) << called;
    EXPECT_NE(run.out.find(row.out), std::string::npos) << called << "\n" << run.out;
    EXPECT_NE(run.err.find(row.err), std::string::npos) << called << "\n" << run.err;
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos) << called;
  }
}

}  // namespace
}  // namespace kal::host
