// From end to end: an entry of every kind passes the save check and, once saved, the modify check;
// and every message that the component knows appears where its one fault is made.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>

#include "messages/Catalogue.h"
#include "tests/kit.h"

namespace kal::test {
namespace {

// The entry itself is saved already, and one before it in each register.
constexpr const char* kBooks = R"(
<save> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,Protocollo,
    NumeroDocumento,IdAnagrafica,DataDocumento,DataRegistrazione) VALUES
<books> = <save> (99,1,1,9,'F0',20,'2024-03-10','2024-03-14'),
    (100,1,1,10,'F1',20,'2024-03-10','2024-03-15'),(99,2,1,9,'F0',10,'2024-03-15','2024-03-14'),
    (100,2,1,10,'F1',10,'2024-03-15','2024-03-15');
)";

// Each is checked before it is saved again, and before it is modified.
constexpr const char* kKinds = R"(
[giroconto] | | <books>
no VAT register | | True
free registration | T.CodCausale="LIB" | True
opening | T.CodCausale="APE";T.DataCompetenza="2024-01-01" | True
closing | T.CodCausale="CHI";T.DataCompetenza="2024-12-31" | True
adjustment | T.Rettifica=true;T.DataCompetenza="2024-03-31" | True
currency on lines | T.CodProprieta="P" | INSERT INTO COGPrimeNoteProprieta VALUES ('P',1) | True
[acquisto] | | <books>
purchase | | True
purchase in foreign currency | C1.CodDivisa="USD" | True
credit note | T.CodCausale="NCA" | True
fee note | T.CodCausale="PAR";T.IdAnagrafica=21;IsParcella=true | True
intra-community | T.Intra=true;I1.CodIva="IC" | True
reverse charge | T.ReverseCharge=true;I1.ReverseCharge=true;I1.CodIva="RC" | True
accruals | R+{"CodContoContropartita":"4001"} | True
fiscal data | T.FiscalitaBL=true;F+{"BeniImponibili":100,"ImpostaBeniImponibili":22} | True
plafond | T.IdDichiarazione=2;T.DataPlafond="2024-03-10" | True
group | T.Infragruppo=true | <set> ('GestisciPNInfragruppo','1') | True
[vendita] | | <books>
sale | | True
sale with bills | T.TipoDocumento=4;S1.IdTipologiaPagamento=2;S1.IdBancaCliente=7 | True
suspension | T.InSospensione=true;TmpTableScadenze="COGScadenze" | True
split payment | T.IdAnagrafica=11;T.SezionaleIva=2 | True
declaration of intent | T.IdDichiarazione=1;I1.CodIva="DI" | True
[corrispettivi] | | <books>
receipts | | True
ventilated receipts | T.CodCausale="COV";I1.CodIva="VENT" | True
till | T.CodCausale="COC" | True
)";

TEST(Everything, EntriesOfEveryKindPass) {
  const std::string books = kBooks;
  RunTable(books + kKinds);
  RunTable(books +
           std::regex_replace(kKinds, std::regex("\\] \\|"), "] | operation=\"OkModifica\""));
  RunTable(books + R"(
[vendita] | T.Provvisoria=true;T.SezionaleIva=5;T.Protocollo=0;T.NumeroDocumento=null | <books>
provisional | | True
provisional, modified | operation="OkModifica" | False
)");
}

constexpr const char* kFaults = R"(
<saved> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,IdLink,Intra,ReverseCharge) VALUES
<printed> = INSERT INTO COGBollatiIva VALUES (1,1,1,1,1),(1,9,1,1,1);INSERT INTO COGBollati VALUES
<closed> = INSERT INTO COGPrimeNoteRCont VALUES (100,5); INSERT INTO COGScadenze (IdScadenza,NrRata,
    TipoRata,IdDistinta,LinkApertura,RataApertura) VALUES (5,1,0,7,NULL,NULL),(6,1,1,NULL,5,1)
<reverse> = T.ReverseCharge=true;I1.ReverseCharge=true
[giroconto]
base currency | C1.ImportoDareVB="100.0001" | False Err: 10492
entry's currency | T.CodCausale="LIB";C1.ImportoDare="99.9999";C1.TipoRiga=9;C2.TipoRiga=9
    | False Err: 10493
opening | T.CodCausale="APE" | False Err: 10502
closing | T.CodCausale="CHI" | False Err: 10503
closed year | T.DataCompetenza="2023-03-15" | False Err: 10509 / 10504
protocol | T.Protocollo=0 | False Err: 10508
year of registration | T.DataRegistrazione="2030-01-01" | False Err: 10513 / 10514
lines | C1-;C1- | False Warn: 10522
year of competence | T.DataCompetenza="2030-03-15" | False Err: 10523
template | T.CodCausale="X" | False Err: 10525
currency of a line | T.CodProprieta="P";C2.CodDivisa=""
    | INSERT INTO COGPrimeNoteProprieta VALUES ('P',1) | False Err: 10578(2)
adjustment | T.Rettifica=true | False Err: 10594
register | T.TipoDocumento=14 | False Warn: 10699
one line | C2-;C1.ImportoDare=0;C1.ImportoDareVB=0 | False Warn: 10734
[giroconto] | operation="OkModifica"
settled | | INSERT INTO COGPrimeNoteRiferimenti VALUES (100,'2024-03-10');
    INSERT INTO COGIvaLiquidazioni VALUES (2024,3,1) | False Err: 10500
[acquisto]
number | T.NumeroDocumento="" | False Err: 10485
journal printed | | INSERT INTO COGBollati VALUES (1,2024,3,1,0) | False Err: 10486
register printed | | <printed> (1,2024,3,0,0) | False Err: 10487
installments | S2.ImportoAvereVB="60.9999" | False Err: 10489(1)
line types | C2.TipoRiga=9 | False Err: 10494
line type 4 | C2.TipoRiga=4 | False Err: 10494 / 10495
document date | T.DataDocumento="2024-03-16" | False Err: 10496
VAT code | I1.CodIva="99" | False Err: 10498(99)
VAT section | T.SezionaleIva=7 | False Err: 10505
protocol used | | <save> (1,1,1,10,'',0,NULL,'2024-03-01') | False Prot: 10506(01/03/2024)(10)
number used | | <save> (1,1,1,1,'F1',20,'2024-01-01','2024-01-02') | False Dup: 10507
bank | T.TipoDocumento=4;S1.IdTipologiaPagamento=2 | False Warn: 10510
locked | | INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15')
    | False Warn: 10511(Salvando)
self-invoice's section | <reverse> | DELETE FROM COGNumerazioniIva WHERE SezionaleIva=9
    | False Err: 10515
plafond printed | T.DataPlafond="2024-02-10" | <printed> (1,2024,2,0,0) | False Err: 10516
VAT parameters | | DELETE FROM COGParametriIva | False Err: 10519(2024)
account | C2.CodConto="10" | False Err: 10520(2)
no VAT code | I1.CodIva="" | False Err: 10521(1) / 10498()
self-invoice's protocol | <reverse>;T.IdLink=1 | <save> (1,2,9,5,'',0,NULL,'2024-03-15'),
    (2,2,9,6,'',0,NULL,'2024-03-14') | False Prot: 10587(14/03/2024)(6)
self-invoice printed | <reverse> | <printed> (1,2024,3,0,0);
    UPDATE COGBollatiIva SET AcqStampati=0 | False Err: 10588(9)
side | C3.ImportoAvere="0.0001" | False Warn: 10590(avere)(acquisto)
fee note | T.IdAnagrafica=21;T.TipoDocumento=13 | False Warn: 10624
fee note edited | T.IdAnagrafica=21;T.TipoDocumento=13;T!EditMode=0 | False Warn: 10772
group | C2.CodConto="7001" | <set> ('GestisciPNInfragruppo','1') | False Group: 10656
due date | S1.DataScadenza=null | False Warn: 10657
accruals | R+{"CodContoContropartita":"9"};R+{} | False Err: 10660(9) / 10659
tax alone | I1.ImponibileVB=0;I1.TotaleVB=22 | False Warn: 10666(1)
tax without amount | I1.ImponibileVB=0 | False Err: 10742(1)
intra code | T.CodCausale="ACQ";I1.CodIva="IC" | False Warn: 10695
code with fiscal data | T.FiscalitaBL=true;I1.CodIva="10" | False Err: 10726
fiscal data | F+{"BeniImponibili":100,"ImpostaBeniImponibili":"21.9999"} | False Warn: 10727
reverse lines | T.ReverseCharge=true | False Err: 10731
long protocol | T.Protocollo=10000000 | False Warn: 10738(del documento)
self-invoice's long protocol | <reverse> | <save> (1,2,9,9999999,'',0,NULL,'2024-03-14')
    | False Warn: 10738(dell'autofattura)
self-invoice's code | <reverse>;I1.CodIva="IND" | False Err: 10743(1)
activity | <reverse>;T.CodAttivita="A1" | <set> ('AttivitaSeparateIva','1');
    INSERT INTO COGParametriIvaAttivitaRighe VALUES (2024,'A1') | False Err: 10753
plafond | T.IdDichiarazione=2 | UPDATE STDDichiarazioniIntento SET ImportoPlafond='922.0001'
    | False Warn: <plafond>
declared, no date | T.IdDichiarazione=2;T.Provvisoria=true;T.SezionaleIva=5;T.DataDocumento=null
    | False Warn: <vuota>
declared later | T.IdDichiarazione=2
    | UPDATE STDDichiarazioniIntento SET DataInizioValidita='2024-03-11' | False Warn: <validità>
[acquisto] | operation="OkModifica"
made intra | | <saved> (1,100,1,0) | False Err: 10512
made reverse charge | | <saved> (1,100,0,1) | False Err: 10668
made split payment | | <saved> (1,100,0,0) | False Err: <generata>
closed | | <closed> | False Warn: 10517 / 10518
closed in suspension | T.InSospensione=true | <closed> | False Warn: 10774 / 10518
posted | | INSERT INTO COGRateiRiscontiContabilizzati VALUES (1);
    INSERT INTO COGRateiRisconti VALUES (1,100) | False Err: 10661
sent | T.StatoDocPA=3 | False Warn: <sdi>
written | T.StatoDocPA=1 | False Warn: <xml>
[vendita]
month | T.DataDocumento="2024-02-15" | False Err: 10497
closes what it opens | T.InSospensione=true;TmpTableScadenze="COGScadenze" | <closed>
    | False Err: 10754
negative | T.InSospensione=true;T.TotDocumentoVB="-0.0001" | False Err: 10767
split bills | T.IdAnagrafica=11;T.SezionaleIva=2;T.CodPagamento="RB";S2.IdTipologiaPagamento=2
    | False Warn: <effetti>
split customer | T.IdAnagrafica=11 | False Warn: <sezionale>
split section | T.SezionaleIva=2 | False Warn: <cliente>
rates | T.IdDichiarazione=1 | False Warn: <aliquote>
[corrispettivi]
threshold | T.TotDocumentoVB=3600 | False Warn: 10735
)";

TEST(Everything, EveryMessageAppears) {
  RunTable(std::string(kBooks) + kFaults);
  std::string shown;
  for (const std::vector<std::string>& row : TableRows(kFaults)) {
    shown += Written(row.back()) + " ";
  }
  for (const Message& message : Catalogue()) {
    const std::string known = message.code ? " " + std::to_string(static_cast<int>(*message.code))
                                           : std::string(message.text.italian);
    EXPECT_NE(shown.find(known), std::string::npos) << "no case gives " << message.name;
  }
}

}  // namespace
}  // namespace kal::test
