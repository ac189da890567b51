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
account | C2.CodConto="7001" | Group: 10656 @ C 1
header | T.Infragruppo=true;C2.CodConto="7001" | True
customer | C1.TipoCliFor=1;C1.IdCliFor=12 | Group: 10656
supplier | C1.TipoCliFor=2;C1.IdCliFor=22 | Group: 10656
customer with a supplier's number | C1.TipoCliFor=1;C1.IdCliFor=22 | True
supplier with a customer's number | C1.TipoCliFor=2;C1.IdCliFor=12 | True
a customer's account does not count | C1.TipoCliFor=1;C1.IdCliFor=10;C1.CodConto="7001" | True
of another type, by its account | C1.TipoCliFor=3;C1.IdCliFor=12;C1.CodConto="7001" | Group: 10656
does not say | C1.TipoCliFor=1;C1.IdCliFor=12 | UPDATE STDAnagraficaClienti SET Infragruppo=NULL
    | True
no lines | C1-;C1- | Warn: 10522
walk ends where the group is found | C2.TipoCliFor=1;C2.IdCliFor=12;<third>
    | STDAnagraficaFornitori! | Group: 10656 @ C 1
walk goes on where it is not | C2.TipoCliFor=1;C2.IdCliFor=10;<third> | STDAnagraficaFornitori!
    | <missed> ContoInfragruppo < CheckInfragruppo @ C 3
not handled | C2.CodConto="7001" | UPDATE STDParametriAzienda SET Valore='0' | True
)");
}

TEST(CheckInfragruppo, TheFlagStaysUntilTheNextCheck) {
  OpenedCompany books("INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1')");
  Checked checked(books.company.Siblings(), EntryText("giroconto", "T.Infragruppo=true"));
  const Checked stranger(books.company.Siblings(), EntryText("giroconto"));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "before any check";
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "True");
  books.Execute("UPDATE STDParametriAzienda SET Valore='0'");
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "not handled";
  checked.checker.RsTesta(stranger.sets[0]);
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  books.Execute("UPDATE STDParametriAzienda SET Valore='1'");
  EXPECT_EQ(checked.checker.IsInfragruppo(), "True") << "a save check that does not ask keeps it";
  EXPECT_TRUE(checked.checker.OkAggiorna(true, true));
  EXPECT_EQ(checked.checker.IsInfragruppo(), "False") << "the next check resets it";
}

// A line without an amount stops the save check right behind the due dates, so that the state in
// which they leave the installments can be seen.
TEST(CheckBanca, DatesAndBanksOfInstallments) {
  RunTable(R"(
[acquisto]
first without date | S1.DataScadenza=null | Warn: 10657
a closing one without date | S2.TipoRata=1;S2.DataScadenza=null | Warn: 10657
no rows | S1-;S1-;T.TotDocumentoVB=0 | True @ S end
no set | S!;T.TotDocumentoVB=0 | True
dates leave the end | C1.ImportoAvere=null | Error 94 in OkQuadratura @ S end
a missing date leaves the end | C1.ImportoAvere=null;S1.DataScadenza=null
    | Error 94 in OkQuadratura Warn: 10657 @ S end

<bill1> = S1.IdTipologiaPagamento=2
<bill2> = S2.IdTipologiaPagamento=2
[acquisto] | T.TipoDocumento=4 | INSERT INTO STDTipologiePagamento VALUES (3,NULL)
no bill | | True @ S end
first without bank | <bill1> | Warn: 10510 @ S 1
second without bank | <bill2> | Warn: 10510 @ S 2
bank 0 | <bill1>;S1.IdBancaCliente=0 | Warn: 10510 @ S 1
bank | <bill1>;S1.IdBancaCliente=7 | True @ S end
closing one without bank | <bill1>;S1.TipoRata=1 | True @ S end
closing one in front | <bill1>;<bill2>;S1.TipoRata=1 | Warn: 10510 @ S 2
closing ones only | <bill1>;S1.TipoRata=1;S2.TipoRata=1 | True @ S end where TipoRata = 0
unknown type | S1.IdTipologiaPagamento=9;<bill2> | Warn: 10510 @ S 2
type does not say | S1.IdTipologiaPagamento=3 | True
no set for the banks | S!;T.TotDocumentoVB=0 | True
another document | T.TipoDocumento=5;<bill1> | True @ S 1
no payment types | <bill1> | STDTipologiePagamento! | <missed> CheckBanca @ S 1 where TipoRata = 0
)");
}

TEST(CheckCompilazioneParcella, AProfessionalsPurchaseCarriesItsFeeNote) {
  RunTable(R"(
[acquisto] | T.IdAnagrafica=21;T.CodCausale="PAR"
template | | Warn: 10624
template without fee note | T.CodCausale="FTA" | True
template of another kind | | UPDATE COGCausaliContabili SET TipoParcella=2 | True
new document | T.TipoDocumento=13 | Warn: 10624
edited document | T.TipoDocumento=13;T!EditMode=1 | Warn: 10772
edited entry of another document | T.TipoDocumento=5;T!EditMode=0 | Warn: 10624
document, template without | T.TipoDocumento=13;T.CodCausale="FTA" | Warn: 10624
host said so of a document | IsParcella=true;T.TipoDocumento=13 | True
another supplier | T.IdAnagrafica=20;T.TipoDocumento=13 | True
supplier is asked about first | IsParcella=true | STDAnagraficaFornitori!
    | <missed> CheckCompilazioneParcella
[vendita]
a sale asks nothing | T.TipoDocumento=13 | STDAnagraficaFornitori! | True
)");
}

TEST(CheckRateiRisconti, CounterpartsStandOnALine) {
  RunTable(R"(
<4001> = R+{"CodContoContropartita":"4001"}
<9999> = R+{"CodContoContropartita":"9999"}
[acquisto]
both there | <4001>;R+{"CodContoContropartita":"6001"} | True @ R 1, C 1
neither there | <9999>;R+{"CodContoContropartita":"8"} | Err: 10660(9999) / 10660(8) @ R 1, C 1
empty ends the walk | <9999>;R+{"CodContoContropartita":""};<9999> | Err: 10660(9999) / 10659 @ R 1,
    C 1
Null is empty | R+{} | Err: 10659
part of a code | R+{"CodContoContropartita":"40"} | Err: 10660(40)
wildcards | R+{"CodContoContropartita":"40*"};R+{"CodContoContropartita":"*00%"} | True
wildcard without match | R+{"CodContoContropartita":"9%"} | Err: 10660(9%)
wildcard inside | R+{"CodContoContropartita":"4*1"} | Error 3001 in CheckRateiRisconti @ R 1, C 1
quote | <4001>;R+{"CodContoContropartita":"4'1"} | Error 3001 in CheckRateiRisconti @ R 2,
    C 1 where CodConto like '4001'
no accruals | RsRisconti={"rows":[]} | True @ R end
provisional | T.Provvisoria=true;T.SezionaleIva=5;<9999> | True
[giroconto]
no lines | C1-;C1-;<9999> | Warn: 10522
)");
}

TEST(EsisteSezionale, TheSectionIsDefinedForTheYear) {
  RunTable(R"(
[giroconto]
no fiscal year | T.DataRegistrazione="2030-01-01" | Err: 10513 / 10514
section of no year | T.DataRegistrazione="2030-01-01"
    | INSERT INTO COGNumerazioniContabili VALUES (0,1) | Err: 10513
empty date | T.DataRegistrazione=null | Error 13 in LibroGiornaleStampato Err: 10513 / 10514
year of registration | T.DataRegistrazione="2023-12-31" | Err: 10514
section of provisional entries | T.SezionaleIva=5 | Err: 10514
provisional | T.Provvisoria=true;T.SezionaleIva=5 | True
provisional in a definitive section | T.Provvisoria=true | Err: 10514
does not say | T.Provvisoria=null;T.SezionaleIva=5 | True
no numberings | | COGNumerazioniContabili! | <missed> EsisteSezionale
[acquisto] | | DELETE FROM COGNumerazioniContabili
definitive VAT entry | | True
provisional VAT entry | T.Provvisoria=true | Err: 10514
)");
}

TEST(ParametriIvaOk, TheYearHasItsParameters) {
  RunTable(R"(
<locked> = INSERT INTO COGBlocchiPeriodo VALUES ('2023-12-31','2024-12-31')
<none> = DELETE FROM COGParametriIva
<separate> = <none>;<set> ('AttivitaSeparateIva','1');
    INSERT INTO COGParametriIvaAttivitaRighe VALUES
[acquisto]
no year | | <none> | Err: 10519(2024)
year of the VAT date | T.DataIva="2023-12-31" | <none> WHERE Anno=2023 | Err: 10519(2023)
no VAT date | T.DataIva=null | <none>;<locked> | True
locked | | <locked> | Warn: 10511(Salvando)
locked, no year | | <none>;<locked> | Err: 10519(2024)
activity does not matter | T.CodAttivita="A1" | True
separate, no activity | | <separate> (2024,'A1') | True
separate, of others | T.CodAttivita="A1" | <separate> (2024,'A2'),(2023,'A1') | Err: 10519(2024)
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
company-wide | | Err: 10588(9)
own | T.SezionaleIva=2 | Err: 10588(8)
does not use its own | T.SezionaleIva=2 | <own> UsaSezAutoftSpecifico=0 | Err: 10588(9)
does not say | T.SezionaleIva=2 | <own> UsaSezAutoftSpecifico=NULL | Err: 10588(9)
names none | T.SezionaleIva=2 | <own> IdSezAutofatture=NULL | Err: 10588(9)
of another year | T.SezionaleIva=2 | <own> Anno=2023 WHERE IdNumerazione=6 | Err: 10588(9) / 10505
by the header's register | T.SezionaleIva=2;T.TipoRegIva=2 | Err: 10588(9)
not defined | | DELETE FROM COGNumerazioniIva WHERE IdNumerazione=4 | Err: 10515 / 10588(9)
no company-wide one | | UPDATE STDParametriAzienda SET Valore='' WHERE Nome='SezionaleAutofatture'
    | Err: 10515 / 10588(0)
neither reverse charge nor intra | T.ReverseCharge=false | True
intra | T.ReverseCharge=false;T.Intra=true;I1.CodIva="IC" | Err: 10588(9)
provisional | T.Provvisoria=true;T.SezionaleIva=5 | True
no numberings | | COGNumerazioniIva! | <missed> SezionaleIvaAutofattura
)");
}

TEST(CheckSegnoRigheIva, VatLinesStandOnTheirSide) {
  RunTable(R"(
<fourth> = C3.ImportoDare=21;C3.ImportoDareVB=21;C+{"CodConto":"6001","TipoRiga":3,"ImportoDare":1,
    "ImportoDareVB":1,"ImportoAvere":-5}
[acquisto]
purchase | C3.ImportoAvere="0.0001" | Warn: 10590(avere)(acquisto) @ C 1
purchase in base currency | C3.ImportoAvereVB="-0.0001" | Warn: 10590(avere)(acquisto)
sum | <fourth> | Warn: 10590(avere)(acquisto)
sum is nothing | <fourth>;C3.ImportoAvere=5 | True
another type of line | C2.ImportoAvere=1 | True
Null | C3.ImportoAvere=null;C3.ImportoAvereVB=null | True
no such lines | C3.TipoRiga=2;C3.ImportoAvere=1 | True @ C 1
no operation | C3.ImportoAvere=1;T.CodCausale="ACQ" | True @ C 1
[vendita]
sale in base currency | C3.ImportoDareVB="0.0001" | Err: 10492 / 10494 Warn: 10590(dare)(vendita)
[giroconto] | C2.TipoRiga=3 | UPDATE COGCausaliContabili SET Operazione=1
no register | | True
free registration | T.CodCausale="LIB" | Warn: 10590(avere)(acquisto)
)");
}

// Losing the VAT codes stops the save check right behind the plafond.
TEST(CheckPlafond, APurchaseUsesItsDeclaration) {
  RunTable(R"(
[acquisto] | T.DataPlafond="2024-03-15";T.IdDichiarazione=2
all lines | | True @ P 100
lines of its code | I+{"CodIva":"22","Imponibile":"0.5","ImponibileVB":7};
    I+{"CodIva":"10","Imponibile":9} | Warn: <aliquote> @ P 100.5
reversing | T.CodCausale="NCA" | True @ P -100
reversing by -1 alone | | UPDATE COGCausaliContabili SET SegnoIva=-2 | True @ P 100
no plafond date | T.DataPlafond=null | True @ P 0
no declaration | T.IdDichiarazione=0 | True @ P 0
unknown declaration | T.IdDichiarazione=9 | True @ P 0
a customer's declaration | | UPDATE STDDichiarazioniIntento SET TipoAnagrafica=1 | True @ P 0
a sale | T.CodCausale="FTV" | Warn: 10590(dare)(vendita) @ P 0
no lines | I1- | Error 3021 in itself @ P 0
no set of lines | I! | Error 91 in itself @ P 0
walked | I+{"CodIva":"22"} | STDIva! | <missed> CheckCodIva @ I 1
not walked | I+{"CodIva":"22"};T.IdDichiarazione=9 | STDIva! | <missed> CheckCodIva @ I end
no declarations | | STDDichiarazioniIntento! | <missed> CheckPlafond
)");
}

// Installment 1 of deadline 5, 10 on the debit side, stands on entry 5 in suspension; the entry
// pays it.
const std::string kPaying = R"(
<paid> = S+{"TipoRata":1,"DataScadenza":"2024-03-15","LinkApertura":5,"RataApertura":1,
    "ImportoAvere":10,"ImportoAvereVB":10}
<saved> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,InSospensione) VALUES (5,1);
    INSERT INTO COGPrimeNoteRCont VALUES (5,5);INSERT INTO COGScadenze (IdScadenza,NrRata,TipoRata,
    ImportoDare,ImportoDareVB,ImportoAvere,ImportoAvereVB) VALUES (5,1,0,'10','10','0','0')
)";

TEST(CheckIncassiInSospensione, ClosesOrReopens) {
  RunTable(kPaying + R"(
[giroconto] | <paid> | <saved>
closes | | True @ X closes, S 1
reopens | S1.ImportoDare=10 | True @ X reopens
reopens in base currency | S1.ImportoDareVB=10 | True @ X reopens
opened in base currency | | UPDATE COGScadenze SET ImportoDare='0' | True @ X closes
opened in the entry's currency | | UPDATE COGScadenze SET ImportoDareVB='0' | True @ X closes
opened on the credit side | | UPDATE COGScadenze SET ImportoDare='0',ImportoDareVB='0'
    | True @ X reopens
both | <paid>;S2.ImportoAvere=0;S2.ImportoAvereVB=0;S2.ImportoDare=1 | True @ X closesreopens
no closing installment | S1.TipoRata=0 | True @ X none, S 1
another deadline | S1.LinkApertura=6 | True @ X none
another installment | S1.RataApertura=2 | True @ X none
pointing nowhere | S1.LinkApertura=null | True @ X none
a closing one is closed | | UPDATE COGScadenze SET TipoRata=1 | True @ X none
entry not in suspension | | UPDATE COGPrimeNoteTeste SET InSospensione=0 | True @ X none
entry does not say | | UPDATE COGPrimeNoteTeste SET InSospensione=NULL | True @ X none
on no line | | DELETE FROM COGPrimeNoteRCont | True @ X none
no installments | | COGScadenze! | <missed> CheckIncassiInSospensione
)");
}

// What the last check found out is gone with the next one.
TEST(OkAggiorna, StartsAnewWithFlagsAndPlafond) {
  OpenedCompany books(TableRows(kPaying)[1][0].substr(sizeof("<saved> =")));
  Checked purchase(books.siblings,
                   EntryText("acquisto", R"(T.DataPlafond="2024-03-15";T.IdDichiarazione=2;)" +
                                             TableRows(kPaying)[0][0].substr(sizeof("<paid> ="))));
  (void)purchase.Run();
  EXPECT_EQ(purchase.State('P') + " " + purchase.State('X'), "100 closes");
  purchase.checker.RsCausale(nullptr);
  purchase.checker.RsTesta(
      Checked(books.siblings, EntryText("giroconto", "T.CodCausale=\"?\"")).sets[0]);
  EXPECT_EQ(purchase.Run(), "Err: 10525");
  EXPECT_EQ(purchase.State('P') + " " + purchase.State('X'), "100 closes") << "no template";
  purchase.checker.RsTesta(Checked(books.siblings, EntryText("giroconto")).sets[0]);
  purchase.checker.RsScadenze(nullptr);
  (void)purchase.Run();
  EXPECT_EQ(purchase.State('P') + " " + purchase.State('X'), "0 none");
}

}  // namespace
}  // namespace kal::test
