// Balance, VAT lines, installments, dates, fiscal data, currencies, suspension, protocols.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/kit.h"

namespace kal::test {
namespace {

TEST(Balance, OkQuadratura) {
  RunTable(R"(
<most> = "922337203685477.5807"
[giroconto]
account blank | C2.CodConto="";C2.ImportoAvere=1 | Err: 10520(2)
account unknown | C2.CodConto="99" | Err: 10520(2)
account a heading | C2.CodConto="10" | Err: 10520(2)
account a heading and an account | C2.CodConto="10"
    | INSERT INTO STDPianoDeiConti (CodConto,TipoConto) VALUES ('10',0) | True
each line with the account | C1.CodConto="99";C2.CodConto="99";C1.ImportoDareVB=1
    | Err: 10520(1) / 10520(2)
account Null | C2.CodConto=null | Error 94 in OkQuadratura
no accounts | | STDPianoDeiConti! | <missed> SottoContoAssente < OkQuadratura
account Null behind a missing one | C1.CodConto="";C2.CodConto=null
    | Error 94 in OkQuadratura Err: 10520(1)
one ten-thousandth | C1.ImportoDareVB="100.0001" | Err: 10492
only the base currency outside the registers | C1.ImportoDare=99;C1.TipoRiga=4 | True
a free registration | T.CodCausale="LIB";C1.ImportoDare="100.0001" | Err: 10493 / 10494
types out of balance | T.CodCausale="LIB";C1.TipoRiga=4 | Err: 10494 / 10495
debit in base currency makes a debit line | T.CodCausale="LIB";C1.ImportoDare=0;C1.ImportoAvere=55;
    C1.ImportoAvereVB=55 | Err: 10493 / 10494
negative credit | C1.ImportoDare=0;C1.ImportoDareVB=0;C1.ImportoAvere=-100;C1.ImportoAvereVB=-100
    | True
debit Null is no debit | C2.ImportoDare=null;C2.ImportoDareVB=null | True
one debit Null | C1.ImportoDare=null | Error 94 in OkQuadratura
credit Null | C2.ImportoAvere=null | Error 94 in OkQuadratura
overflow | C1.ImportoDareVB=<most>;C2.ImportoDareVB="0.0001";C2.ImportoDare=0
    | Error 6 in OkQuadratura
other amounts are not summed | C1.ImportoDare=<most>;C2.ImportoAvere=-1 | True
the extremes | C1.ImportoDareVB=<most>;C2.ImportoAvereVB=<most> | True
[acquisto]
field missing on the line that reads it | lacks="ImportoAvereVB";C1.CodConto=""
    | Error 3265 in OkQuadratura Err: 10520(1)
both currencies | C1.ImportoAvere=121;C1.ImportoAvereVB=121 | Err: 10492 / 10494 / 10489(1)
entry currency alone | C2.ImportoDare="100.0001" | Err: 10493 / 10494
type 4 alone | C3.TipoRiga=4 | Err: 10494 / 10495
type 2 to type 1 | C2.TipoRiga=1 | True
type 5 in no sum | C3.TipoRiga=5 | Err: 10494
type Null in no sum | C3.TipoRiga=null | Err: 10494
a debit line leaves its credit | C2.ImportoAvere=7;C2.ImportoAvereVB=7 | True
[corrispettivi]
receipts have no types | C3.TipoRiga=4 | True
receipts have a currency | C1.ImportoDare=121 | Err: 10493
)");
}

TEST(Balance, OkDivisaSuRighe) {
  RunTable(R"(
<onLines> = INSERT INTO COGPrimeNoteProprieta VALUES ('P',1), ('N',NULL)
[giroconto]
wanted | T.CodProprieta="P";C2.CodDivisa="";
    C+{"CodConto":"1001","CodDivisa":"EUR","ImportoAvere":0,"ImportoAvereVB":0} | <onLines>
    | Err: 10578(2)
property does not say | T.CodProprieta="N";C1.CodDivisa="";C2.CodDivisa="" | <onLines>
    | Err: 10578(1) / 10578(2)
not wanted | T.CodProprieta="P";C2.CodDivisa="" | INSERT INTO COGPrimeNoteProprieta VALUES ('P',0)
    | True
unknown property | T.CodProprieta="X";C2.CodDivisa="" | <onLines> | True
currency Null | T.CodProprieta="P";C2.CodDivisa=null | <onLines> | True
[corrispettivi]
in a register | T.CodProprieta="P";C2.CodDivisa="" | <onLines> | True
)");
}

TEST(VatLines, OkCastellettoIva) {
  RunTable(R"(
[corrispettivi]
pure tax | I1.ImponibileVB=0;I1.TotaleVB=22 | Warn: 10666(1)
tax and more | I1.ImponibileVB=0;I1.TotaleVB=23 | Err: 10742(1)
total Null | I1.ImponibileVB=0;I1.TotaleVB=null | Err: 10742(1)
negative tax | I1.ImponibileVB=0;I1.ImpostaVB=-22;I1.TotaleVB=-22 | Warn: 10666(1)
nothing | I1.ImponibileVB=0;I1.ImpostaVB=0 | True
taxable Null | I1.ImponibileVB=null | True
total missing where nothing reads it | lacks="TotaleVB";I1.ImponibileVB=1000 | True
tax Null | I1.ImponibileVB=0;I1.ImpostaVB=null | True
both tests, then the next line | I1.CodIva="";I1.ImponibileVB=0;I1.TotaleVB=0;
    I+{"NumeroRiga":7,"CodIva":""} | Err: 10521(1) / 10742(1) / 10521(7) / 10498() / 10498()
code Null is no blank | I1.CodIva=null | Err: 10498()
[giroconto]
no register | I+{"CodIva":"VENT","ImponibileVB":0,"ImpostaVB":1} | True
)");
}

TEST(VatLines, CheckCodIva) {
  RunTable(R"(
[acquisto]
unknown code | I1.CodIva="ZZ";I1.ReverseCharge=true;I1.Indetraibile=1 | Err: 10498(ZZ)
code in other letters | I1.CodIva="ind" | True
reserved code | I1.CodIva="VENT";T.Intra=true;I1.Indetraibile=1 | True
a quote in the code | I1.CodIva="a'b" | Error 3001 in CheckCodIva
deductible | I1.ReverseCharge=true;I1.Indetraibile=0 | True
base amount, intra | T.Intra=true;I1.IndetraibileVB="0.0001" | Err: 10743(1)
amount, reverse charge | I1.ReverseCharge=true;I1.Indetraibile=-1 | Err: 10743(1)
percentage | I1.ReverseCharge=true;I1.CodIva="IND" | Err: 10743(1)
charged to cost | I1.ReverseCharge=true;I1.CodIva="COS" | Err: 10743(1)
percentage below six decimals | I1.ReverseCharge=true;I1.CodIva="COS"
    | UPDATE STDIva SET PercIvaACosto=0.0000004 | True
names its code | T.Intra=true;I1.CodIva="RC" | True
ordinary line | I1.CodIva="IND";I1.Indetraibile=5 | True
the line's own flag and number | I1.CodIva="IND";
    I+{"NumeroRiga":9,"CodIva":"COS","ReverseCharge":true} | Err: 10743(9)
[giroconto]
without register | I+{"CodIva":"ZZ"} | Err: 10498(ZZ)
)");
}

TEST(VatLines, CheckCongruenzaAliquote) {
  RunTable(R"(
<declared> = T.IdDichiarazione=1
<none> = T.CodCausale="ACQ"
[corrispettivi]
each code without fiscal data | T.FiscalitaBL=true;I1.CodIva="10";I+{"CodIva":"22"};
    I+{"CodIva":"IND"} | Err: 10726 / 10726
reserved code with fiscal data | T.FiscalitaBL=true;I1.CodIva="VENT" | Err: 10726
code Null with fiscal data | T.FiscalitaBL=true;I1.CodIva="VENT";I+{"CodIva":null}
    | Error 94 in CheckCongruenzaAliquote Err: 10498() / 10726
ventilated receipts don't | T.CodCausale="COV";<declared>;I1.CodIva="10" | True
[vendita]
each code of another rate | <declared>;I1.CodIva="10";I+{"CodIva":"DI"};I+{"CodIva":"22"}
    | Warn: <aliquote> / <aliquote>
stamp duty, ventilated, Null | <declared>;I1.CodIva="BOL";I+{"CodIva":"VENT"};I+{"CodIva":null}
    | INSERT INTO STDIva (CodIva) VALUES ('BOL'), ('') | True
letters count | <declared>;I1.CodIva="di" | Warn: <aliquote>
declaration not found | T.IdDichiarazione=9 | True
[acquisto]
a customer's declaration, by its id | <declared>;I1.CodIva="10" | Warn: <aliquote>
variation notes compare too | T.CodCausale="NCA";T.IdDichiarazione=2;I1.CodIva="10"
    | Warn: <aliquote>
no operation: intra codes | <none>;<declared>;I1.CodIva="IC";I+{"CodIva":"22"};I+{"CodIva":"IC"}
    | Warn: 10695 / 10695
declarations are read all the same | <none> | STDDichiarazioniIntento!
    | <missed> LeggiDichiarazioneIntento < CheckCongruenzaAliquote
intra entry | <none>;T.Intra=true;I1.CodIva="IC" | True
intra entry of other codes | <none>;T.Intra=true | True
intra entry, mixed | <none>;T.Intra=true;I1.CodIva="IC";I+{"CodIva":"22"};I+{"CodIva":"10"}
    | Warn: 10695
reserved and Null codes are neither | <none>;T.Intra=true;I1.CodIva="IC";I+{"CodIva":"VENT"};
    I+{"CodIva":null} | INSERT INTO STDIva (CodIva) VALUES ('') | True
where declarations apply, no intra codes | I1.CodIva="IC" | True
)");
}

TEST(Installments, QuadraScadenze) {
  RunTable(R"(
<movement> = UPDATE COGCausaliContabili SET IdTipoMovimento =
[acquisto]
one cent | S2.ImportoAvereVB="60.99" | Err: 10489(1)
base currency lines ignore the other | S2.ImportoAvere="60.99" | True
foreign currency | C1.CodDivisa="USD";S2.ImportoAvere="60.9999" | Err: 10489(1)
foreign currency, base amounts | C1.CodDivisa="USD";S2.ImportoAvereVB=60 | Err: 10489(1)
foreign currency, all alike | C1.CodDivisa="USD" | True
no currency | C1.CodDivisa=null;S2.ImportoAvere="60.9999" | Err: 10489(1)
no base currency set | S2.ImportoAvere=60
    | DELETE FROM STDParametriAzienda WHERE Nome='CodDivisaBase' | Err: 10489(1)
a debit among credits | S2.ImportoDareVB=10;S2.ImportoDare=0;S1.ImportoAvereVB=132 | True
another link's | S2.IdScadenza=2 | Err: 10489(1)
link missing | lacks="IdScadenza" | Error 3265 in GetField ( Field: IdScadenza )  < QuadraScadenze
none for the link | C1.IdScadenza=-7 | Err: 10489(1)
none for a line of 0
    | C+{"CodConto":"3001","IdCliFor":1,"TipoCliFor":2,"ImportoAvere":0,"ImportoAvereVB":0} | True
no set | S! | Err: 10489(1)
no total | S!;T.TotDocumentoVB=null | True
no link under another template | C1.IdScadenza=null | Err: 10489(1)
no link, installments without one | C1.IdScadenza=0;S1.IdScadenza=0;S2.IdScadenza=0 | True
no link at a closing | C1.IdScadenza=0;T.DataCompetenza="2024-12-31" | <movement> 1 | True
no link at an opening | C1.IdScadenza=0;T.DataCompetenza="2024-01-01" | <movement> 2 | True
a link at an opening | S!;T.DataCompetenza="2024-01-01" | <movement> 2 | Err: 10489(1)
counterpart type 0 | S!;C1.TipoCliFor=0 | True
counterpart type 3 | S!;C1.TipoCliFor=3 | True
counterpart type Null | S!;C1.TipoCliFor=null | True
counterpart 0 | S!;C1.IdCliFor=0 | True
counterpart Null | S!;C1.IdCliFor=null | True
each line | S!;C3.IdCliFor=20;C3.TipoCliFor=4 | Err: 10489(1) / 10489(3)
amount Null | S1.ImportoAvere=null | Error 94 in QuadraScadenzeRiga < QuadraScadenze
amount Null of another link | S+{"IdScadenza":2,"DataScadenza":"2024-01-01"} | True
)");
}

// Each of 10,000 lines with its installments; one of them is a ten-thousandth off.
TEST(Installments, OfAVeryLongEntry) {
  constexpr int kLines = 10000;
  auto entry = nlohmann::ordered_json::parse(EntryText("acquisto"));
  auto& lines = entry["RsRCont"]["rows"];
  auto& installments = entry["RsScadenze"]["rows"];
  const auto supplierLine = lines[0];
  const auto installment = installments[0];
  entry["RsRIva"]["rows"].clear();
  lines.clear();
  installments.clear();
  for (int i = 1; i <= kLines; ++i) {
    auto& line = lines.emplace_back(supplierLine);
    line["NumeroRiga"] = i;
    line["IdScadenza"] = i;
    line[i % 2 == 0 ? "ImportoDare" : "ImportoAvere"] = i % 2 == 0 ? i - 1 : i;
    line[i % 2 == 0 ? "ImportoDareVB" : "ImportoAvereVB"] = i % 2 == 0 ? i - 1 : i;
    auto& rata = installments.emplace_back(installment);
    rata["IdScadenza"] = i;
    for (const char* amount : {"ImportoDare", "ImportoDareVB", "ImportoAvere", "ImportoAvereVB"}) {
      rata[amount] = line[amount];
    }
  }
  installments[6788]["ImportoAvereVB"] = "6789.0001";
  OpenedCompany books;
  EXPECT_EQ(Checked(books.siblings, entry.dump()).Run(), "Err: 10489(6789)");
}

TEST(Dates, ControllaCongruenzaDate) {
  RunTable(R"(
<narrow> = UPDATE STDEsercizi SET DataInizio='2024-03-15',
    DataFine='2024-03-15' WHERE CodEsercizio=2024
[giroconto]
first and last day | | <narrow> | True
day before | T.DataCompetenza="2024-03-14" | <narrow> | Err: 10523
day after | T.DataCompetenza="2024-03-16" | <narrow> | Err: 10523
no competence date | T.DataCompetenza=null | Err: 10523
adjustment on its date | T.Rettifica=true;T.DataCompetenza="2024-02-29" | True
adjustment off it | T.Rettifica=true;T.DataCompetenza="2024-02-28" | Err: 10594
adjustment without a date | T.Rettifica=true;T.DataCompetenza=null
    | Error 13 in ControllaCongruenzaDate Err: 10523
document on the day | T.DataDocumento="2024-03-15" | True
document a day later | T.DataDocumento="2024-03-16" | Err: 10496
[vendita]
sale of another month | T.DataDocumento="2024-02-29" | Err: 10497
sale of the month of another year | T.DataDocumento="2022-03-01" | True
sale later and of another month | T.DataDocumento="2024-04-01" | Err: 10496 / 10497
sale without a document date | T.DataDocumento=null;T.Provvisoria=true;T.SezionaleIva=5 | True
[acquisto]
purchase of another month | T.DataDocumento="2023-02-28" | True
[corrispettivi]
receipts of another month | T.DataDocumento="2024-02-29" | True
)");
}

TEST(Dates, TestEsercizioCompetenza) {
  RunTable(R"(
<closing> = UPDATE COGCausaliContabili SET IdTipoMovimento=1;
    UPDATE STDEsercizi SET EsercizioChiuso=1
<opening> = UPDATE COGCausaliContabili SET IdTipoMovimento=2;
    UPDATE STDEsercizi SET EsercizioChiuso=1
<other> = UPDATE COGCausaliContabili SET IdTipoMovimento=3;UPDATE STDEsercizi SET EsercizioChiuso=1
[giroconto]
opening on the first day of a closed year | T.DataCompetenza="2024-01-01" | <opening> | True
opening a day later | T.DataCompetenza="2024-01-02" | <opening> | Err: 10502 / 10504
closing on the last day of a closed year | T.DataCompetenza="2024-12-31" | <closing> | True
closing a day before | T.DataCompetenza="2024-12-30" | <closing> | Err: 10503 / 10504
closing on the first day | T.DataCompetenza="2024-01-01" | <closing> | Err: 10503 / 10504
any other on the first day | T.DataCompetenza="2024-01-01" | <other> | Err: 10504
no year: said once | T.DataCompetenza="2030-01-01" | <opening> | Err: 10523
)");
}

TEST(Dates, CheckPeriodoLiquidato) {
  RunTable(
      R"(
<refers> = INSERT INTO COGPrimeNoteRiferimenti VALUES (100,
<settled> = INSERT INTO COGIvaLiquidazioni (Anno,Periodo,ValoriDefinitivi) VALUES (
[giroconto] | operation="OkModifica"
month | | <refers>'2024-05-31');<settled>2024,5,1) | Err: 10500
next month | | <refers>'2024-06-01');<settled>2024,5,1) | True
another year | | <refers>'2024-05-31');<settled>2023,5,1) | True
first month of a quarter | | <refers>'2023-04-01');<settled>2023,2,1) | Err: 10500
last month of a quarter | | <refers>'2023-12-31');<settled>2023,4,1) | Err: 10500
parameters don't say: monthly | | UPDATE COGParametriIva SET IvaTrimestrale=NULL;
    <refers>'2023-05-31');<settled>2023,5,1) | Err: 10500
a month's number in a quarterly year | | <refers>'2023-05-31');<settled>2023,5,1) | True
not final | | <refers>'2024-05-31');<settled>2024,5,0) | True
does not say | | <refers>'2024-05-31');<settled>2024,5,NULL) | Err: 10500
no parameters | | <refers>'2022-05-31');<settled>2022,5,1) | True
)");
}

TEST(FiscalData, CheckQuadraturaDatiFiscalitaBL) {
  RunTable(R"(
<each> = T.TotImponibileVB=127;T.TotImpostaVB=384;F+{};F1.BeniImponibili=1;F1.ServiziImponibili=2;
    F1.BeniNonImponibili=4;F1.ServiziNonImponibili=8;F1.BeniServiziEsenti=16;
    F1.BeniNonSoggettiIva=32;F1.ServiziNonSoggettiIva=64;F1.ImpostaBeniImponibili=128;
    F1.ImpostaServiziImponibili=256;F1.NoteVariazioneBeni=9
<eachNote> = T.CodCausale="NCA";T.TotImponibileVB=15;T.TotImpostaVB=240;F+{};
    F1.NoteVariazioneBeni=1;F1.NoteVariazioneServizi=2;F1.NoteVariazioneBeniAnnoPrec=4;
    F1.NoteVariazioneServiziAnnoPrec=8;F1.ImpostaNoteVariazioneBeni=16;
    F1.ImpostaNoteVariazioneServizi=32;F1.ImpostaNoteVariazioneBeniAnnoPrec=64;
    F1.ImpostaNoteVariazioneServiziAnnoPrec=128;F1.BeniImponibili=9
[acquisto]
every column | <each> | True
every column of a variation note | <eachNote> | True
two rows | F+{"BeniImponibili":60,"ImpostaBeniImponibili":22};F+{"BeniServiziEsenti":40} | True
taxable off | F+{"BeniImponibili":"100.0001","ImpostaBeniImponibili":22} | Warn: 10727
tax off | F+{"BeniImponibili":100,"ImpostaBeniImponibili":"22.01"} | Warn: 10727
header totals Null | F+{};T.TotImponibileVB=null;T.TotImpostaVB=null | True
one Null, the other off | F+{};T.TotImponibileVB=null | Warn: 10727
no rows | F+{};F1- | Warn: 10727
overflow | F+{"BeniImponibili":"922337203685477.5807","ServiziImponibili":1}
    | Error 6 in CheckQuadraturaDatiFiscalitaBL
)");
}

TEST(Suspension, CheckChiusuraContenstualeSospensione) {
  RunTable(R"(
<entry> = T.InSospensione=true;TmpTableScadenze="Tmp"
<table> = CREATE TABLE Tmp (IdScadenza INTEGER, NrRata SMALLINT, TipoRata SMALLINT,
    LinkApertura INTEGER, RataApertura SMALLINT);INSERT INTO Tmp VALUES (1,2,0,NULL,NULL),
    (1,1,1,9,2), (1,1,1,1,3), (2,1,0,1,2)
<closing> = <table>;INSERT INTO Tmp VALUES (3,1,1,1,2), (4,1,1,1,2)
[acquisto]
closings of other installments | <entry> | <table> | True
closing of an own one, said once | <entry> | <closing> | Err: 10754
entry being edited | T.InSospensione=true;TmpTableScadenze="Tmp";T!EditMode=1 | <closing> | True
not in suspension | TmpTableScadenze="Tmp" | <closing> | True
no table of that name | <entry> | Error -2147217865 in CheckChiusuraContenstualeSospensione
[giroconto]
no register | <entry> | <closing> | True
)");
}

TEST(Protocols, TestProtocollo) {
  // IdPrimaNota, TipoRegIva, SezionaleIva, Protocollo, DataRegistrazione, Provvisoria
  RunTable(R"(
<intra> = T.Intra=true;T.IdLink=7
<saved> = INSERT INTO COGPrimeNoteTeste
    (IdPrimaNota,TipoRegIva,SezionaleIva,Protocollo,DataRegistrazione,Provvisoria) VALUES (
[acquisto]
higher and earlier | | <saved>1,1,1,11,'2024-03-14',0) | Prot: 10506(14/03/2024)(11)
lower and later | | <saved>1,1,1,9,'2024-03-16',NULL) | Prot: 10506(16/03/2024)(9)
the same | | <saved>1,1,1,10,'2024-12-31',0) | Prot: 10506(31/12/2024)(10)
higher on the same day | | <saved>1,1,1,11,'2024-03-15',0) | True
lower on the same day | | <saved>1,1,1,9,'2024-03-15 09:00',0) | True
higher and later | | <saved>1,1,1,11,'2024-03-16',0) | True
lower and earlier | | <saved>1,1,1,9,'2024-03-14',0) | True
between two in order | | <saved>1,1,1,9,'2024-03-14',0), (2,1,1,11,'2024-03-16',0) | True
last year's | | <saved>1,1,1,10,'2023-12-31',0) | True
next year's | | <saved>1,1,1,10,'2025-01-01',0) | True
another register's | | <saved>1,2,1,10,'2024-03-15',0) | True
another section's | | <saved>1,1,2,10,'2024-03-15',0) | True
provisional | | <saved>1,1,1,10,'2024-03-15',1) | True
the entry itself | | <saved>100,1,1,10,'2024-03-15',0) | True
two conflicts, one told | | <saved>1,1,1,10,'2024-03-15',0), (2,1,1,10,'2024-03-15',0)
    | Prot: 10506(15/03/2024)(10)
protocol Null is 0 | T.Protocollo=null | <saved>1,1,1,0,'2024-06-01',0)
    | Err: 10508 Prot: 10506(01/06/2024)(0)
next number, a later saved one | <intra> | <saved>1,2,9,4,'2024-03-16',0)
    | Prot: 10587(16/03/2024)(4)
next number, the entry itself counts | <intra> | <saved>100,2,9,4,'2024-03-16',0)
    | Prot: 10587(16/03/2024)(4)
linked number Null is 0 | <intra> | <saved>7,2,9,NULL,'2024-03-16',0), (8,2,9,5,'2024-03-14',0)
    | Prot: 10587(14/03/2024)(5)
next number in order | <intra> | <saved>1,2,9,4,'2024-03-15',0) | True
next number of the section | <intra> | <saved>1,2,8,4,'2024-03-16',0) | True
next number of the year | <intra> | <saved>1,2,9,4,'2023-12-31',0) | True
linked number, no conflict with itself | <intra> | <saved>7,2,9,4,'2024-03-16',0) | True
linked number twice | <intra> | <saved>7,2,9,4,'2024-03-16',0), (8,2,9,4,'2024-03-15',0)
    | Prot: 10587(15/03/2024)(4)
linked number, not the next one | <intra> | <saved>7,2,9,4,'2024-03-16',0), (8,2,9,5,'2024-03-16',0)
    | True
)");
}

}  // namespace
}  // namespace kal::test
