// The modify and delete checks, the document checks and the lookups, over entries saved in the
// company; and what the save check asks about split payment.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "platform/RunTimeError.h"
#include "tests/kit.h"

namespace kal::test {
namespace {

// What the tables below hang on the entry: deadline 5 on its line, installment 1 of it closed by
// one of deadline 6; a month printed; accruals posted; a locked month; a settled period.
const std::string kHanging = R"(
<deadline> = INSERT INTO COGPrimeNoteRCont VALUES (100,5);
    INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata) VALUES (5,1,0)
<closed> = <deadline>;INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,LinkApertura,RataApertura,
    TipoDocumento) VALUES (6,1,1,5,1,23)
<remitted> = <closed>;UPDATE COGScadenze SET IdDistinta=8 WHERE IdScadenza
<march> = INSERT INTO COGBollati VALUES (1,2024,3,1,0);INSERT INTO COGBollatiIva VALUES (1,1,1,1,1)
<posted> = INSERT INTO COGRateiRisconti VALUES (1,100);
    INSERT INTO COGRateiRiscontiContabilizzati VALUES (1)
<locked> = INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-01','2024-03-31')
<settled> = INSERT INTO COGPrimeNoteRiferimenti VALUES (100,NULL),(100,'2024-03-10');
    INSERT INTO COGIvaLiquidazioni VALUES (2024,3,1)
<all> = <march>;<posted>;<locked>;<settled>;<remitted> IN (5,6)
<closedYear> = T.DataCompetenza="2023-05-01"
)";

TEST(OkModifica, WhatHangsOnTheEntryInOrder) {
  RunTable(kHanging + R"(
[acquisto] | operation="OkModifica"
free | | True
closed year | <closedYear> | Err: 10509
not posted | | <posted>;UPDATE COGRateiRisconti SET IdRateoRisconto=2 | True
another entry's accruals | T.IdPrimaNota=1 | <posted> | True
another section's register | T.SezionaleIva=2 | <march> | Err: 10486
locked | | <locked> | Warn: 10511(Modificando)
locked by the VAT date | T.DataIva="2024-04-15" | <locked> | True
no VAT date | T.DataIva=null | <locked> | True
remittance | | <deadline>;UPDATE COGScadenze SET IdDistinta=7 | Warn: 10518
closing in a remittance | | <remitted> = 6 | Warn: 10517 / 10518
all | <closedYear> | <all>
    | Err: 10509 / 10486 / 10487 / 10661 Warn: 10517 / 10518 / 10511(Modificando)
all, provisional | T.Provvisoria=true;<closedYear> | <all> | Warn: 10517 / 10518
provisional | T.Provvisoria=true | False
does not say | T.Provvisoria=null | True
deletion | operation="OkCancella";<closedYear> | <locked> | Err: 10509 Warn: 10511(Modificando)
provisional deletion | operation="OkCancella";T.Provvisoria=true | False
[giroconto] | operation="OkModifica"
settled | | <settled> | Err: 10500
settled, all | <closedYear> | <settled>;<march>;<posted> | Err: 10509 / 10486 / 10500 / 10661
settled, provisional | T.Provvisoria=true | <settled> | False
settled in another quarter | | <settled>;UPDATE COGParametriIva SET IvaTrimestrale=1 | True
another entry's settlement | T.IdPrimaNota=1 | <settled> | True
)");
}

TEST(OkModifica, AnEntryThatMadeAnotherOne) {
  RunTable(kHanging + R"(
<made> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,IdLink,Intra,ReverseCharge) VALUES
[acquisto] | operation="OkModifica";T.StatoDocPA=3;T.Provvisoria=true | <closed>
intra | | <made> (200,100,1,1) | Err: 10512
reverse charge | | <made> (200,100,0,1) | Err: 10668
split payment | | <made> (200,100,0,0) | Err: <generata>
does not say | | <made> (200,100,NULL,NULL) | Err: <generata>
the first counts | | <made> (200,100,0,1),(201,100,1,0) | Err: 10668
another entry's | | <made> (200,101,1,1),(100,200,1,1) | Warn: <sdi> / 10517
)");
}

TEST(OkModifica, TheStateOfTheElectronicInvoice) {
  for (const char* state : {"null", "-1", "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}) {
    const std::string code = state;
    const bool quiet = code == "null" || code == "0" || code == "2" || code == "8" || code == "9";
    const bool warns = code == "1" || code == "5" || code == "6" || code == "7";
    const std::string free = quiet ? "True" : code == "1" ? "Warn: <xml>" : "Warn: <sdi>";
    const std::string blocked = quiet || warns ? free : "Err: <sdi>";
    RunTable("[acquisto] | operation=\"OkModifica\";T.StatoDocPA=" + code + "\nfree " + code +
             " | | " + free + "\nnot blocked " + code + " | | <set> ('BloccoInviatoSDI','0') | " +
             free + "\nblocked " + code + " | | <set> ('BloccoInviatoSDI','1') | " + blocked +
             "\na sale's " + code + " | T.TipoRegIva=2 | <set> ('BloccoInviatoSDI','1') | True");
  }
}

TEST(OkModifica, ClosedInstallments) {
  RunTable(kHanging + R"(
<saved> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,CodCausale,TipoRegIva,SezionaleIva,
    IdAnagrafica,DataRegistrazione,DataDocumento) VALUES
<sales> = <set> ('GirocontoFatturaSplitPayment','1')
<purchases> = <set> ('GirocontoFatturaSplitPaymentPAS','1')
<head> = UPDATE COGPrimeNoteTeste SET
[acquisto] | operation="OkModifica";T.TipoRegIva=2 | <closed>
warned | | Warn: 10517
warned in suspension | T.InSospensione=true | Warn: 10774
no register | T.TipoRegIva=0 | True
another register | T.TipoRegIva=4 | True
receipts | T.TipoRegIva=3 | <sales>;<purchases> | Warn: 10517
receipts in suspension | T.TipoRegIva=3;T.InSospensione=true | <sales> | Warn: 10774
another entry's | T.IdPrimaNota=1 | True
not closed | | DELETE FROM COGScadenze WHERE TipoRata=1 | True
not saved | | <sales> | Warn: 10517
is asked about all the same | | STDAnagraficaClienti! | <missed> IsDocumentoSplitPayment

[acquisto] | operation="OkModifica";T.TipoRegIva=2 | <closed>;
    <saved> (100,'FTV',2,2,11,'2024-03-15','2024-03-15');<sales>
sale | | Err: 10517
sale in suspension | T.InSospensione=true | Err: 10774
no transfer | | UPDATE STDParametriAzienda SET Valore='0';<purchases> | Warn: 10517
purchase's transfer | T.TipoRegIva=1 | Warn: 10517
customer not subject | | <head> IdAnagrafica=10 | Warn: 10517
customer does not say | | UPDATE STDAnagraficaClienti SET SoggettoSplitPayment=NULL | Err: 10517
unknown customer | | <head> IdAnagrafica=99 | Err: 10517
section not split | | <head> SezionaleIva=1 | Warn: 10517
section does not say | | UPDATE COGNumerazioniIva SET SplitPayment=NULL | Err: 10517
unknown section | | <head> SezionaleIva=7 | Err: 10517
purchases' section | | UPDATE COGNumerazioniIva SET TipoRegIva=1,SplitPayment=0 | Err: 10517
another year's section | | UPDATE COGNumerazioniIva SET Anno=2023,SplitPayment=0 | Err: 10517
before the regime | | <head> DataRegistrazione='2014-12-31' | Warn: 10517
from the regime on | | <head> DataRegistrazione='2015-01-01' | Err: 10517
no date | | <head> DataRegistrazione=NULL | Err: 10517
unknown template | | <head> CodCausale='X' | Warn: 10517
saved as receipts | | <head> TipoRegIva=3, IdAnagrafica=10 | Err: 10517

[acquisto] | operation="OkModifica" | <closed>;<saved> (100,'FTA',1,1,20,'2014-03-15','2024-03-10');
    <purchases>
purchase | | Warn: 10517
under the regime | | <set> ('AziendaSplitPayment','1') | Err: 10517
no transfer of purchases | | UPDATE STDParametriAzienda SET Valore='0';<sales>;
    <set> ('AziendaSplitPayment','1') | Warn: 10517
on its first day | | <set> ('DataInizioSplitPayment','2024-03-10') | Err: 10517
the day before | | <set> ('DataInizioSplitPayment','2024-03-11'),('AziendaSplitPayment','1')
    | Warn: 10517
no document date | | <set> ('DataInizioSplitPayment','2024-03-11');<head> DataDocumento=NULL
    | Err: 10517
)");
}

TEST(ScadenzeInDistinta, OpeningsAndClosings) {
  RunTable(kHanging + R"(
[acquisto] | operation="ScadenzeInDistinta"
opening | | <remitted> = 5 | True
opening in remittance 0 | | <deadline>;UPDATE COGScadenze SET IdDistinta=0 | True
closing only | | <remitted> = 6 | False
no opening one | | <remitted> = 5;UPDATE COGScadenze SET TipoRata=1 | False
another entry's | T.IdPrimaNota=1 | <remitted> = 5 | False
no installments | | COGScadenze! | <missed> itself
[acquisto] | operation="ScadenzeInDistintaIncPag"
collection | | <remitted> = 6 | True
payment | | <remitted> = 6;UPDATE COGScadenze SET TipoDocumento=24 | True
another document | | <remitted> = 6;UPDATE COGScadenze SET TipoDocumento=25 | False
opening only | | <remitted> = 5 | False
collection in remittance 0 | | <closed>;UPDATE COGScadenze SET IdDistinta=0 | False
another deadline's | | <remitted> = 6;UPDATE COGScadenze SET LinkApertura=4 | False
another installment's | | <remitted> = 6;UPDATE COGScadenze SET RataApertura=2 | False
of no opening one | | <remitted> = 6;UPDATE COGScadenze SET TipoRata=1 | False
another entry's collection | T.IdPrimaNota=1 | <remitted> = 6 | False
no closings | | COGScadenze! | <missed> itself
)");
}

TEST(OkModifica, TheTrailNamesTheWay) {
  RunTable(kHanging + R"(
[giroconto] | operation="OkModifica";T.TipoRegIva=1 | <march>;<settled>
entries | | COGPrimeNoteTeste! | <missed> itself
entries, deletion | operation="OkCancella" | COGPrimeNoteTeste! | <missed> OkModify
closings | | COGPrimeNoteRCont! | Error -2147467259 in KalScadenze.ScadenzeDocChiuse
fiscal years | | STDEsercizi! | <missed> ContabilitaChiusa
journal | | COGBollati! | <missed> LibroGiornaleStampato
summaries | | COGParametriIva! | <missed> RiepilogoStampato < RegistriIvaStampati Err: 10486
registers | | COGBollatiIva! | <missed> RegistriIvaStampati Err: 10486
references | T.TipoRegIva=0 | COGPrimeNoteRiferimenti! | <missed> itself Err: 10486
settlements | T.TipoRegIva=0 | COGIvaLiquidazioni! | <missed> CheckPeriodoLiquidato Err: 10486
locks | T.TipoRegIva=0;T.DataIva="2024-03-10" | COGBlocchiPeriodo!
    | <missed> itself Err: 10486 / 10500
accruals | T.TipoRegIva=2 | COGRateiRisconti!
    | <missed> KalScadenze.RRContabilizzati Err: 10486 / 10487
no header | T! | Error 91 in GetField ( Field: IdPrimaNota ) 
)");
}

// Month 2 prints nothing in section 1; in month 3 each section has printed another register.
TEST(LibriStampati, ByMonthSectionAndRegister) {
  RunTable(R"(
[giroconto] | operation="ContabilitaChiusa"
open | T.DataRegistrazione="2023-05-05" | False
closed | T.DataCompetenza="2023-12-31" | True
no fiscal year | T.DataCompetenza="2030-01-01" | False
no date | T.DataCompetenza=null | False
does not say | | UPDATE STDEsercizi SET ContabilitaChiusa=NULL | Error 94 in itself

[giroconto] | operation="LibroGiornaleStampato" | INSERT INTO COGBollati VALUES (1,2024,3,1,0)
printed | arguments=["2024-03-31"] | True
another month | arguments=["2024-04-01"] | False
another year | arguments=["2023-03-31"] | False
not printed | arguments=["2024-03-31"] | UPDATE COGBollati SET GiorContStampato=0 | False
does not say | arguments=["2024-03-31"] | UPDATE COGBollati SET GiorContStampato=NULL
    | Error 94 in itself
no date | arguments=[""] | Error 13 in itself

<summary> = UPDATE COGBollati SET RiepilogoStampato
[giroconto] | operation="RegistriIvaStampati"
    | INSERT INTO COGBollati VALUES (4,2024,2,1,0),(5,2024,3,NULL,0),(6,2025,4,1,1);
    INSERT INTO COGBollatiIva VALUES (4,1,0,0,0),(5,1,1,0,0), (5,2,0,1,0),(5,3,0,0,1),(5,4,1,NULL,1)
purchases | arguments=["2024-03-15",1,1] | True
purchases, section 2 | arguments=["2024-03-15",1,2] | False
sales | arguments=["2024-03-15",2,2] | True
sales, section 1 | arguments=["2024-03-15",2,1] | False
receipts | arguments=["2024-03-15",3,3] | True
receipts, section 2 | arguments=["2024-03-15",3,2] | False
type 4 | arguments=["2024-03-15",4,1] | False
no register asks nothing | arguments=["2024-03-15",0,1] | COGParametriIva! | False
month before | arguments=["2024-02-29",1,1] | False
no month | arguments=["2024-04-15",1,1] | False
no section | arguments=["2024-03-15",1,9] | False
does not say | arguments=["2024-03-15",2,4] | Error 94 in itself
summary | arguments=["2024-03-15",1,9] | <summary>=1 | True
summary, type 4 | arguments=["2024-03-15",4,9] | <summary>=1 | True
summary, no register | arguments=["2024-03-15",0,9] | <summary>=1 | False
summary does not say | arguments=["2024-03-15",1,1] | <summary>=NULL | True
no VAT parameters | arguments=["2024-03-15",1,9] | <summary>=1;DELETE FROM COGParametriIva | False
)");
}

TEST(LibriStampati, ASummaryCoversItsSettlementPeriod) {
  for (const auto& [quarterly, printed, months] :
       {std::tuple("NULL", "(3),(9)", "..X.....X..."), std::tuple("0", "(3),(9)", "..X.....X..."),
        std::tuple("0", "(1),(12)", "X..........X"), std::tuple("1", "(3),(9)", "XXX...XXX..."),
        std::tuple("1", "(6),(12)", "...XXX...XXX"), std::tuple("1", "(1),(5)", "............")}) {
    OpenedCompany books(std::string("WITH Stampati(Mese) AS (VALUES ") + printed +
                        ") INSERT INTO COGBollati SELECT Mese,2024,Mese,0,1 FROM Stampati;"
                        "UPDATE COGParametriIva SET IvaTrimestrale=" +
                        quarterly);
    KalCOGCheck checker(books.company.Siblings());
    std::string shown;
    for (int month = 1; month <= 12; ++month) {
      shown += checker.RegistriIvaStampati(*Date::FromYmd(2024, month, 15), 1, 1) ? "X" : ".";
    }
    EXPECT_EQ(shown, months) << "quarterly: " << quarterly << ", printed: " << printed;
  }
}

TEST(NumeriDuplicati, InTheDocumentsYear) {
  RunTable(R"(
<saved> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,NumeroDocumento,TipoRegIva,SezionaleIva,
    IdAnagrafica,DataDocumento,DataRegistrazione) VALUES
<head> = UPDATE COGPrimeNoteTeste SET
[giroconto] | operation="CheckDuplicatoNrDocRicevuto"
    | <saved> (200,'A1',1,1,20,'2024-01-01','2023-12-31')
used | arguments=["A1","2024-12-31",20,0] | True
used by another entry | arguments=["A1","2024-12-31",20,201] | True
used by itself | arguments=["A1","2024-12-31",20,200] | False
used by itself, below 0 | arguments=["A1","2024-12-31",20,-1] | <head> IdPrimaNota=-1 | False
another number | arguments=["a1","2024-12-31",20,0] | False
another supplier | arguments=["A1","2024-12-31",21,0] | False
year of registration | arguments=["A1","2023-12-31",20,0] | False
a sale's number | arguments=["A1","2024-12-31",20,0] | <head> TipoRegIva=2 | False
definitive | arguments=["A1","2024-12-31",20,0] | <head> Provvisoria=0 | True
provisional | arguments=["A1","2024-12-31",20,0] | <head> Provvisoria=1 | False
no date | arguments=["A1","",20,0] | Error 13 in itself
[giroconto] | operation="CheckDuplicatoNrDocEmesso"
    | <saved> (200,'A1',2,3,10,'2024-01-01','2023-12-31')
used | arguments=[2,3,"A1","2024-12-31",0] | True
used by itself | arguments=[2,3,"A1","2024-12-31",200] | False
used by itself, below 0 | arguments=[2,3,"A1","2024-12-31",-1] | <head> IdPrimaNota=-1 | False
another register | arguments=[3,3,"A1","2024-12-31",0] | False
another section | arguments=[2,2,"A1","2024-12-31",0] | False
another number | arguments=[2,3,"A2","2024-12-31",0] | False
year of registration | arguments=[2,3,"A1","2023-12-31",0] | False
provisional | arguments=[2,3,"A1","2024-12-31",0] | <head> Provvisoria=1 | False
no date | arguments=[2,3,"A1","",0] | Error 13 in itself
)");
}

TEST(CheckEffettiSplitPayment, BillsUnderTermsThatDoNotFit) {
  RunTable(R"(
<sections> = UPDATE COGNumerazioniIva SET
<private> = T.IdAnagrafica=10
<bill1> = S1.IdTipologiaPagamento=2
<bill2> = S2.IdTipologiaPagamento=2
<filtered> = where TipoRata = 0
[vendita] | T.SezionaleIva=2;T.IdAnagrafica=11;T.CodPagamento="RB"
    | INSERT INTO STDTipologiePagamento VALUES (3,NULL);
    INSERT INTO STDCondizioniPagamentoTeste VALUES ('MUTA',NULL);
    INSERT INTO COGNumerazioniIva (IdNumerazione,Anno,TipoRegIva,SezionaleIva,SplitPayment) VALUES (20,2014,2,2,1),(21,2015,2,2,1)
no bill | | True @ S end
first | <bill1> | Warn: <effetti> @ S 1
second | <bill2> | Warn: <effetti> @ S 2
behind a closing one | S1.TipoRata=1;<bill1>;<bill2> | Warn: <effetti> @ S 2
no ordinary one | S1.TipoRata=1;S2.TipoRata=1;<bill1> | True @ S end <filtered>
fitting terms | <bill2>;T.CodPagamento="SOLOIVA" | True @ S 2
unknown terms | <bill2>;T.CodPagamento="X" | True @ S 2 <filtered>
terms do not say | <bill2>;T.CodPagamento="MUTA"
    | Error 94 in CheckEffettiSplitPayment @ S 2 <filtered>
unknown type | S1.IdTipologiaPagamento=9;<bill2> | Warn: <effetti> @ S 2
type does not say | S1.IdTipologiaPagamento=3 | True @ S end
no set | S!;T.TotDocumentoVB=0 | True
another section | <bill1>;T.SezionaleIva=1;<private> | True @ S 1
section does not say | <bill1>;<private> | <sections> SplitPayment=NULL | Warn: <effetti> @ S 1
section of other years | <bill1>;<private> | DELETE FROM COGNumerazioniIva WHERE Anno=2024
    | Err: 10505 @ S 1
section of purchases | <bill1>;T.SezionaleIva=3;<private>
    | <sections> SezionaleIva=3,SplitPayment=1 WHERE TipoRegIva=1 | Err: 10505 @ S 1
before the regime | <bill1>;T.DataRegistrazione="2014-12-31";T.DataDocumento="2014-12-31"
    | True @ S 1
from the regime on | <bill1>;T.DataRegistrazione="2015-01-01";T.DataDocumento="2015-01-01"
    | Warn: <effetti> @ S 1
receipts | <bill1>;T.CodCausale="COR";T.SezionaleIva=1 | True @ S 1
no payment types | | STDTipologiePagamento! | <missed> CheckEffettiSplitPayment @ S 1 <filtered>
no sections | | COGNumerazioniIva! | <missed> IsClienteSplitPayment < CheckEffettiSplitPayment
)");
}

constexpr const char* kDocuments =
    "INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoDocumento,IdDoc,TipoRegIva,DataRegistrazione,"
    "DataCompetenza,Provvisoria) VALUES (200,4,7,0,'2024-03-15','2024-03-15',0),"
    "(201,4,7,0,'2024-03-15','2023-03-15',1),(202,5,7,0,'2024-03-15','2023-03-15',0),"
    "(203,5,8,0,'2024-03-15','2024-03-15',1);";

TEST(RegistrazioniDaDocumento, FollowTheirDocument) {
  RunTable(std::string("[giroconto] | operation=\"OkModificaDoc\" | ") + kDocuments + R"(
free, the first counts | arguments=[4,7] | True
closed year | arguments=[5,7] | Err: 10509
provisional | arguments=[5,8] | False
no entry | arguments=[7,4] | True
no entries | arguments=[4,7] | COGPrimeNoteTeste! | <missed> itself
deletion | operation="OkCancellaDoc";arguments=[4,7] | True
deletion, closed year | operation="OkCancellaDoc";arguments=[5,7] | Err: 10509
deletion, no accruals | operation="OkCancellaDoc";arguments=[4,7] | COGRateiRisconti!
    | <missed> KalScadenze.RRContabilizzati < OkModify < OkDelete
id, the first counts | operation="LeggiIdPrimaNota";arguments=[7,4] | 200
id of another document | operation="LeggiIdPrimaNota";arguments=[7,5] | 202
no id | operation="LeggiIdPrimaNota";arguments=[4,7] | -1
no ids | operation="LeggiIdPrimaNota";arguments=[7,4] | COGPrimeNoteTeste! | <missed> itself
)");
}

TEST(RegistrazioniDaDocumento, TakeTheHeadersPlace) {
  OpenedCompany books(kDocuments);
  Checked checked(
      books.siblings,
      EntryText("giroconto", R"(operation="OkModifica";T.DataCompetenza="2023-05-01")"));
  EXPECT_EQ(checked.Run(), "Err: 10509");
  EXPECT_TRUE(checked.checker.OkCancellaDoc(1, 1));
  EXPECT_EQ(checked.Findings(), " Err: 10509") << "no entry leaves the findings alone";
  const std::string missing = " in GetField ( Field: IdPrimaNota ) ";
  EXPECT_EQ(checked.Run(), "Error 3021" + missing) << "no entry leaves an empty header";
  EXPECT_TRUE(checked.checker.OkModificaDoc(4, 7));
  EXPECT_EQ(checked.Findings(), "");
  EXPECT_EQ(checked.Run(), "Error 91" + missing) << "an entry leaves no header";
  books.Execute("ALTER TABLE COGBollati RENAME TO Perduta");
  EXPECT_THROW(checked.checker.OkModificaDoc(5, 7), RunTimeError);
  books.Execute("ALTER TABLE Perduta RENAME TO COGBollati");
  EXPECT_EQ(checked.Run(), "Err: 10509") << "an error leaves the header there";
}

TEST(OkModifica, SpeaksAnewAndKeepsTheOtherWarnings) {
  OpenedCompany books("INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1')");
  Checked checked(books.siblings, EntryText("giroconto", R"(operation="OkModifica";T.Protocollo=0;
      T.TipoDocumento=4;C1.CodConto="7001")"));
  EXPECT_FALSE(checked.checker.OkAggiorna(true, true));
  EXPECT_EQ(checked.Findings(), " Err: 10508 Warn: 10699 Group: 10656");
  EXPECT_EQ(checked.Run(), "True Group: 10656");
}

}  // namespace
}  // namespace kal::test
