// The save check: its own tests, and the order of everything that it finds.

#include <gtest/gtest.h>

#include <regex>

#include "tests/kit.h"

namespace kal::test {
namespace {

// The codes found, in one order over all result strings.
std::string CodesOf(const Findings& findings) {
  std::string codes;
  for (const Finding& finding : findings.All()) {
    if (finding.code) codes += " " + std::to_string(static_cast<int>(*finding.code));
  }
  return codes;
}

// An entry with many defects, in the order in which they are found: the finding behind the name of
// its string, and the change, or the change and the SQL, that takes it away and leaves the others.
struct Ruin {
  const char* kind;
  std::string changes;
  std::string sql;
  std::vector<std::vector<std::string>> defects;

  [[nodiscard]] std::string Shown() const {
    std::string shown = defects.empty() ? " True" : "";
    for (const std::string name : {"Err", "Warn", "Prot", "Dup", "Group"}) {
      std::string separator = " " + name + ": ";
      for (const auto& defect : defects) {
        if (defect[0].starts_with(name + " ")) {
          shown += separator + Written(defect[0].substr(name.size() + 1));
          separator = " / ";
        }
      }
    }
    return shown.substr(1);
  }

  [[nodiscard]] std::string Codes() const {
    std::string codes;
    for (const auto& defect : defects) {
      const std::string code = defect[0].substr(defect[0].find(' '));
      if (code[1] == '1') codes += code.substr(0, 6);
    }
    return codes;
  }
};

// Repairs from the last defect to the first, down to an entry without findings.
void RunRuin(Ruin ruin) {
  const TestCompany file(ruin.sql);
  for (std::string repaired = "nothing";; ruin.defects.pop_back()) {
    SCOPED_TRACE("repaired: " + repaired);
    company::Company company(file.Text());
    CodedSiblings siblings(company.Siblings());
    Checked checked(siblings, EntryText(ruin.kind, ruin.changes));
    EXPECT_EQ(checked.Run(), ruin.Shown());
    EXPECT_EQ(CodesOf(checked.checker.Findings()), ruin.Codes());
    if (ruin.defects.empty() || testing::Test::HasFailure()) break;
    const std::vector<std::string>& last = ruin.defects.back();
    repaired = last[0];
    ruin.changes += ";" + last[1];
    file.Execute(last.size() > 2 ? last[2] : "");
  }
}

const Ruin& RuinedPurchase() {
  static const Ruin kRuin{
      "acquisto",
      R"(T.CodCausale="PAR";T.SezionaleIva=5;T.IdAnagrafica=21;T.NumeroDocumento="";T.Protocollo=0;
      T.TipoDocumento=4;T.Rettifica=true;T.DataCompetenza="2023-12-30";T.DataIva="2025-01-10";
      T.DataDocumento="2024-03-16";T.DataPlafond="2024-04-20";T.ReverseCharge=true;
      T.IdDichiarazione=2;T.FiscalitaBL=true;T.InSospensione=true;T.TotDocumentoVB="-0.0001";
      C3-;C2-;C1.CodConto="10";C1.TipoRiga=3;C1.IdCliFor=22;I1.Imponibile="22";
      I1.CodIva="";I1.ImponibileVB="0";I1.TotaleVB="23";I+{"CodIva":"22","Imponibile":"500.0001"};
      S1.DataScadenza=null;S1.IdTipologiaPagamento=2;S2.ImportoAvereVB="60.99";
      R+{"CodContoContropartita":""};F+{"BeniImponibili":"1"};TmpTableScadenze="Tmp")",
      R"(CREATE TABLE Tmp (IdScadenza INTEGER, NrRata SMALLINT, TipoRata SMALLINT,
        LinkApertura INTEGER, RataApertura SMALLINT);
      INSERT INTO Tmp VALUES (1,1,0,NULL,NULL), (2,1,1,1,1);
      INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1');
      UPDATE STDParametriAzienda SET Valore='99' WHERE Nome='SezionaleAutofatture';
      INSERT INTO COGBollati VALUES (1,2024,3,1,0), (2,2024,4,0,0);
      INSERT INTO COGBollatiIva (IdBollato,SezionaleIva,AcqStampati,VenStampati) VALUES
        (1,5,1,0), (1,99,0,1), (2,5,1,0);
      UPDATE STDDichiarazioniIntento SET DataFineValidita='2024-03-14';
      INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,IdAnagrafica,
          NumeroDocumento,DataDocumento,DataRegistrazione,Protocollo) VALUES
        (200,1,6,21,'','2024-02-01','2024-02-01',1), (201,1,5,20,'X','2024-04-01','2024-04-01',0),
        (202,2,99,20,'Y','2024-04-01','2024-04-01',5),
        (203,2,99,20,'Z','2024-04-01','2024-03-15',9999999))",
      TableRows(R"(
Warn 10657 | S1.DataScadenza="2024-04-30"
Err 10520(1) | C1.CodConto="3001";R1.CodContoContropartita="3001"
Err 10521(1) | I1.CodIva="22"
Err 10742(1) | I1.ImponibileVB="0.0001"
Err 10489(1) | S2.ImportoAvereVB="61"
Err 10754 | TmpTableScadenze=""
Err 10498() | | INSERT INTO STDIva (CodIva) VALUES ('')
Warn 10590(avere)(acquisto) | C1.TipoRiga=1
Warn 10624 | IsParcella=true
Err 10726 | T.FiscalitaBL=false
Warn <aliquote> | | DELETE FROM STDParametriAzienda WHERE Nome='CodIvaBolli'
Group 10656 | C1.IdCliFor=20
Warn 10734 | C+{"CodConto":"4001","TipoRiga":2,"ImportoDare":122,"ImportoDareVB":122}
Err 10485 | T.NumeroDocumento="F1"
Err 10508 | T.Protocollo=10
Warn 10510 | S1.IdBancaCliente=7
Err 10594 | T.DataCompetenza="2023-12-31"
Err 10496 | T.DataDocumento="2024-03-15"
Err 10509 | | UPDATE STDEsercizi SET ContabilitaChiusa=0
Err 10486 | | UPDATE COGBollati SET GiorContStampato=0
Err 10487 | | DELETE FROM COGBollatiIva WHERE IdBollato=1
Err 10519(2025) | | INSERT INTO COGParametriIva VALUES (2025,0)
Err 10515 | | INSERT INTO COGNumerazioniIva (Anno,TipoRegIva,SezionaleIva) VALUES (2024,2,99)
Err 10588(99) | | UPDATE COGBollatiIva SET VenStampati=0
Err 10516 | T.DataPlafond="2024-05-01"
Err 10659 | R1.CodContoContropartita="10"
Err 10731 | I2.ReverseCharge=true
Err 10504 | | UPDATE STDEsercizi SET EsercizioChiuso=NULL
Warn <plafond> | I2.Imponibile="500"
Warn <validità> | | UPDATE STDDichiarazioniIntento SET DataFineValidita='2024-03-16'
Err 10505 | | INSERT INTO COGNumerazioniIva (Anno,TipoRegIva,SezionaleIva) VALUES (2024,1,5)
Dup 10507 | | UPDATE COGPrimeNoteTeste SET Provvisoria=1 WHERE IdPrimaNota=200
Prot 10506(01/04/2024)(0) | | DELETE FROM COGPrimeNoteTeste WHERE IdPrimaNota=201
Prot 10587(01/04/2024)(5) |
    | UPDATE COGPrimeNoteTeste SET DataRegistrazione='2024-03-15' WHERE IdPrimaNota=202
Warn 10738({dell'autofattura}) |
    | UPDATE COGPrimeNoteTeste SET Protocollo=9999998 WHERE IdPrimaNota=203
Warn 10727 | F1.BeniImponibili=100;F1.ImpostaServiziImponibili=22;T.TotImpostaVB=22
Err 10767 | T.TotDocumentoVB=1
)")};
  return kRuin;
}

TEST(OkAggiornaOrder, Purchase) { RunRuin(RuinedPurchase()); }

TEST(OkAggiornaOrder, Sale) {
  RunRuin({"vendita",
           R"(T.TipoDocumento=4;T.SezionaleIva=2;T.CodPagamento="RB";T.Protocollo=10000000;
           T.Rettifica=true;T.DataCompetenza="2030-03-15";T.DataDocumento="2024-04-01";
           T.ReverseCharge=true;T.IdDichiarazione=1;T.InSospensione=true;T.TotDocumentoVB="-1";
           C3.ImportoDare=5;C3.ImportoDareVB=5;C1.IdCliFor=12;
           C+{"CodConto":"1001","TipoRiga":4,"ImportoDare":1,"ImportoDareVB":1};
           I1.CodIva="10";I1.ImponibileVB="0";I1.TotaleVB="22";F+{};
           S1.DataScadenza=null;S1.IdTipologiaPagamento=2;S1.ImportoDareVB="61.0001")",
           R"(INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1');
           INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15');
           UPDATE STDDichiarazioniIntento SET DataInizioValidita='2024-12-31';
           INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,NumeroDocumento,
               DataDocumento,DataRegistrazione,Protocollo) VALUES
             (200,2,2,'F1','2024-02-01','2024-03-16',11))",
           TableRows(R"(
Warn 10657 | S1.DataScadenza="2024-04-30"
Err 10492 | C2.ImportoAvereVB="127"
Err 10494 | C2.ImportoAvere="127"
Err 10495 | C4-
Warn 10666(1) | I1.ImponibileVB="100"
Err 10489(1) | S1.ImportoDareVB="61"
Warn 10590(dare)(vendita) | C3.TipoRiga=2
Warn <aliquote> | I1.CodIva="DI"
Group 10656 | C1.IdCliFor=10
Warn 10738({del documento}) | T.Protocollo=9999999
Warn 10510 | T.TipoDocumento=3
Warn <effetti> | T.CodPagamento="SOLOIVA"
Warn <cliente> | T.IdAnagrafica=11
Err 10523 | | INSERT INTO STDEsercizi VALUES (2030,'2030-03-01','2030-03-31',0,0)
Err 10594 | T.DataCompetenza="2030-03-31"
Err 10496 | T.DataDocumento="2024-03-15"
Err 10497 | T.DataDocumento="2024-03-16"
Warn 10511(Salvando) | T.DataIva="2024-03-14"
Err 10731 | I1.ReverseCharge=true
Warn <validità> | | UPDATE STDDichiarazioniIntento SET DataInizioValidita='2024-03-15'
Dup 10507 | T.IdPrimaNota=200
Prot 10506(16/03/2024)(11) | T.Protocollo=10000011
    | UPDATE COGPrimeNoteTeste SET DataRegistrazione='2024-03-15'
Warn 10727 | F!
Err 10767 | T.InSospensione=false
)")});
}

TEST(OkAggiornaOrder, WithoutRegister) {
  RunRuin({"giroconto",
           R"(T.CodCausale="APE";T.TipoDocumento=4;T.CodProprieta="P";T.TotDocumentoVB=1;
           T.DataRegistrazione="2030-03-15";T.DataCompetenza="2023-06-15";T.Protocollo=0;
           T.DataDocumento="2030-03-16";T.Rettifica=true;T.ReverseCharge=true;T.FiscalitaBL=true;
           T.IdDichiarazione=1;T.DataIva="2024-03-15";C2-;C1.CodConto="";C1.CodDivisa="";
           C1.ImportoDare=0;C1.ImportoDareVB=0;C1.IdCliFor=12;C1.TipoCliFor=1;C1.IdScadenza=5;
           I+{"CodIva":"ZZ"};R+{"CodContoContropartita":"8888"};
           S+{"IdScadenza":5,"TipoRata":0,"IdTipologiaPagamento":2,"ImportoDareVB":1};
           S1.ImportoDare=0;S1.ImportoAvere=0;S1.ImportoAvereVB=0)",
           R"(INSERT INTO STDParametriAzienda VALUES ('GestisciPNInfragruppo','1');
           INSERT INTO COGPrimeNoteProprieta VALUES ('P',1);
           INSERT INTO COGBlocchiPeriodo VALUES ('2024-01-01','2024-12-31');
           INSERT INTO COGBollati (IdBollato,Anno,Mese,GiorContStampato) VALUES (1,2030,3,1))",
           TableRows(R"(
Warn 10699 | T.TipoDocumento=7
Warn 10657 | S1.DataScadenza="2024-01-01"
Err 10520(1) | C1.CodConto="1001";R1.CodContoContropartita="1*"
Err 10578(1) | C1.CodDivisa="EUR"
Err 10489(1) | S1.ImportoDareVB=0
Err 10498(ZZ) | | INSERT INTO STDIva (CodIva) VALUES ('ZZ')
Err 10726 | T.FiscalitaBL=false
Warn <aliquote> | T.IdDichiarazione=9
Group 10656 | C1.IdCliFor=10
Warn 10734 | C+{"CodConto":"1001","ImportoAvere":0,"ImportoAvereVB":0}
Err 10513 | | INSERT INTO STDEsercizi VALUES (2030,'2030-03-15','2030-03-15',0,0);
    INSERT INTO COGNumerazioniContabili VALUES (2030,1)
Err 10514 | | INSERT INTO COGNumerazioniContabili VALUES (0,1)
Err 10508 | T.Protocollo=1
Warn 10510 | S1.TipoRata=1
Err 10594 | T.DataCompetenza="2023-06-30"
Err 10496 | T.DataDocumento=null
Err 10509 | | UPDATE STDEsercizi SET ContabilitaChiusa=0
Err 10486 | | UPDATE COGBollati SET Mese=4
Err 10660(8888) | C1.CodConto="8888"
Err 10731 | I1.ReverseCharge=true
Err 10502 | T.CodCausale="GEN"
Err 10504 | | UPDATE STDEsercizi SET EsercizioChiuso=0
)")});
}

// The entry itself is saved already, and one before it in each register.
constexpr const char* kSavedBefore = R"(
<save> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,Protocollo,
    NumeroDocumento,IdAnagrafica,DataDocumento,DataRegistrazione) VALUES
<books> = <save> (99,1,1,9,'F0',20,'2024-03-10','2024-03-14'),
    (100,1,1,10,'F1',20,'2024-03-10','2024-03-15'),(99,2,1,9,'F0',10,'2024-03-15','2024-03-14'),
    (100,2,1,10,'F1',10,'2024-03-15','2024-03-15');
)";

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

// Before it is saved again, and before it is modified.
TEST(OkAggiorna, EntriesOfEveryKindPass) {
  const std::string books = kSavedBefore;
  RunTable(books + kKinds);
  RunTable(books +
           std::regex_replace(kKinds, std::regex("\\] \\|"), "] | operation=\"OkModifica\""));
  RunTable(books + R"(
[vendita] | T.Provvisoria=true;T.SezionaleIva=5;T.Protocollo=0;T.NumeroDocumento=null | <books>
provisional | | True
provisional, modified | operation="OkModifica" | False
)");
}

// Saved entries: of the self-invoices' section, and two with the document number P.
const std::string kSaved = R"(
<saved> = INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TipoRegIva,SezionaleIva,Protocollo,
    DataRegistrazione,NumeroDocumento,DataDocumento,IdAnagrafica) VALUES (300,2,9,50,'2024-03-01','L','2024-03-01',9),
    (301,2,9,51,'2024-02-01','M','2024-02-01',9), (302,2,9,9999999,'2024-03-15','N','2024-02-01',9),
    (303,1,3,1,NULL,'P','2024-01-01',20), (304,3,1,1,NULL,'P','2024-01-01',9)
)";

TEST(OkAggiorna, Header) {
  RunTable(kSaved + R"(
[acquisto]
a valid purchase | | True
no template: nothing else | T.CodCausale="fta";T.Protocollo=0 | Err: 10525
the host's template | T.CodCausale="NO";K.TipoRegIva=1;K.Operazione=1;T.Protocollo=0 | Err: 10508
a register for it | T.TipoDocumento=5 | True
VAT lines are lines | C3-;C2-;C1- | True
neither kind of lines | C3-;C2-;C1-;I1- | Warn: 10522
one line, no VAT set | I!;C3-;C2-;C1.ImportoAvere=0;C1.ImportoAvereVB=0;T.TotDocumentoVB=0 | True
number Null | T.NumeroDocumento=null | Err: 10485
provisional: nothing of the definitive | T.Provvisoria=true;T.SezionaleIva=5;T.NumeroDocumento="";
    T.Protocollo=0;T.Intra=true;T.InSospensione=true;T.TotDocumentoVB=-1;C1.TipoCliFor=0;R+{};F+{};
    T.DataDocumento=null;T.DataIva="2025-01-10" | True
provisional: section, protocol, lines in reverse charge | T.Provvisoria=true;T.ReverseCharge=true;
    T.Protocollo=10000000 | Err: 10514 / 10731 Warn: 10738({del documento})
no VAT set in reverse charge | T.ReverseCharge=true;I! | Error 91 in itself
first day of the year | T.DataRegistrazione="2024-01-01";T.DataDocumento="2024-01-01" | True
last day of the year before | T.DataRegistrazione="2023-12-31";T.DataDocumento="2023-12-31"
    | Err: 10505
no document date | T.DataDocumento=null | Error 13 in CheckDuplicatoNrDocRicevuto
not asked for duplicates | T.DataDocumento=null;arguments=[true,false] | True
duplicate purchase | T.NumeroDocumento="P" | <saved> | Dup: 10507
of another supplier | T.NumeroDocumento="P";T.IdAnagrafica=9 | <saved> | True
[vendita]
a valid sale | | True
split customer | T.IdAnagrafica=11;T.Protocollo=10000000 | Warn: 10738({del documento}) / <sezionale>
split customer, no section | T.IdAnagrafica=11;T.SezionaleIva=7 | Err: 10505 Warn: <sezionale>
split section of another year | T.SezionaleIva=2;T.DataRegistrazione="2025-03-31" | Err: 10505
provisional: lines, bank, section | T.Provvisoria=true;T.SezionaleIva=5;T.TipoDocumento=4;
    T.IdAnagrafica=11;S1.IdTipologiaPagamento=2;C3-;C2-;C1.TipoCliFor=0;C1.ImportoDareVB=0;C1.ImportoDare=0
    | Warn: 10734 / 10510 / <sezionale>
[corrispettivi]
valid receipts | | True
duplicate receipts | T.NumeroDocumento="P";T.Protocollo=2 | <saved> | Dup: 10507
receipts of a split customer | T.IdAnagrafica=11 | True
[giroconto]
a valid transfer | | True
group alone | C1.TipoCliFor=1;C1.IdCliFor=12 | <set>('GestisciPNInfragruppo','1') | Group: 10656
document type 5 | T.TipoDocumento=5 | Warn: 10699
document type 6 | T.TipoDocumento=6 | Warn: 10699
document type 13 | T.TipoDocumento=13 | Warn: 10699
document type 14 | T.TipoDocumento=14 | Warn: 10699
no lines | C2-;C1- | Warn: 10522
no line set | C! | Error 91 in QuadraScadenze
number without register | T.NumeroDocumento="" | True
protocol Null | T.Protocollo=null | Err: 10508
protocol of seven digits | T.Protocollo=9999999 | True
protocol of eight digits | T.Protocollo=10000000 | Warn: 10738({del documento})
)");
}

TEST(OkAggiorna, PrintedLockedSelfInvoiced) {
  RunTable(kSaved + R"(
<reverse> = T.ReverseCharge=true;I1.ReverseCharge=true
<activities> = INSERT INTO STDParametriAzienda VALUES ('AttivitaSeparateIva','1');
    INSERT INTO COGParametriIvaAttivitaRighe (Anno,CodAttivita) VALUES (2024,'A1'), (2024,'A9')
<locked> = INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15')
<printed> = INSERT INTO COGBollati (IdBollato,Anno,Mese,GiorContStampato) VALUES (1,2024,3,0);
    INSERT INTO COGBollatiIva (IdBollato,SezionaleIva,AcqStampati,VenStampati) VALUES (1,1,1,1),
    (1,9,0,1)
[acquisto]
locked VAT date | | <locked> | Warn: 10511(Salvando)
no VAT date | T.DataIva=null | <locked> | True
no parameters: the lock is not asked | T.DataIva="2025-03-15"
    | INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2025-03-15') | Err: 10519(2025)
printed registers | <reverse>;T.DataPlafond="2024-03-01" | <printed> | Err: 10487 / 10588(9) / 10516
not asked for | <reverse>;T.DataPlafond="2024-03-01";arguments=[false,true] | <printed> | True
nothing of a provisional one | T.Provvisoria=true;T.SezionaleIva=5;T.DataPlafond="2024-03-01"
    | <locked>;<printed>,(1,5,1,1);UPDATE COGBollati SET GiorContStampato=1;
    UPDATE STDEsercizi SET ContabilitaChiusa=1 | True
section of another activity | T.Intra=true;T.CodAttivita="A1" | <activities> | Err: 10753
of the same activity | T.Intra=true;T.CodAttivita="A9" | <activities> | True
section of its own | T.Intra=true;T.SezionaleIva=2;T.CodAttivita="A9" | <activities> | Err: 10753
by the header's register type | T.Intra=true;T.SezionaleIva=2;T.TipoRegIva=2;T.CodAttivita="A9"
    | <activities> | True
activities not separate | T.Intra=true;T.CodAttivita="A1" | True
no section | T.Intra=true | INSERT INTO STDParametriAzienda VALUES ('AttivitaSeparateIva','1');
    DELETE FROM STDParametriAzienda WHERE Nome='SezionaleAutofatture' | Err: 10515
linked number out of order | T.Intra=true;T.IdLink=300 | <saved> | Prot: 10587(01/02/2024)(51)
next number too large | T.Intra=true | <saved> | Warn: 10738({dell'autofattura})
linked number: no next one | T.Intra=true;T.IdLink=302 | <saved> | True
not for an entry that is no self-invoice | T.IdLink=300 | <saved> | True
not twice | T.Intra=true;T.NoIntraBis=true | <saved> | True
not twice, linked number | T.Intra=true;T.NoIntraBis=true;T.IdLink=300 | <saved> | True
twice in reverse charge | T.Intra=true;T.NoIntraBis=true;<reverse> | <saved>
    | Warn: 10738({dell'autofattura})
[giroconto]
no register, no VAT date | T.DataIva="2024-03-15" | <locked> | True
[vendita]
sales print one register | T.DataPlafond="2024-03-01";<reverse> | <printed> | Err: 10487
sales need none | T.Intra=true;T.CodAttivita="A1" | <activities> | True
)");
}

TEST(OkAggiorna, DeclarationOfIntent) {
  RunTable(R"(
<provisional> = T.Provvisoria=true;T.SezionaleIva=5
<declarations> = UPDATE STDDichiarazioniIntento SET
<purchase> = T.IdDichiarazione=2
<expired> = <declarations> DataFineValidita='2024-03-09'
<sale> = T.IdDichiarazione=1;I1.CodIva="DI"
<usedUp> = <declarations> ImportoPlafond='1000'
<usedUpBefore> = <declarations> ImportoPlafond='1000';
    INSERT INTO COGPrimeNoteTeste (IdPrimaNota,TotImponibile,TotImposta,Provvisoria) VALUES (100,'100','22',0),
    (101,'100','22',1), (102,'100','22',NULL)
[vendita]
valid | <sale> | True
no end is before every date | <sale> | <declarations> DataFineValidita=NULL | True
no start is after every date | <sale> | <declarations> DataInizioValidita=NULL | Warn: <validità>
provisional without a date | <sale>;<provisional>;T.DataDocumento=null | Warn: <vuota>
provisional with a date | <sale>;<provisional> | <expired> | Warn: <validità>
definitive without a date | <sale>;T.DataDocumento=null;arguments=[true,false] | Warn: <validità>
declaration 0 | <provisional>;T.DataDocumento=null
    | <declarations> IdDichiarazione=0 WHERE IdDichiarazione=1 | Warn: <validità>
a supplier's on a sale | <purchase> | <expired> | True
[corrispettivi]
a customer's on receipts | <sale> | <expired> | Warn: <validità>
receipts from the till | T.CodCausale="COC";T.IdDichiarazione=1 | <expired> | True
[acquisto]
variation note | T.CodCausale="NCA";<purchase> | <usedUp> | True
no operation | T.CodCausale="ACQ";<purchase> | <usedUp> | True
used up | <purchase> | <usedUp> | Warn: <plafond>
taxable less tax | <purchase>;I1.Imposta=100 | <usedUp> | True
another code | <purchase>;I1.CodIva="VENT" | <usedUp> | True
what it used when saved | <purchase> | <usedUpBefore> | True
one ten-thousandth more | <purchase>;I1.Imponibile="100.0001" | <usedUpBefore> | Warn: <plafond>
a provisional one used nothing | <purchase>;T.IdPrimaNota=101 | <usedUpBefore> | Warn: <plafond>
nor one that does not say | <purchase>;T.IdPrimaNota=102 | <usedUpBefore> | Warn: <plafond>
reversing by -1 alone | <purchase> | <usedUp>;UPDATE COGCausaliContabili SET SegnoIva=-2 | Warn: <plafond>
last day | <purchase> | <declarations> DataFineValidita='2024-03-10' | True
no plafond | <purchase> | <declarations> ImportoPlafond='1000', TipoDichiarazione=1 | True
no VAT lines | <purchase>;I1- | Error 3021 in itself
no VAT set | <purchase>;I! | Error 91 in itself
)");
}

TEST(OkAggiorna, Totals) {
  RunTable(R"(
<dayBefore> = T.DataRegistrazione="2011-06-30";T.DataDocumento="2011-06-30";T.DataIva="2011-07-01";
    T.DataCompetenza="2011-07-01";T.TotDocumentoVB=3600
<firstDay> = T.DataRegistrazione="2011-07-01";T.DataDocumento="2011-07-01";T.DataIva="2011-07-01";
    T.DataCompetenza="2011-07-01";T.TotDocumentoVB=3600
<in2011> = INSERT INTO STDEsercizi VALUES (2011,'2011-01-01','2011-12-31',0,0);
    INSERT INTO COGParametriIva VALUES (2011,0);
    INSERT INTO COGNumerazioniIva (Anno,TipoRegIva,SezionaleIva) VALUES (2011,3,1)
[corrispettivi]
first day of the threshold | <firstDay> | <in2011> | Warn: 10735
day before | <dayBefore> | <in2011> | True
just below | T.TotDocumentoVB="3599.9999" | True
opted out | T.TotDocumentoVB=3600;T.NonConsiderareAncheSeSopraLaSoglia=true | True
a known customer | T.TotDocumentoVB=3600;T.TipoCliFor=1 | True
provisional | T.TotDocumentoVB=3600;T.Provvisoria=true;T.SezionaleIva=5 | True
fiscal data come first | T.TotDocumentoVB=3600;F+{} | Warn: 10727 / 10735
negative | T.TotDocumentoVB=-1 | True
[vendita]
a sale | T.TotDocumentoVB=3600;T.TipoCliFor=3 | True
[acquisto]
nothing in suspension | T.InSospensione=true;T.TotDocumentoVB=0 | True
[giroconto]
negative without register | T.InSospensione=true;T.TotDocumentoVB=-1 | True
)");
}

// Another entry on the same object: the messages are its own, the template is kept.
TEST(OkAggiorna, UsesOneObjectAgain) {
  OpenedCompany books(RuinedPurchase().sql);
  Checked ruined(books.siblings, EntryText("acquisto", RuinedPurchase().changes));
  EXPECT_EQ(ruined.Run(), RuinedPurchase().Shown());
  EXPECT_EQ(ruined.Run(), RuinedPurchase().Shown());
  const Checked other(books.siblings, EntryText("acquisto", R"(T.CodCausale="NO";R+{};F+{})"));
  for (std::size_t i = 0; i < other.sets.size(); ++i) {
    (ruined.checker.*other.entry.sets[i].set->assign)(other.sets[i]);
  }
  ruined.checker.RsFiscalitaBL(nullptr);
  EXPECT_EQ(ruined.Run(), "Err: 10486 / 10659");
  ruined.checker.RsRisconti(nullptr);
  ruined.checker.RsCausale(nullptr);
  EXPECT_EQ(ruined.Run(), "Err: 10525");
}

TEST(OkAggiorna, HandsRecordSetsBack) {
  RunTable(R"(
[acquisto]
walked to the end and back | T.FiscalitaBL=true;F+{};F+{} | Warn: 10727 @ T 1, I 1, C 1, S 1, F 1
a plafond leaves the VAT lines | T.IdDichiarazione=2;T.ReverseCharge=true | Err: 10731 @ T 1, I end,
    C 1, S 1, F Nothing
an error behind leaves none | T.InSospensione=true;TmpTableScadenze="Tmp"
    | <missed> CheckChiusuraContenstualeSospensione @ C 1, S 1
an error leaves the filters | S2.ImportoAvere=null
    | Error 94 in QuadraScadenzeRiga < QuadraScadenze @ I end,
    C 1 where IdCliFor <> 0 and IdCliFor <> Null and TipoCliFor <> 3 and TipoCliFor <> 0,
    S 2 where IdScadenza = 1
)");
}

}  // namespace
}  // namespace kal::test
