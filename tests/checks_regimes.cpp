// The group of companies, installments, fee notes, accruals, sections, VAT parameters, plafond and
// tax suspension, each seen through the save check.

#include <gtest/gtest.h>

#include <string>

#include "tests/kit.h"

namespace kal::test {
namespace {

TEST(CheckInfragruppo, AHeaderOrALineGivesTheGroupAway) {
  RunTable(R"(
<third> = C+{"CodConto":"1001","TipoCliFor":2,"IdCliFor":22,"ImportoAvere":0,"ImportoAvereVB":0}
[giroconto] | | <set> ('GestisciPNInfragruppo','1')
stranger | | True @ C 1
account | C2.CodConto="7001" | False Group: 10656 @ C 1
header | T.Infragruppo=true;C2.CodConto="7001" | True
customer | C1.TipoCliFor=1;C1.IdCliFor=12 | False Group: 10656
supplier | C1.TipoCliFor=2;C1.IdCliFor=22 | False Group: 10656
customer with a supplier's number | C1.TipoCliFor=1;C1.IdCliFor=22 | True
supplier with a customer's number | C1.TipoCliFor=2;C1.IdCliFor=12 | True
a customer's account does not count | C1.TipoCliFor=1;C1.IdCliFor=10;C1.CodConto="7001" | True
of another type, by its account | C1.TipoCliFor=3;C1.IdCliFor=12;C1.CodConto="7001"
    | False Group: 10656
does not say | C1.TipoCliFor=1;C1.IdCliFor=12
    | UPDATE STDAnagraficaClienti SET Infragruppo=NULL | True
no lines | C1-;C1- | False Warn: 10522
walk ends where the group is found | C2.TipoCliFor=1;C2.IdCliFor=12;<third>
    | ALTER TABLE STDAnagraficaFornitori <gone> | False Group: 10656 @ C 1
walk goes on where it is not | C2.TipoCliFor=1;C2.IdCliFor=10;<third>
    | ALTER TABLE STDAnagraficaFornitori <gone>
    | <missed> ContoInfragruppo < CheckInfragruppo < OkAggiorna @ C 3
not handled | C2.CodConto="7001" | UPDATE STDParametriAzienda SET Valore='0' | True
)");
}

TEST(CheckInfragruppo, TheFlagStaysUntilTheNextCheck) {
  const TestCompany file("INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1')");
  company::Company company(file.Path().string());
  Checked checked(company.Siblings(), EntryText("giroconto", "T.Infragruppo=true"));
  const Checked stranger(company.Siblings(), EntryText("giroconto"));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "before any check";
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "True");
  file.Execute("UPDATE STDParametriAzienda SET Valore='0'");
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "not handled";
  checked.checker.RsTesta(stranger.sets[0]);
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  file.Execute("UPDATE STDParametriAzienda SET Valore='1'");
  EXPECT_EQ(checked.checker.IsInfragruppo(), "True") << "a save check that does not ask keeps it";
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "the next check resets it";
}

// A line without an amount stops the save check right behind the due dates, so that the state in
// which they leave the installments can be seen.
TEST(CheckBanca, DatesAndBanksOfInstallments) {
  RunTable(R"(
[acquisto]
first without date | S1.DataScadenza=null | False Warn: 10657
a closing one without date | S2.TipoRata=1;S2.DataScadenza=null | False Warn: 10657
no rows | S1-;S1-;T.TotDocumentoVB=0 | True @ S end
no set | S!;T.TotDocumentoVB=0 | True
dates leave the end | C1.ImportoAvere=null | Error 94 in OkQuadratura < OkAggiorna @ S end
a missing date leaves the end | C1.ImportoAvere=null;S1.DataScadenza=null
    | Error 94 in OkQuadratura < OkAggiorna Warn: 10657 @ S end

<bill1> = S1.IdTipologiaPagamento=2
<bill2> = S2.IdTipologiaPagamento=2
[acquisto] | T.TipoDocumento=4 | INSERT INTO STDTipologiePagamento VALUES (3,NULL)
no bill | | True @ S end
first without bank | <bill1> | False Warn: 10510 @ S 1
second without bank | <bill2> | False Warn: 10510 @ S 2
bank 0 | <bill1>;S1.IdBancaCliente=0 | False Warn: 10510 @ S 1
bank | <bill1>;S1.IdBancaCliente=7 | True @ S end
closing one without bank | <bill1>;S1.TipoRata=1 | True @ S end
closing one in front | <bill1>;<bill2>;S1.TipoRata=1 | False Warn: 10510 @ S 2
closing ones only | <bill1>;S1.TipoRata=1;S2.TipoRata=1 | True @ S end where TipoRata = 0
unknown type | S1.IdTipologiaPagamento=9;<bill2> | False Warn: 10510 @ S 2
type does not say | S1.IdTipologiaPagamento=3 | True
no set for the banks | S!;T.TotDocumentoVB=0 | True
another document | T.TipoDocumento=5;<bill1> | True @ S 1
no payment types | <bill1> | ALTER TABLE STDTipologiePagamento <gone>
    | <missed> CheckBanca < OkAggiorna @ S 1 where TipoRata = 0
)");
}

TEST(CheckCompilazioneParcella, AProfessionalsPurchaseCarriesItsFeeNote) {
  RunTable(R"(
[acquisto] | T.IdAnagrafica=21;T.CodCausale="PAR"
template | | False Warn: 10624
template without fee note | T.CodCausale="FTA" | True
template of another kind | | UPDATE COGCausaliContabili SET TipoParcella=2 | True
new document | T.TipoDocumento=13 | False Warn: 10624
edited document | T.TipoDocumento=13;T!EditMode=1 | False Warn: 10772
edited entry of another document | T.TipoDocumento=5;T!EditMode=0 | False Warn: 10624
document, template without | T.TipoDocumento=13;T.CodCausale="FTA" | False Warn: 10624
host said so of a document | IsParcella=true;T.TipoDocumento=13 | True
another supplier | T.IdAnagrafica=20;T.TipoDocumento=13 | True
supplier is asked about first | IsParcella=true | ALTER TABLE STDAnagraficaFornitori <gone>
    | <missed> CheckCompilazioneParcella < OkAggiorna
[vendita]
a sale asks nothing | T.TipoDocumento=13 | ALTER TABLE STDAnagraficaFornitori <gone> | True
)");
}

TEST(CheckRateiRisconti, CounterpartsStandOnALine) {
  RunTable(R"(
<4001> = R+{"CodContoContropartita":"4001"}
<9999> = R+{"CodContoContropartita":"9999"}
[acquisto]
both there | <4001>;R+{"CodContoContropartita":"6001"} | True @ R 1, C 1
neither there | <9999>;R+{"CodContoContropartita":"8"}
    | False Err: 10660(9999) / 10660(8) @ R 1, C 1
empty ends the walk | <9999>;R+{"CodContoContropartita":""};<9999>
    | False Err: 10660(9999) / 10659 @ R 1, C 1
Null is empty | R+{} | False Err: 10659
part of a code | R+{"CodContoContropartita":"40"} | False Err: 10660(40)
wildcards | R+{"CodContoContropartita":"40*"};R+{"CodContoContropartita":"*00%"} | True
wildcard without match | R+{"CodContoContropartita":"9%"} | False Err: 10660(9%)
wildcard inside | R+{"CodContoContropartita":"4*1"}
    | Error 3001 in CheckRateiRisconti < OkAggiorna @ R 1, C 1
quote | <4001>;R+{"CodContoContropartita":"4'1"}
    | Error 3001 in CheckRateiRisconti < OkAggiorna @ R 2, C 1 where CodConto like '4001'
no accruals | RsRisconti={"rows":[]} | True @ R end
provisional | T.Provvisoria=true;T.SezionaleIva=5;<9999> | True
[giroconto]
no lines | C1-;C1-;<9999> | False Warn: 10522
)");
}

TEST(EsisteSezionale, TheSectionIsDefinedForTheYear) {
  RunTable(R"(
[giroconto]
no fiscal year | T.DataRegistrazione="2030-01-01" | False Err: 10513 / 10514
section of no year | T.DataRegistrazione="2030-01-01"
    | INSERT INTO COGNumerazioniContabili VALUES (0,1) | False Err: 10513
empty date | T.DataRegistrazione=null
    | Error 13 in LibroGiornaleStampato < OkAggiorna Err: 10513 / 10514
year of registration | T.DataRegistrazione="2023-12-31" | False Err: 10514
section of provisional entries | T.SezionaleIva=5 | False Err: 10514
provisional | T.Provvisoria=true;T.SezionaleIva=5 | True
provisional in a definitive section | T.Provvisoria=true | False Err: 10514
does not say | T.Provvisoria=null;T.SezionaleIva=5 | True
no numberings | | ALTER TABLE COGNumerazioniContabili <gone> | <missed> EsisteSezionale < OkAggiorna
[acquisto] | | DELETE FROM COGNumerazioniContabili
definitive VAT entry | | True
provisional VAT entry | T.Provvisoria=true | False Err: 10514
)");
}

TEST(ParametriIvaOk, TheYearHasItsParameters) {
  RunTable(R"(
<locked> = INSERT INTO COGBlocchiPeriodo VALUES ('2023-12-31','2024-12-31')
<none> = DELETE FROM COGParametriIva
<separate> = <none>;<set> ('AttivitaSeparateIva','1');
    INSERT INTO COGParametriIvaAttivitaRighe VALUES
[acquisto]
no year | | <none> | False Err: 10519(2024)
year of the VAT date | T.DataIva="2023-12-31" | <none> WHERE Anno=2023 | False Err: 10519(2023)
no VAT date | T.DataIva=null | <none>;<locked> | True
locked | | <locked> | False Warn: 10511(Salvando)
locked, no year | | <none>;<locked> | False Err: 10519(2024)
activity does not matter | T.CodAttivita="A1" | True
separate, no activity | | <separate> (2024,'A1') | True
separate, of others | T.CodAttivita="A1" | <separate> (2024,'A2'),(2023,'A1')
    | False Err: 10519(2024)
separate, its own | T.CodAttivita="A1" | <separate> (2024,'A1') | True
[giroconto]
no VAT register | T.DataIva="2024-03-15" | <none>;<locked> | True
)");
}

// The self-invoice's register is printed in every section, so that the message names the section.
TEST(SezionaleIvaAutofattura, OwnOrCompanyWide) {
  RunTable(R"(
<own> = UPDATE COGNumerazioniIva SET
[acquisto] | T.ReverseCharge=true;I1.ReverseCharge=true
    | INSERT INTO COGBollati VALUES (1,2024,3,0,0);
    INSERT INTO COGBollatiIva VALUES (1,8,0,1,0),(1,9,0,1,0),(1,0,0,1,0)
company-wide | | False Err: 10588(9)
own | T.SezionaleIva=2 | False Err: 10588(8)
does not use its own | T.SezionaleIva=2 | <own> UsaSezAutoftSpecifico=0 | False Err: 10588(9)
does not say | T.SezionaleIva=2 | <own> UsaSezAutoftSpecifico=NULL | False Err: 10588(9)
names none | T.SezionaleIva=2 | <own> IdSezAutofatture=NULL | False Err: 10588(9)
of another year | T.SezionaleIva=2 | <own> Anno=2023 WHERE IdNumerazione=6
    | False Err: 10588(9) / 10505
by the header's register | T.SezionaleIva=2;T.TipoRegIva=2 | False Err: 10588(9)
not defined | | DELETE FROM COGNumerazioniIva WHERE IdNumerazione=4 | False Err: 10515 / 10588(9)
no company-wide one | | UPDATE STDParametriAzienda SET Valore='' WHERE Nome='SezionaleAutofatture'
    | False Err: 10515 / 10588(0)
neither reverse charge nor intra | T.ReverseCharge=false | True
intra | T.ReverseCharge=false;T.Intra=true;I1.CodIva="IC" | False Err: 10588(9)
provisional | T.Provvisoria=true;T.SezionaleIva=5 | True
no numberings | | ALTER TABLE COGNumerazioniIva <gone>
    | <missed> SezionaleIvaAutofattura < OkAggiorna
)");
}

TEST(CheckSegnoRigheIva, VatLinesStandOnTheirSide) {
  RunTable(R"(
<fourth> = C3.ImportoDare=21;C3.ImportoDareVB=21;C+{"CodConto":"6001","TipoRiga":3,"ImportoDare":1,
    "ImportoDareVB":1,"ImportoAvere":-5}
[acquisto]
purchase | C3.ImportoAvere="0.0001" | False Warn: 10590(avere)(acquisto) @ C 1
purchase in base currency | C3.ImportoAvereVB="-0.0001" | False Warn: 10590(avere)(acquisto)
sum | <fourth> | False Warn: 10590(avere)(acquisto)
sum is nothing | <fourth>;C3.ImportoAvere=5 | True
another type of line | C2.ImportoAvere=1 | True
Null | C3.ImportoAvere=null;C3.ImportoAvereVB=null | True
no such lines | C3.TipoRiga=2;C3.ImportoAvere=1 | True @ C 1
no operation | C3.ImportoAvere=1;T.CodCausale="ACQ" | True @ C 1
[vendita]
sale in base currency | C3.ImportoDareVB="0.0001"
    | False Err: 10492 / 10494 Warn: 10590(dare)(vendita)
[giroconto] | C2.TipoRiga=3 | UPDATE COGCausaliContabili SET Operazione=1
no register | | True
free registration | T.CodCausale="LIB" | False Warn: 10590(avere)(acquisto)
)");
}

// The amount is shown behind each row's name; the findings are other checks'.
TEST(CheckPlafond, APurchaseUsesItsDeclaration) {
  const auto rows = TableRows(R"(
all lines | | | 100
lines of its code | I+{"CodIva":"22","Imponibile":"0.5","ImponibileVB":7};
    I+{"CodIva":"10","Imponibile":9} | | 100.5
reversing | T.CodCausale="NCA" | | -100
no plafond date | T.DataPlafond=null | | 0
no declaration | T.IdDichiarazione=0 | | 0
unknown declaration | T.IdDichiarazione=9 | | 0
a customer's declaration | | UPDATE STDDichiarazioniIntento SET TipoAnagrafica=1 | 0
a sale | T.CodCausale="FTV" | | 0
no lines | I1- | | 0
no set of lines | I! | | 0
)");
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(row[0]);
    const TestCompany file(row[2]);
    company::Company company(file.Path().string());
    const std::string declared = R"(T.DataPlafond="2024-03-15";T.IdDichiarazione=2;)";
    Checked checked(company.Siblings(), EntryText("acquisto", declared + row[1]));
    (void)checked.Run();
    EXPECT_EQ(CStr(checked.checker.ImportoPlafond()), row[3]);
    checked.checker.RsTesta(Checked(company.Siblings(), EntryText("giroconto")).sets[0]);
    (void)checked.Run();
    EXPECT_EQ(CStr(checked.checker.ImportoPlafond()), "0") << "the next entry uses none";
  }
  // Losing the VAT codes stops the save check right behind the plafond.
  RunTable(R"(
[acquisto] | T.DataPlafond="2024-03-15";T.IdDichiarazione=2;I+{"CodIva":"22"}
walked | | ALTER TABLE STDIva <gone> | <missed> CheckCodIva < OkAggiorna @ I 1
not walked | T.IdDichiarazione=9 | ALTER TABLE STDIva <gone>
    | <missed> CheckCodIva < OkAggiorna @ I end
no declarations | | ALTER TABLE STDDichiarazioniIntento <gone> | <missed> CheckPlafond < OkAggiorna
weighing no lines | I1-;I1- | Error 3021 in OkAggiorna
weighing no set of lines | I! | Error 91 in OkAggiorna
)");
}

// Installment 1 of deadline 5, 10 on the debit side, stands on entry 5 in suspension; the entry
// pays it. The flags that are set stand behind each row's name.
TEST(CheckIncassiInSospensione, ClosesOrReopens) {
  const std::string saved =
      R"(INSERT INTO COGPrimeNoteTeste (IdPrimaNota,InSospensione) VALUES (5,1);
      INSERT INTO COGPrimeNoteRCont VALUES (5,5); INSERT INTO COGScadenze (IdScadenza,NrRata,
      TipoRata,ImportoDare,ImportoDareVB,ImportoAvere,ImportoAvereVB)
      VALUES (5,1,0,'10','10','0','0');)";
  const std::string paid = R"(;S+{"TipoRata":1,"DataScadenza":"2024-03-15","LinkApertura":5,)"
                           R"("RataApertura":1,"ImportoAvere":10,"ImportoAvereVB":10};)";
  const auto rows = TableRows(R"(
closes | | | closes
reopens | S1.ImportoDare=10 | | reopens
reopens in base currency | S1.ImportoDareVB=10 | | reopens
opened in base currency | | UPDATE COGScadenze SET ImportoDare='0' | closes
opened in the entry's currency | | UPDATE COGScadenze SET ImportoDareVB='0' | closes
opened on the credit side | | UPDATE COGScadenze SET ImportoDare='0', ImportoDareVB='0' | reopens
both | S+{"TipoRata":1,"DataScadenza":"2024-03-15","LinkApertura":5,"RataApertura":1,
    "ImportoDare":1} | | closes reopens
no closing installment | S1.TipoRata=0 | | none
another deadline | S1.LinkApertura=6 | | none
another installment | S1.RataApertura=2 | | none
pointing nowhere | S1.LinkApertura=null | | none
a closing one is closed | | UPDATE COGScadenze SET TipoRata=1 | none
entry not in suspension | | UPDATE COGPrimeNoteTeste SET InSospensione=0 | none
entry does not say | | UPDATE COGPrimeNoteTeste SET InSospensione=NULL | none
on no line | | DELETE FROM COGPrimeNoteRCont | none
)");
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(row[0]);
    const TestCompany file(saved + row[2]);
    company::Company company(file.Path().string());
    Checked checked(company.Siblings(), EntryText("giroconto", paid + row[1]));
    const auto flags = [&checked] {
      const std::string closes = checked.checker.ChiusuraRateInSospensione() ? "closes" : "";
      const std::string reopens = checked.checker.RiaperturaRateInSospensione() ? "reopens" : "";
      const std::string both = closes + (closes.empty() || reopens.empty() ? "" : " ") + reopens;
      return both.empty() ? "none" : both;
    };
    EXPECT_EQ(checked.Run(), "True");
    EXPECT_EQ(flags(), row[3]);
    EXPECT_EQ(checked.State("RsScadenze"), "1");
    checked.checker.RsScadenze(nullptr);
    EXPECT_EQ(checked.Run(), "True");
    EXPECT_EQ(flags(), "none") << "without installments";
  }
}

}  // namespace
}  // namespace kal::test
