// Whole checks through the DLL, by name, beside the core on the same entries: the same answers, the
// same questions to the siblings, the record sets handed back in the same state, and nothing of the
// host's held afterwards. Calls by name go through the members that compiled callers call.

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
#include <psapi.h>  // which needs the other before it
// clang-format on

#include <cctype>
#include <functional>

#include "checker/KalCOGCheck.h"
#include "server/DispatchSiblings.h"
#include "server/LateBound.h"
#include "tests/windows/Doubles.h"
#include "tests/windows/ScriptedSiblings.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {
namespace {

using namespace std::string_view_literals;

Siblings* theSiblings = nullptr;

const std::pair<const char*, std::function<Variant(KalCOGCheck&)>> kResults[] = {
    {"ErrString", &KalCOGCheck::ErrString},
    {"WarnString", &KalCOGCheck::WarnString},
    {"WarnProtocolloString", &KalCOGCheck::WarnProtocolloString},
    {"WarnDuplicatoDocString", &KalCOGCheck::WarnDuplicatoDocString},
    {"WarnInfragruppoString", &KalCOGCheck::WarnInfragruppoString},
    {"WarnStringModifica", &KalCOGCheck::WarnStringModifica},
    {"IsInfragruppo", &KalCOGCheck::IsInfragruppo},
    {"ImportoPlafond", &KalCOGCheck::ImportoPlafond},
    {"ChiusuraRateInSospensione", &KalCOGCheck::ChiusuraRateInSospensione},
    {"RiaperturaRateInSospensione", &KalCOGCheck::RiaperturaRateInSospensione}};

// What a call answers, and every result that is not empty.
template <class Call, class Get>
std::string AnswerAndResults(Call call, Get get) {
  std::string shown = TextOrError([&] { return CStr(call()); });
  for (const auto& [name, ofCore] : kResults) {
    const std::string value = TextOrError([&] { return CStr(get(name, ofCore)); });
    const bool nothing = value.empty() || value == "False" || value == "0";
    shown += nothing ? "" : std::string(" ") + name + ": " + value;
  }
  return shown;
}

ComPtr<IKalCOGCheck> CheckerOf(ScriptedSiblings& siblings, const EntrySets& sets) {
  theSiblings = &siblings;
  ComPtr<IKalCOGCheck> checker = MakeChecker();
  for (const auto& [member, set] : sets) {
    LateBound(ComPtr<IDispatch>(checker.Get()), "").PutRef(member, MakeRecordsetDouble(set));
  }
  return checker;
}
LateBound AutomationChecker(ScriptedSiblings& siblings, const EntrySets& sets) {
  return {ComPtr<IDispatch>(CheckerOf(siblings, sets).Get()), "nobody"};
}

// Runs "OkAggiorna True True" by names.
std::string Ask(LateBound& checker, std::string_view call) {
  const std::vector<std::string> words = SplitText(call, " ");
  std::vector<Variant> values;
  for (std::size_t at = 1; at < words.size(); ++at) {
    const std::string& word = words[at];
    const auto date = Date::FromIso(word);
    values.push_back(date                            ? Variant(*date)
                     : word == "Null"                ? Variant(Null)
                     : word == "True"                ? Variant(true)
                     : std::isdigit(word.at(0)) != 0 ? Variant(CLng(word))
                                                     : Variant(word == "''" ? "" : word));
  }
  return AnswerAndResults([&] { return checker.Get(words.front(), values); },
                          [&](const char* name, const auto&) { return checker.Get(name); });
}

constexpr const char* kSave = "OkAggiorna True True";

// The same of the core itself, for the check before saving.
std::string AskCore(ScriptedSiblings& siblings, const EntrySets& sets) {
  static const std::map<std::string, void (KalCOGCheck::*)(Unread<RecordsetRef>)> kMembers = {
      {"RsTesta", &KalCOGCheck::RsTesta},
      {"RsRIva", &KalCOGCheck::RsRIva},
      {"RsRCont", &KalCOGCheck::RsRCont},
      {"RsScadenze", &KalCOGCheck::RsScadenze},
      {"RsCausale", &KalCOGCheck::RsCausale},
      {"RsRisconti", &KalCOGCheck::RsRisconti},
      {"RsFiscalitaBL", &KalCOGCheck::RsFiscalitaBL}};
  KalCOGCheck checker(siblings);
  for (const auto& [member, set] : sets) {
    (checker.*kMembers.at(member))(set);
  }
  return AnswerAndResults([&] { return Variant(checker.OkAggiorna(true, true)); },
                          [&](const char*, const auto& ofCore) { return ofCore(checker); });
}

std::string StatesOf(const EntrySets& sets) {
  std::string states;
  for (const auto& [member, set] : sets) {
    states += member + " " + std::to_string(set->Position()) + set->FilterText() + "; ";
  }
  return states;
}

struct CheckCase {
  const char* name;
  const char* changes;       // of the entry
  const char* expected;      // with " / " for each new line
  const char* further = "";  // answers of the siblings
  const char* call = kSave;
};

// clang-format off
const CheckCase kCases[] = {
    {"purchase", "", "True"},
    {"template supplied by the host", "T.CodCausale=XXX;K+;K.CodCausale=XXX", "True"},
    {"intra-group account", "C2.CodConto=7001", "False WarnInfragruppoString: è10656 IsInfragruppo: True"},
    {"fiscal data off by the last decimal", "T.FiscalitaBL=1;F+", "False WarnString: è10727"},
    {"accrual on a group account", "R+", "False ErrString: è10660"},
    {"plafond", "T.IdDichiarazione=1;T.DataPlafond=2024-03-15", "True ImportoPlafond: 100", "Open STDDichiarazioniIntento -> CodIva:t=22 TipoDichiarazione:i=1 ImportoPlafond:m=500 Importo:m=0 DataInizioValidita:d=2024-01-01 DataFineValidita:d=2024-12-31"},
    {"locked period, no document date", "T.DataDocumento", "Error 13 'Errore ( 13 ) - Componente ( Kal_COGCheck ) / Kal_COGCheck.KalCOGCheck.CheckDuplicatoNrDocRicevuto / Kal_COGCheck.KalCOGCheck.OkAggiorna' 'Type mismatch: \"\" is not a date' WarnString: è10511", "IsLocked -> b=1"},
    {"protocol out of order", "", "False WarnProtocolloString: è10506", "Open COGPrimeNoteTeste 100 -> Protocollo:l=12 DataRegistrazione:d=2024-02-10"},
    {"duplicate number", "", "False WarnDuplicatoDocString: è10507", "Open COGPrimeNoteTeste 2024 F1 -> IdPrimaNota:l=7"},
    {"Null amount", "C1.ImportoAvere", "Error 94 'Errore ( 94 ) - Componente ( Kal_COGCheck ) / Kal_COGCheck.KalCOGCheck.OkQuadratura / Kal_COGCheck.KalCOGCheck.OkAggiorna' 'Invalid use of Null: a number was wanted'"},
    {"no lines at all", "C!", "Error 91 'Errore ( 91 ) - Componente ( Kal_COGCheck ) / Kal_COGCheck.KalCOGCheck.QuadraScadenze / Kal_COGCheck.KalCOGCheck.OkAggiorna' 'Object not set: the record set is Nothing'"},
    {"registers and duplicates not asked", "", "True", "Open COGPrimeNoteTeste 2024 F1 -> IdPrimaNota:l=7", "OkAggiorna 0 0"},
    {"modify", "T=0;T.IdPrimaNota=7", "True", "", "OkModifica"},
    {"modify, month printed", "T=0", "False ErrString: è10486 / è10487", "Open COGBollati -> GiorContStampato:b=1 RiepilogoStampato:b=1", "OkModifica"},
    {"delete, in other letters", "T=0", "True", "", "okCANCELLA"},
    {"delete by document", "T!", "True", "", "OkCancellaDoc 13 31"},
    {"modify by document", "T!", "True", "", "OkModificaDoc 13 31"},
    {"number received", "", "True", "Open COGPrimeNoteTeste 2024 A/3 0 9 20 -> IdPrimaNota:l=7", "CheckDuplicatoNrDocRicevuto A/3 2024-02-01 20 9"},
    {"number issued", "", "True", "Open COGPrimeNoteTeste 2024 A/3 -> IdPrimaNota:l=7", "CheckDuplicatoNrDocEmesso 2 1 A/3 2024-02-01 9"},
    {"closed year", "", "True", "FiscalYearField ContabilitaChiusa -> b=1", "ContabilitaChiusa"},
    {"registers printed", "", "True", "Open COGBollati 2024 1 -> IdBollato:l=5 RiepilogoStampato:b=0;Open COGBollatiIva 5 4 -> VenStampati:b=1", "RegistriIvaStampati 2024-01-15 2 4"},
    {"bank batch", "T.IdPrimaNota=5", "True", "Open COGPrimeNoteRCont 0 5 -> IdScadenza:l=8", "ScadenzeInDistinta"},
    {"collected", "T.IdPrimaNota=6", "True", "Open COGPrimeNoteRCont 23 24 0 6 -> IdScadenza:l=8", "ScadenzeInDistintaIncPag"},
};
// clang-format on

TEST(Checks, AnswerAsTheCoreDoes) {
  for (const CheckCase& row : kCases) {
    SCOPED_TRACE(row.name);
    ScriptedSiblings siblings(row.further);
    const EntrySets sets = MakeEntry(row.changes);
    std::string shown = [&] {
      LateBound checker = AutomationChecker(siblings, sets);
      return Ask(checker, row.call);
    }();
    EXPECT_EQ(LiveDoubles(), 0);
    if (row.call == kSave) {
      ScriptedSiblings asked(row.further);
      const EntrySets own = MakeEntry(row.changes);
      EXPECT_EQ(shown, AskCore(asked, own));
      EXPECT_EQ(siblings.Questions(), asked.Questions());
      EXPECT_EQ(StatesOf(sets), StatesOf(own));
    }
    for (std::size_t at = 0; (at = shown.find("\r\n", at)) != shown.npos;) {
      shown.replace(at, 2, " / ");
    }
    EXPECT_EQ(shown, row.expected);
  }
}

// An entry that asks many siblings and walks all of its record sets.
constexpr const char* kManyQuestions = "T.FiscalitaBL=1;F+;R+;T.IdDichiarazione=1";

// Every question to a sibling fails once.
TEST(Checks, PassTheErrorsOfSiblingsOn) {
  ScriptedSiblings siblings;
  const std::string free = AskCore(siblings, MakeEntry(kManyQuestions));
  const auto questions = static_cast<int>(siblings.Questions().size());
  ASSERT_GT(questions, 30);
  for (int failing = 1; failing <= questions; ++failing) {
    ScriptedSiblings native(failing);
    const std::string core = AskCore(native, MakeEntry(kManyQuestions));
    EXPECT_NE(core, free) << failing;
    ScriptedSiblings behindAutomation(failing);
    LateBound checker = AutomationChecker(behindAutomation, MakeEntry(kManyQuestions));
    EXPECT_EQ(Ask(checker, kSave), core) << failing;
  }
  EXPECT_EQ(LiveDoubles(), 0);
}

// Every call of the host's objects fails once: the error arrives or leads to another outcome,
// nothing stays held but the record sets, and the next operation is as if nothing had been.
TEST(Checks, SurviveTheErrorsOfTheHost) {
  ScriptedSiblings siblings;
  const EntrySets sets = MakeEntry(kManyQuestions);
  LateBound checker = AutomationChecker(siblings, sets);
  const std::string free = Ask(checker, kSave);
  const long before = counts.calls;
  EXPECT_EQ(Ask(checker, kSave), free);
  const long calls = counts.calls - before;
  const long held = LiveDoubles();  // the record sets, and that of the posting template
  EXPECT_EQ(held, static_cast<long>(sets.size()) + 1);
  ASSERT_GT(calls, 200);
  int errors = 0;
  for (long failing = 1; failing <= calls; ++failing) {
    counts.eventAt = failing;
    const std::string shown = Ask(checker, kSave);
    counts.eventAt = 0;
    errors += shown.find("guasto dell'ospite") != shown.npos ? 1 : 0;
    ASSERT_EQ(LiveDoubles(), held) << "call " << failing << ": " << shown;
    for (const auto& [member, set] : sets) {
      set->Filter("");  // an operation that is cut short leaves its filter
    }
    if (failing % 16 == 0) {
      ASSERT_EQ(Ask(checker, kSave), free) << "after call " << failing;
    }
  }
  EXPECT_GT(errors, calls * 3 / 4);
}

// At every call of the host's objects the host comes back: it checks again and asks for a result,
// assigns other record sets, or lets go of the checker, which all lets go of what is in use.
TEST(Checks, SurviveAHostThatComesBack) {
  constexpr VARIANT_BOOL kYes = VARIANT_TRUE;
  using Event = void (*)(IKalCOGCheck*);
  const Event events[] = {
      [](IKalCOGCheck* it) {
        VARIANT_BOOL ok = VARIANT_FALSE;
        ScopedVariant text = ToVariant("");
        it->OkAggiorna(kYes, kYes, &ok);
        it->get_ErrString(&text->bstrVal);
      },
      [](IKalCOGCheck* it) {
        it->putref_RsTesta(MakeRecordsetDouble(MakeEntry("").at("RsTesta")).Get());
        it->putref_RsRCont(nullptr);
        it->putref_RsRIva(nullptr);
        it->putref_RsScadenze(nullptr);
      },
      [](IKalCOGCheck* it) { it->Release(); }};
  for (const Event& event : events) {
    auto at = static_cast<long>(&event - events);
    for (bool came = true; came; came = std::exchange(counts.eventAt, 0) == 0) {
      ScriptedSiblings siblings;
      IKalCOGCheck* const it = CheckerOf(siblings, MakeEntry(kManyQuestions)).Detach();
      const auto usual = std::exchange(counts.event, [&] { event(it); });
      counts.eventAt = at += 3;
      VARIANT_BOOL ok = VARIANT_FALSE;
      it->OkAggiorna(kYes, kYes, &ok);
      counts.event = usual;
      if (counts.eventAt > 0 || event != events[2]) {
        EXPECT_EQ(it->Release(), 0U);
      }
      ASSERT_EQ(LiveDoubles(), 0) << "call " << at;
    }
    EXPECT_GT(at, 200);
  }
}

constexpr Selection kEveryPart =
    Selection()
        .Option(11)
        .Select("A, B")
        .Select("C")
        .From("? as P")
        .JoinWith(JoinKind::LeftOuter, "Q as R")
        .On("P.A", "R.A")
        .OnAnyOf({{{"R.B"}}, {{"R.B", CompareWith::Less}, {"R.C"}}})
        .JoinWith(JoinKind::Inner, "S")
        .On("S.A", "R.A")
        .Where("P.D", CompareWith::NotEqual)
        .WhereLiteral("P.E Is Null")
        .WhereAnyOf({{{"P.F", CompareWith::LessOrEqual}}, {{"P.G", CompareWith::Greater}}})
        .Where("P.H", CompareWith::GreaterOrEqual);

// Calls every member once, with a value of every kind.
std::string AskEverything(Siblings& siblings) {
  BorrowedSets sets;
  const auto rows = std::make_shared<MemoryRecordset>(MakeTable({"A:m=99.9999"}));
  const Variant compared[] = {1, 2, "3", Null, 5.5, true, Currency::FromUnits(1)};
  const Query query = Query::Of<kEveryPart>(compared, "Tmp");
  std::string heard;
  std::unique_ptr<SiblingState> state;
  for (std::size_t at = 0; at < kMembers.size(); ++at) {
    const MemberInfo& info = kMembers[at];
    if (at == 0 || info.component != kMembers[at - 1].component) {
      siblings.Ask(
          {.component = info.component, .member = Member::Create, .values = {}, .state = state});
    }
    Variant values[] = {"A",  "è", std::int16_t{3},         Date::FromYmd(2024, 3, 15).value(),
                        1.5F, 2.5, Currency::FromUnits(-1), true,
                        Null, 7};
    const std::size_t count = info.kind == CallKind::Put      ? 1
                              : info.kind == CallKind::PutSet ? 0
                                                              : std::size(values);
    const SiblingAnswer answer = siblings.Ask(
        {.component = info.component,
         .member = static_cast<Member>(at),
         .values = std::span(values).first(count),
         .query = info.kind == CallKind::Open ? &query : nullptr,
         .set = info.kind == CallKind::PutSet ? sets.Borrow(MakeRecordsetDouble(rows)) : nullptr,
         .state = state});
    heard += Shown(answer.rows ? answer.rows->Fields("A").Value() : answer.value) + " ";
  }
  return heard;
}

TEST(Checks, AskEveryMemberOfTheSiblings) {
  constexpr const char* kFurther = "Open Tmp -> A:t=x;Execute A -> l=2;IsLocked -> f=0.5";
  ScriptedSiblings native(kFurther);
  ScriptedSiblings behindAutomation(kFurther);
  theSiblings = &behindAutomation;
  const std::string heard = AskEverything(native);
  {
    BorrowedSets sets;
    DispatchSiblings dispatched(sets);
    EXPECT_EQ(AskEverything(dispatched), heard);
  }
  EXPECT_TRUE(heard.ends_with(" 9:99.9999 12:x 5:2 ")) << heard;
  EXPECT_EQ(behindAutomation.Questions(), native.Questions());
  EXPECT_EQ(native.Questions().size(), kMembers.size());
  EXPECT_EQ(LiveDoubles(), 0);
  EXPECT_EQ(native.Questions().at(kMembers.size() - 2),
            "Open 12:Tmp 1 2 3  5.5 True 0.0001  12:Option 5:11 12:AddFields 12:A, B "
            "12:AddFields 12:C 12:AddTable 12:Tmp as P 12:AddJoin 4:2 12:Q as R "
            "12:AddColumnPair 12:P.A 12:R.A 12:BeginAnyOf 12:BeginAlternative "
            "12:AddCondition 12:R.B 12:= 5:1 12:BeginAlternative 12:AddCondition 12:R.B 12:< 5:2 "
            "12:AddCondition 12:R.C 12:= 12:3 12:EndAnyOf 12:AddJoin 4:1 12:S "
            "12:AddColumnPair 12:S.A 12:R.A 12:BeginWhere 12:AddCondition 12:P.D 12:<> 1: "
            "12:AddLiteral 12:P.E Is Null 12:BeginAnyOf 12:BeginAlternative "
            "12:AddCondition 12:P.F 12:<= 8:5.5 12:BeginAlternative "
            "12:AddCondition 12:P.G 12:> 2:True 12:EndAnyOf 12:AddCondition 12:P.H 12:>= 9:0.0001");
}

// Texts pass unchanged: with a zero, beyond 16 bits, halves of pairs, an odd number of bytes.
TEST(Checks, GiveTextsBackAsTheyWere) {
  const ComPtr<IKalCOGCheck> checker = MakeChecker();
  for (const std::string_view bytes :
       {"T\0\0\0p\0"sv, "\x3D\xD8\xD2\xDC"sv, "\xD2\xDC\x3D\xD8"sv, "\x3D\xD8\xAC ab"sv, "\xFF"sv,
        "\xFF\xDB\xFF\xDF\xFF\xFF\x80"sv}) {
    ScopedVariant text;
    text->vt = VT_BSTR;
    text->bstrVal = SysAllocStringByteLen(bytes.data(), static_cast<UINT>(bytes.size()));
    EXPECT_EQ(checker->put_TmpTableScadenze(text->bstrVal), S_OK);
    ScopedVariant read = ToVariant("");
    EXPECT_EQ(checker->get_TmpTableScadenze(&read->bstrVal), S_OK);
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(read->bstrVal),
                               SysStringByteLen(read->bstrVal)),
              bytes);
  }
  EXPECT_EQ(checker->get_ErrString(nullptr), E_POINTER);
  // A single byte within a text is a character of it, what is no UTF-8 is replaced.
  EXPECT_TRUE(ToUtf16("\xF4\x90\x82\x80z\xC3") == L"\u0080z\uFFFD");
}

// By name, an object among the arguments is read before the member is called, and may let go of the
// checker: that lives until the call by name ends.
TEST(Checks, StayWhileAnArgumentIsRead) {
  ScriptedSiblings siblings;
  IKalCOGCheck* const checker = CheckerOf(siblings, {}).Detach();
  const auto number = MakeDouble("Number", {Answers("Value", DISPATCH_PROPERTYGET, 0, [&](auto) {
                                   checker->Release();
                                   return 31;
                                 })});
  VARIANT arguments[2] = {};  // the last one first
  arguments[0].vt = VT_I2;
  arguments[1].vt = VT_DISPATCH;
  arguments[1].pdispVal = number.Get();
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  ScopedVariant answer;
  constexpr DISPID kLeggiIdPrimaNota = 31;
  EXPECT_EQ(checker->Invoke(kLeggiIdPrimaNota, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                            &parameters, &*answer, nullptr, nullptr),
            S_OK);
  EXPECT_TRUE(Identical(FromVariant(*answer), -1));
  EXPECT_EQ(LiveDoubles(), 1);
}

std::size_t MemoryInUse() {
  PROCESS_MEMORY_COUNTERS counters{};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return counters.PagefileUsage;
}

// 10,000 entries that end in an error of a sibling or of the host: what one of them left behind
// would show.
TEST(Checks, HoldNoMemoryAfterErrors) {
  constexpr std::size_t kTolerance = 300000;  // some 40 bytes an entry
  const EntrySets sets = MakeEntry(kManyQuestions);
  ScriptedSiblings siblings;
  std::size_t before = 0;
  int errors = 0;
  for (int entry = 0; errors < 10000; ++entry) {
    const ComPtr<IKalCOGCheck> checker = CheckerOf(siblings, sets);
    siblings.FailAt(1 + entry % 8);
    counts.eventAt = entry % 2 == 0 ? 0 : 1 + entry % 40;
    VARIANT_BOOL ok = VARIANT_FALSE;
    errors += FAILED(checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok)) ? 1 : 0;
    counts.eventAt = 0;
    for (const auto& [member, set] : sets) {
      set->Filter("");
    }
    before = entry == 3000 ? MemoryInUse() : before;
  }
  EXPECT_LT(MemoryInUse(), before + kTolerance);
}

// What a sibling fails with, when it is created or when it is called, arrives as the number that
// the language has for it, and the trail says the same number.
TEST(Checks, GiveTheNumbersOfTheLanguage) {
  static struct Refusing final : Siblings {
    SiblingAnswer Ask(const SiblingCall& call) override {
      if (atCreation || call.member != Member::Create) {
        throw RunTimeError(number, "Ospite", "guasto");
      }
      return {};
    }
    bool atCreation = false;
    std::int32_t number = 0;
  } refusing;
  theSiblings = &refusing;
  constexpr std::pair<std::uint32_t, std::int32_t> kNumbers[] = {
      {E_INVALIDARG, 5},         {E_OUTOFMEMORY, 7},        {DISP_E_ARRAYISLOCKED, 10},
      {DISP_E_TYPEMISMATCH, 13}, {E_ACCESSDENIED, 70},      {REGDB_E_CLASSNOTREG, 429},
      {E_NOINTERFACE, 430},      {DISP_E_UNKNOWNNAME, 438}, {DISP_E_UNKNOWNLCID, 447},
      {DISP_E_BADVARTYPE, 458},  {0x800706BA, 462},         {0x8007007E, -2147024770},
      {0x800A0CC1, 3265},        {0x800AFFFF, 65535},       {0x80040E14, -2147217900},
      {70000, -2147467259}};
  for (const auto& [result, number] : kNumbers) {
    for (const bool atCreation : {true, false}) {
      refusing.number = static_cast<std::int32_t>(result);
      refusing.atCreation = atCreation;
      const ComPtr<IKalCOGCheck> checker = MakeChecker();
      VARIANT_BOOL ok = VARIANT_FALSE;
      const HRESULT seen = checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok);
      ComPtr<IErrorInfo> error;
      GetErrorInfo(0, error.Put());
      GUID from{};
      ScopedVariant source = ToVariant("");
      error->GetGUID(&from);
      error->GetSource(&source->bstrVal);
      EXPECT_TRUE(from == kInterfaceId);
      EXPECT_EQ(seen, number < 0 ? number : static_cast<HRESULT>(0x800A0000U) + number);
      EXPECT_EQ(CStr(FromVariant(*source)), "Errore ( " + std::to_string(number) +
                                                " ) - Componente ( " +
                                                (atCreation ? "Kal_COGCheck" : "Ospite") +
                                                " )\r\nKal_COGCheck.KalCOGCheck.OkAggiorna");
      // What nobody asks about is gone with the next call.
      checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok);
      EXPECT_EQ(checker->put_IsFromCard(VARIANT_TRUE), S_OK);
      EXPECT_EQ(GetErrorInfo(0, error.Put()), S_FALSE);
    }
  }
}

BSTR STDAPICALLTYPE NoMemory(LPCSTR, UINT) { return nullptr; }

// A result's text that finds no memory is an error of its operation.
TEST(Checks, NameTheTextThatFindsNoMemory) {
  ScriptedSiblings siblings;
  LateBound checker = AutomationChecker(siblings, {});
  void*& place = PlaceOfImport("oleaut32.dll", "SysAllocStringByteLen");
  void* const usual = std::exchange(place, reinterpret_cast<void*>(&NoMemory));
  for (const char* const name :
       {"TmpTableScadenze", "IsInfragruppo", "WarnStringModifica", "WarnString", "ErrString",
        "WarnDuplicatoDocString", "WarnProtocolloString", "WarnInfragruppoString"}) {
    EXPECT_EQ(TextOrError([&] { return CStr(checker.Get(name)); }),
              std::string("Error 7 'Errore ( 7 ) - Componente ( Kal_COGCheck )\r\n"
                          "Kal_COGCheck.KalCOGCheck.") +
                  name + "' 'Out of memory'");
  }
  place = usual;
}

}  // namespace
}  // namespace kal::test

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&argc, argv);
  kal::test::RegisterInThisProgram(kal::test::theSiblings);
  const int result = RUN_ALL_TESTS();
  kal::test::DeleteClasses();
  CoUninitialize();
  return result;
}
