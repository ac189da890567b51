// Checks through the DLL among hosts and siblings that fail, come back or let go. That decisions
// are the same ones as on the command line is tried with recordings (play.cpp).

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
#include <psapi.h>  // which needs the other before it
// clang-format on

#include "tests/windows/Door.h"
#include "tests/windows/Doubles.h"
#include "tests/windows/Recorded.h"

namespace kal::test {
namespace {

using namespace std::string_view_literals;

Siblings* theSiblings = nullptr;

// An entry that asks many siblings and walks many record sets.
constexpr const char* kManyQuestions =
    "Fiscalità privilegiata che non quadra, con codice non ammesso";

const Variant kSave[] = {true, true};

ComPtr<IKalCOGCheck> CheckerOf(Sample& sample) {
  theSiblings = &sample;
  ComPtr<IKalCOGCheck> checker = MakeChecker();
  Door(Binding::Early, checker).Hand(sample.recorded);
  return checker;
}

// What the check before saving answers, and the texts that it leaves.
std::string Ask(Door& checker) {
  const std::string answer = TextOrError([&] { return CStr(checker.Ask("OkAggiorna", kSave)); });
  return answer + " " + CStr(checker.Ask("ErrString")) + CStr(checker.Ask("WarnString"));
}

// Every call of the host's objects fails once: the error arrives or leads to another outcome,
// nothing stays held but the record sets, and the next operation is as if nothing had been.
TEST(Checks, SurviveTheErrorsOfTheHost) {
  Sample sample(kManyQuestions);
  const auto& sets = sample.recorded.sets;
  Door checker(Binding::Late, CheckerOf(sample));
  const std::string free = Ask(checker);
  const long before = counts.calls;
  EXPECT_EQ(Ask(checker), free);
  const long calls = counts.calls - before;
  const long held = LiveDoubles();  // the record sets, and that of the posting template
  EXPECT_EQ(held, static_cast<long>(sets.size()) + 1);
  ASSERT_GT(calls, 200);
  int errors = 0;
  for (long failing = 1; failing <= calls; ++failing) {
    counts.eventAt = failing;
    const std::string shown = Ask(checker);
    counts.eventAt = 0;
    errors += shown.find("guasto dell'ospite") != shown.npos ? 1 : 0;
    ASSERT_EQ(LiveDoubles(), held) << "call " << failing << ": " << shown;
    for (const auto& set : sets) {
      set->Filter("");  // an operation that is cut short leaves its filter
    }
    if (failing % 16 == 0) {
      ASSERT_EQ(Ask(checker), free) << "after call " << failing;
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
        it->putref_RsTesta(MakeRecordsetDouble(Sample().recorded.sets[0]).Get());
        it->putref_RsRCont(nullptr);
        it->putref_RsRIva(nullptr);
        it->putref_RsScadenze(nullptr);
      },
      [](IKalCOGCheck* it) { it->Release(); }};
  for (const Event& event : events) {
    auto at = static_cast<long>(&event - events);
    for (bool came = true; came; came = std::exchange(counts.eventAt, 0) == 0) {
      Sample sample(kManyQuestions);
      IKalCOGCheck* const it = CheckerOf(sample).Detach();
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
  Sample sample("Numero della prima nota di un documento");
  const std::vector<Variant>& called = sample.recorded.entry.arguments;
  IKalCOGCheck* const checker = CheckerOf(sample).Detach();
  const auto number = MakeDouble("Number", {Answers("Value", DISPATCH_PROPERTYGET, 0, [&](auto) {
                                   checker->Release();
                                   return called[0];
                                 })});
  VARIANT arguments[2] = {};  // the last one first
  arguments[0].vt = VT_I2;
  arguments[0].iVal = CInt(called[1]);
  arguments[1].vt = VT_DISPATCH;
  arguments[1].pdispVal = number.Get();
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  ScopedVariant answer;
  constexpr DISPID kLeggiIdPrimaNota = 31;
  EXPECT_EQ(checker->Invoke(kLeggiIdPrimaNota, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                            &parameters, &*answer, nullptr, nullptr),
            S_OK);
  EXPECT_TRUE(Identical(FromVariant(*answer), 2009));
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
  Sample sample(kManyQuestions);
  std::size_t before = 0;
  int errors = 0;
  for (int entry = 0; errors < 10000; ++entry) {
    const ComPtr<IKalCOGCheck> checker = CheckerOf(sample);
    sample.failAt = 1 + entry % 8;
    counts.eventAt = entry % 2 == 0 ? 0 : 1 + entry % 40;
    VARIANT_BOOL ok = VARIANT_FALSE;
    errors += FAILED(checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok)) ? 1 : 0;
    counts.eventAt = 0;
    for (const auto& set : sample.recorded.sets) {
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
      const std::string shown = std::to_string(number);
      const ComPtr<IKalCOGCheck> checker = MakeChecker();
      const std::string error =
          TextOrError([&] { return CStr(Door(Binding::Early, checker).Ask("OkAggiorna", kSave)); });
      EXPECT_TRUE(error.starts_with(
          "Error " + shown + " 'Errore ( " + shown + " ) - Componente ( " +
          (atCreation ? "Kal_COGCheck" : "Ospite") + " )\r\nKal_COGCheck.KalCOGCheck.OkAggiorna'"))
          << error;
      // What nobody asks about is gone with the next call.
      VARIANT_BOOL ok = VARIANT_FALSE;
      ComPtr<IErrorInfo> left;
      EXPECT_TRUE(FAILED(checker->OkAggiorna(VARIANT_TRUE, VARIANT_TRUE, &ok)));
      EXPECT_EQ(checker->put_IsFromCard(VARIANT_TRUE), S_OK);
      EXPECT_EQ(GetErrorInfo(0, left.Put()), S_FALSE);
    }
  }
}

BSTR STDAPICALLTYPE NoMemory(LPCSTR, UINT) { return nullptr; }

// A result's text that finds no memory is an error of its operation.
TEST(Checks, NameTheTextThatFindsNoMemory) {
  Sample sample;
  Door checker(Binding::Late, CheckerOf(sample));
  void*& place = PlaceOfImport("oleaut32.dll", "SysAllocStringByteLen");
  void* const usual = std::exchange(place, reinterpret_cast<void*>(&NoMemory));
  for (const char* const name :
       {"TmpTableScadenze", "IsInfragruppo", "WarnStringModifica", "WarnString", "ErrString",
        "WarnDuplicatoDocString", "WarnProtocolloString", "WarnInfragruppoString"}) {
    EXPECT_EQ(TextOrError([&] { return CStr(checker.Ask(name)); }),
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
