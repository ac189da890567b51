// Whole checks through the DLL, compiled and by name, beside the core on the same entries: the same
// answers, the same questions to the siblings, the record sets handed back in the same state, and
// nothing of the host's held afterwards.

#include <gtest/gtest.h>

#include "platform/RunTimeError.h"
#include "server/Conversion.h"
#include "server/modClassIdGenerator.h"
#include "tests/windows/Doors.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

SmallCompany* theCompany = nullptr;

class Checks : public testing::Test {
 protected:
  static void SetUpTestSuite() { siblings_ = std::make_unique<SiblingsOfThisProgram>(theCompany); }
  static void TearDownTestSuite() { siblings_.reset(); }

 private:
  static std::unique_ptr<SiblingsOfThisProgram> siblings_;
};
std::unique_ptr<SiblingsOfThisProgram> Checks::siblings_;

struct CheckCase {
  const char* name;
  const char* kind;
  const char* changes;  // of the entry
  const char* rows;     // further rows of the company
  const char* call;
  const char* expected;  // the outcome, in brief
};

const CheckCase kCases[] = {
    {"purchase", "purchase", "", "", "OkAggiorna true true", "True"},
    {"transfer", "transfer", "", "", "OkAggiorna true true", "True"},
    {"unknown template", "purchase", "T.CodCausale=XXX", "", "OkAggiorna true true",
     "False ErrString: è10525"},
    {"template supplied by the host", "purchase", "K!+;K.CodCausale=FTA", "",
     "OkAggiorna true true", "True"},
    {"lines do not balance", "purchase", "C2.ImportoDare=99.9999;C2.ImportoDareVB=99.9999", "",
     "OkAggiorna true true", "False ErrString: è10492 / è10494"},
    {"account is no posting account", "transfer", "C2.CodConto=10", "", "OkAggiorna true true",
     "False ErrString: è10520"},
    {"unknown VAT code", "purchase", "I1.CodIva=99", "", "OkAggiorna true true",
     "False ErrString: è10498"},
    {"intra-group account", "transfer", "C2.CodConto=7001", "", "OkAggiorna true true",
     "False WarnInfragruppoString: è10656 IsInfragruppo: True"},
    {"fiscal data off by the last decimal", "purchase", "T.FiscalitaBL=1;F!+", "",
     "OkAggiorna true true", "False WarnString: è10727"},
    {"fee note", "purchase", "T.IdAnagrafica=21;C1.IdCliFor=21", "", "OkAggiorna true true",
     "False WarnString: è10624"},
    {"accrual on a group account", "purchase", "R!+", "", "OkAggiorna true true",
     "False ErrString: è10660"},
    {"locked month, no document date", "purchase", "T.DataIva=2024-05-15;T.DataDocumento=Null", "",
     "OkAggiorna true true",
     "Error 13 'Errore ( 13 ) - Componente ( Kal_COGCheck ) < CheckDuplicatoNrDocRicevuto < "
     "OkAggiorna' 'Type mismatch: \"\" is not a date' WarnString: è10511"},
    {"protocol out of order", "purchase", "T.Protocollo=2", "", "OkAggiorna true true",
     "False WarnProtocolloString: è10506"},
    {"duplicate number", "purchase", "T.NumeroDocumento=A/3", "", "OkAggiorna true true",
     "False WarnDuplicatoDocString: è10507"},
    {"Null amount", "purchase", "C1.ImportoAvere=Null", "", "OkAggiorna true true",
     "Error 94 'Errore ( 94 ) - Componente ( Kal_COGCheck ) < OkQuadratura < OkAggiorna' 'Invalid "
     "use of Null: a number was wanted'"},
    {"no lines at all", "transfer", "C!", "", "OkAggiorna true true",
     "Error 91 'Errore ( 91 ) - Componente ( Kal_COGCheck ) < QuadraScadenze < OkAggiorna' 'Object "
     "not set: the record set is Nothing'"},
    {"no header", "purchase", "T!", "", "OkAggiorna true true",
     "Error 91 'Errore ( 91 ) - Componente ( Kal_COGCheck ) < modDataBaseUtility.GetField ( Field: "
     "CodCausale )  < OkAggiorna' 'Object not set: the record set is Nothing'"},
    {"installments off", "purchase", "S2.ImportoAvere=60.99;S2.ImportoAvereVB=60.99", "",
     "OkAggiorna true true", "False ErrString: è10489"},
    {"modify", "purchase", "T!None;T.IdPrimaNota=7", "", "OkModifica", "True"},
    {"modify, month printed", "purchase", "T!None;T.IdPrimaNota=7;T.DataRegistrazione=2024-01-10",
     "", "OkModifica", "False ErrString: è10486 / è10487"},
    {"modify, closed by others", "purchase", "T!None;T.IdPrimaNota=300", "", "OkModifica",
     "False WarnString: è10517"},
    {"modify, transmitted", "purchase", "T!None;T.StatoDocPA=3", "", "OkModifica",
     "False ErrString: <Attenzione! Si sta tentando di modificare un documento già trasmesso allo "
     "SDI>"},
    {"delete", "purchase", "T!None;T.IdPrimaNota=7", "", "OkCancella", "True"},
    {"delete by document", "purchase", "T!", "", "OkCancellaDoc 13 31", "True"},
    {"modify by document", "purchase", "T!", "", "OkModificaDoc 13 31", "True"},
    {"unknown document", "purchase", "T!", "", "OkModificaDoc 13 99", "True"},
    {"entry of a document", "purchase", "", "", "LeggiIdPrimaNota 31 13", "7"},
    {"no entry of a document", "purchase", "", "", "LeggiIdPrimaNota 99 13", "-1"},
    {"number received", "purchase", "", "", "CheckDuplicatoNrDocRicevuto A/3 2024-02-01 20 0",
     "True"},
    {"number received, no date", "purchase", "", "", "CheckDuplicatoNrDocRicevuto A/3 '' 20 0",
     "Error 13 'Errore ( 13 ) - Componente ( Kal_COGCheck ) < CheckDuplicatoNrDocRicevuto' 'Type "
     "mismatch: \"\" is not a date'"},
    {"number issued", "purchase", "", "", "CheckDuplicatoNrDocEmesso 1 1 A/3 2024-02-01 9", "True"},
    {"closed year", "purchase", "T.DataCompetenza=2023-12-31", "", "ContabilitaChiusa", "True"},
    {"journal printed", "purchase", "", "", "LibroGiornaleStampato 2024-01-15", "True"},
    {"journal, Null date", "purchase", "", "", "LibroGiornaleStampato null",
     "Error 94 'Errore ( 94 ) - Componente ( Kal_COGCheck ) < LibroGiornaleStampato' 'Invalid use "
     "of Null: a date was wanted'"},
    {"registers printed", "purchase", "", "", "RegistriIvaStampati 2024-01-15 1 1", "True"},
    {"bank batch", "purchase", "T.IdPrimaNota=5", "COGPrimeNoteRCont IdPrimaNota=5 IdScadenza=8",
     "ScadenzeInDistinta", "True"},
    {"collected", "purchase", "T.IdPrimaNota=6", "COGPrimeNoteRCont IdPrimaNota=5 IdScadenza=8",
     "ScadenzeInDistintaIncPag", "False"},
};

// What one run leaves to see: outcome, questions, states of the sets.
struct Outcome {
  std::string shown;
  std::vector<std::string> questions;
  std::string states;
};

// Trails and lists of messages as they are read in a table.
std::string Brief(std::string text) {
  for (const auto& [from, to] : {std::pair{"\r\nKal_COGCheck.", " < "},
                                 std::pair{"KalCOGCheck.", ""}, std::pair{"\r\n", " / "}}) {
    const std::string part = from;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at)) {
      text.replace(at, part.size(), to);
    }
  }
  return text;
}

Outcome RunCase(Way way, const CheckCase& row) {
  SmallCompany company(row.rows);
  theCompany = &company;
  const EntrySets sets = MakeEntry(row.kind, row.changes);
  Outcome outcome;
  {
    const std::unique_ptr<Door> door = Open(way, company);
    for (const auto& [member, set] : sets) {
      door->Assign(member, set);
    }
    outcome.shown = Ask(*door, OperationCall(row.call));
    EXPECT_EQ(LiveDoubles("Field") + LiveDoubles("Fields") + LiveDoubles("Sibling"), 0);
  }
  EXPECT_EQ(LiveDoubles(), 0);
  outcome.questions = company.Questions();
  for (const auto& [member, set] : sets) {
    outcome.states += member + " " + std::to_string(set->Position()) + set->FilterText() + "; ";
  }
  return outcome;
}

TEST_F(Checks, AnswerAsTheCoreDoes) {
  for (const CheckCase& row : kCases) {
    SCOPED_TRACE(row.name);
    const Outcome core = RunCase(Way::Core, row);
    EXPECT_EQ(Brief(core.shown), row.expected);
    for (const Way way : {Way::Early, Way::Late}) {
      SCOPED_TRACE(NameOf(way));
      const Outcome through = RunCase(way, row);
      EXPECT_EQ(through.shown, core.shown);
      EXPECT_EQ(through.questions, core.questions);
      EXPECT_EQ(through.states, core.states);
    }
  }
}

constexpr CheckCase kWhole = {
    "", "purchase", "T.FiscalitaBL=1;F!+;R!+;T.IdDichiarazione=1", "", "OkAggiorna true true", ""};

// Every question to a sibling fails once.
TEST_F(Checks, PassTheErrorsOfSiblingsOn) {
  SmallCompany company;
  theCompany = &company;
  const auto run = [&company](Way way, int failing) {
    const std::unique_ptr<Door> door = Open(way, company);
    for (const auto& [member, set] : MakeEntry(kWhole.kind, kWhole.changes)) {
      door->Assign(member, set);
    }
    company.Questions().clear();
    company.FailAt(failing);
    std::string shown = Ask(*door, OperationCall(kWhole.call));
    company.FailAt(0);
    return shown;
  };
  const std::string free = run(Way::Core, 0);
  const auto questions = static_cast<int>(company.Questions().size());
  ASSERT_GT(questions, 20);
  for (int failing = 1; failing <= questions; ++failing) {
    SCOPED_TRACE(failing);
    const std::string core = run(Way::Core, failing);
    EXPECT_NE(core, free);
    EXPECT_EQ(run(Way::Early, failing), core);
    EXPECT_EQ(run(Way::Late, failing), core);
    EXPECT_EQ(LiveDoubles(), 0);
  }
}

// Every call of the host's objects fails once: the error arrives or leads to another outcome,
// nothing stays held, and the next operation is as if nothing had been.
TEST_F(Checks, SurviveTheErrorsOfTheHost) {
  SmallCompany company;
  theCompany = &company;
  const EntrySets sets = MakeEntry(kWhole.kind, kWhole.changes);
  const std::unique_ptr<Door> door = Open(Way::Early, company);
  for (const auto& [member, set] : sets) {
    door->Assign(member, set);
  }
  const OperationCall call(kWhole.call);
  const std::string free = Ask(*door, call);
  const long before = Calls();
  EXPECT_EQ(Ask(*door, call), free);
  const long calls = Calls() - before;
  const long held = LiveDoubles();
  ASSERT_GT(calls, 200);
  int errors = 0;
  for (long failing = 1; failing <= calls; ++failing) {
    FailCallAt(failing);
    const std::string shown = Ask(*door, call);
    FailCallAt(0);
    errors += shown.find("guasto dell'ospite") != shown.npos ? 1 : 0;
    ASSERT_EQ(LiveDoubles(), held) << "call " << failing << ": " << shown;
    for (const auto& [member, set] : sets) {
      set->Filter("");  // an operation that is cut short leaves its filter
    }
    if (failing % 16 == 0) {
      ASSERT_EQ(Ask(*door, call), free) << "after call " << failing;
    }
  }
  EXPECT_GT(errors, calls * 3 / 4);
}

TEST_F(Checks, ErrorsReachBothKindsOfCallers) {
  SmallCompany company;
  theCompany = &company;
  const ComPtr<IKalCOGCheck> checker = MakeChecker();
  const std::string source =
      "Errore ( 91 ) - Componente ( Kal_COGCheck )\r\n"
      "Kal_COGCheck.modDataBaseUtility.GetField ( Field: CodCausale ) \r\n"
      "Kal_COGCheck.KalCOGCheck.OkAggiorna";
  constexpr auto kObjectNotSet = static_cast<HRESULT>(0x800A005BU);

  VARIANT_BOOL ok = VARIANT_TRUE;
  EXPECT_EQ(checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok), kObjectNotSet);
  EXPECT_EQ(ok, VARIANT_FALSE);
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, error.Put()), S_OK);
  GUID from{};
  ScopedVariant text;
  error->GetGUID(&from);
  error->GetSource(&text->bstrVal);
  text->vt = VT_BSTR;
  EXPECT_TRUE(from == kInterfaceId);
  EXPECT_EQ(CStr(FromVariant(*text)), source);

  DISPID id = 0;
  wchar_t name[] = L"okaggiorna";
  LPOLESTR names = name;
  ASSERT_EQ(checker->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  VARIANT yes[2] = {};
  for (VARIANT& one : yes) {
    one.vt = VT_BOOL;
    one.boolVal = VARIANT_TRUE;
  }
  DISPPARAMS parameters{yes, nullptr, 2, 0};
  EXCEPINFO exception{};
  EXPECT_EQ(checker->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            &*ScopedVariant(), &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, kObjectNotSet);
  EXPECT_EQ(FromBstr(exception.bstrSource), source);
  EXPECT_EQ(FromBstr(exception.bstrDescription), "Object not set: the record set is Nothing");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);

  // A call that succeeds leaves no error behind.
  EXPECT_EQ(checker->put_IsFromCard(VARIANT_TRUE), S_OK);
  EXPECT_EQ(GetErrorInfo(0, error.Put()), S_FALSE);
  EXPECT_EQ(checker->OkModifica(nullptr), E_POINTER);
}

TEST_F(Checks, KeepTheirStateAndNothingElse) {
  SmallCompany company;
  theCompany = &company;
  for (const Way way : {Way::Early, Way::Late}) {
    SCOPED_TRACE(NameOf(way));
    const std::unique_ptr<Door> door = Open(way, company);
    const std::string text = std::string("Tmp\0", 4) + "à€\U0001F4D2";
    door->AssignText(text);
    EXPECT_EQ(CStr(door->Get("TmpTableScadenze")), text);
    EXPECT_EQ(CStr(door->Get("IsInfragruppo")), "False");
    EXPECT_TRUE(Identical(door->Get("ImportoPlafond"), Currency()));
    const EntrySets sets = MakeEntry("purchase", "");
    door->Assign("RsTesta", sets.at("RsTesta"));
    door->Assign("RsTesta", sets.at("RsTesta"));
    EXPECT_EQ(LiveDoubles(), 1);
    door->Assign("RsTesta", nullptr);
    EXPECT_EQ(LiveDoubles(), 0);
  }
  const ComPtr<IDispatch> object = MakeDouble("Anything", {});
  LONG nothing = 5;
  const ComPtr<IKalCOGCheck> checker = MakeChecker();
  EXPECT_EQ(checker->GenericFx(nullptr, object.Get(), &nothing), S_OK);
  EXPECT_EQ(nothing, 0);
  object->AddRef();
  EXPECT_EQ(object->Release(), 1U);
}

}  // namespace
}  // namespace kal::test

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  CoUninitialize();
  return result;
}
