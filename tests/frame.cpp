// The frame: messages, trails, field access, the members that only keep state.

#include <gtest/gtest.h>

#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "platform/MemoryRecordset.h"
#include "tests/kit.h"

namespace kal {
namespace {

// A status component of one text, and settings that are all missing. Either can be missing or fail.
class FakeSiblings : public Siblings {
 public:
  SiblingAnswer Ask(const SiblingCall& call) override {
    if (lacks) NoSuchComponent(call.component);
    if (fails) throw RunTimeError(70, "KalStatus", "Permission denied");
    switch (call.member) {
      case Member::KalStatus_GetMessage:
        return {text};
      case Member::KalStatus_TranslateFromDict: {
        std::string all;
        for (const Variant& value : call.values) all += CStr(value);
        return {all};
      }
      default:
        return {Null};
    }
  }

  std::string text;
  bool lacks = false;
  bool fails = false;
};

// What the call raises: "number|source|description", or "nothing".
template <class Call>
std::string Raised(Call&& call) {
  try {
    call();
  } catch (const RunTimeError& error) {
    return std::to_string(error.Number()) + "|" + error.Source() + "|" + error.Description();
  }
  return "nothing";
}

// The same without the description.
template <class Call>
std::string TrailOf(Call&& call) {
  const std::string raised = Raised(call);
  return raised.substr(0, raised.rfind('|'));
}

TEST(Messages, FillPlaceholders) {
  const struct {
    const char* name;
    const char* text;
    std::initializer_list<Variant> parameters;
    const char* expected;
  } kRows[] = {
      {"both", "a %s b %s", {"x", "y"}, "a x b y"},
      {"parameters missing", "%s-%s", {"x"}, "x-%s"},
      {"a parameter too many", "%s-%s", {"x", "y", "z"}, "x-y"},
      {"a parameter with a placeholder", "%s-%s", {"%s", "y"}, "y-%s"},
      {"no placeholder", "100%", {"x"}, "100%"},
      {"a capital one swallows all", "%S-%s", {"x", "y"}, "%S-%s"},
      {"a capital one behind", "%s-%S-%s", {"x", "y", "z"}, "x-%S-%s"},
      {"a parameter with a capital one", "%s-%s", {"%S", "y"}, "%S-%s"},
      {"percent signs before", "%%s 5%", {7}, "%7 5%"},
      {"each type",
       "%s %s %s",
       {Date::FromYmd(2024, 3, 5).value(), true, -0.5},
       "05/03/2024 True -0.5"},
  };
  FakeSiblings siblings;
  Registrazione entry(siblings);
  const auto add = [&](std::initializer_list<Variant> parameters, ResultString target = ErrString) {
    Trap(entry, {"Tag", "Check"}, [&] {
      AddMessage(entry, target, MessageCode::ContoMancante, parameters, {"RsRCont", 3});
    });
  };
  for (const auto& row : kRows) {
    siblings.text = row.text;
    entry.Rilievi.Clear();
    add(row.parameters);
    EXPECT_EQ(entry.Rilievi.Text(ErrString), row.expected) << row.name;
  }
  siblings.text = "no placeholder";
  EXPECT_EQ(TrailOf([&] { add({Null}); }),
            "94|Errore ( 94 ) - Componente ( Kal_COGCheck )\r\nKal_COGCheck.Tag");
  siblings.fails = true;
  EXPECT_EQ(TrailOf([&] { add({}); }),
            "70|Errore ( 70 ) - Componente ( KalStatus )\r\nKal_COGCheck.Tag");
  EXPECT_EQ(entry.Rilievi.All().size(), 1U) << "a message that fails is none";
  const Finding& finding = entry.Rilievi.All()[0];
  EXPECT_EQ(finding.check, "Check");
  EXPECT_TRUE(finding.at.set == "RsRCont" && finding.at.row == 3);
}

TEST(Messages, JoinWhenTheyAreRead) {
  const struct {
    std::vector<std::string> texts;
    const char* joined;
  } kRows[] = {
      {{"first", "second"}, "first\r\nsecond"},
      {{"first\r\n", "second"}, "first\r\n\r\nsecond"},
      {{"first", ""}, "first\r\n"},
      {{"", "second"}, "second"},
      {{"", ""}, ""},
  };
  for (const auto& row : kRows) {
    Findings findings;
    for (const std::string& text : row.texts) {
      findings.Add({WarnString, {}, {}, {}, text, {}, {}, {}});
      findings.Add({ErrString, {}, {}, {}, "between", {}, {}, {}});
    }
    EXPECT_EQ(findings.Text(WarnString), row.joined);
    EXPECT_EQ(findings.IsEmpty(WarnString), *row.joined == '\0');
    findings.Clear(WarnString);
    EXPECT_EQ(findings.Text(WarnString), "");
    EXPECT_EQ(findings.Text(ErrString), "between\r\nbetween");
  }
}

TEST(Messages, TranslationNeverFails) {
  FakeSiblings siblings;
  EXPECT_EQ(TranslateText(siblings, "a", "b", "c", "d", "e", "f"), "abcdef");
  EXPECT_EQ(TranslateText(siblings, "a"), "a");
  siblings.lacks = true;
  EXPECT_EQ(TranslateText(siblings, "a"), "");
}

TEST(Trail, GrowsByOneLineALevel) {
  const struct {
    const char* name;
    const char* source;
    const char* expected;
  } kRows[] = {
      {"a source", "DataAccess", "Errore ( 13 ) - Componente ( DataAccess )\r\nKal_COGCheck.Tag"},
      {"no source", "", "Errore ( 13 ) - Componente (  )\r\nKal_COGCheck.Tag"},
      {"a trail", "Errore\r\nKal_COGCheck.Inner",
       "Errore\r\nKal_COGCheck.Inner\r\nKal_COGCheck.Tag"},
      {"half a line end", "a\nb", "Errore ( 13 ) - Componente ( a\nb )\r\nKal_COGCheck.Tag"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(FormatErrorSource(13, row.source, "Tag"), row.expected) << row.name;
  }
  const RunTimeError error(-2147467259, "DataAccess", "no table");
  EXPECT_EQ(Raised([&] { RaiseError(error, "Tag"); }),
            "-2147467259|Errore ( -2147467259 ) - Componente ( DataAccess )\r\nKal_COGCheck.Tag|"
            "no table");
  EXPECT_EQ(Raised([&] { RaiseError(error, "Tag", 5, "other"); }),
            "5|Errore ( 5 ) - Componente ( DataAccess )\r\nKal_COGCheck.Tag|other");
  FakeSiblings siblings;
  const Registrazione entry(siblings);
  EXPECT_EQ(TrailOf([&] { Trap(entry, "Tag", [] { throw std::bad_alloc(); }); }),
            "7|Errore ( 7 ) - Componente ( Kal_COGCheck )\r\nKal_COGCheck.Tag");
  EXPECT_EQ(Raised([&] { Trap(entry, "Tag", [] { throw std::logic_error("odd"); }); }),
            "51|Errore ( 51 ) - Componente ( Kal_COGCheck )\r\nKal_COGCheck.Tag|odd");
}

RecordsetRef OneRow(std::vector<Column> columns, std::vector<Variant> values) {
  const auto table = std::make_shared<RowTable>(std::move(columns));
  table->AddRow(std::move(values));
  return std::make_shared<MemoryRecordset>(table);
}

// One level, two and three: a member without what it needs, a field of the save check, a field
// inside a check of it.
TEST(Trail, NamesEveryOperationPassed) {
  FakeSiblings siblings;
  KalCOGCheck checker(siblings);
  siblings.lacks = true;
  EXPECT_EQ(Raised([&] { (void)checker.IsInfragruppo(); }),
            "429|Errore ( 429 ) - Componente ( Kal_COGCheck )\r\n"
            "Kal_COGCheck.KalCOGCheck.IsInfragruppo|This host has no component CompanySettings");
  siblings.lacks = false;
  const auto save = [&] { (void)checker.OkAggiorna(true, true); };
  EXPECT_EQ(TrailOf(save),
            "91|Errore ( 91 ) - Componente ( Kal_COGCheck )\r\n"
            "Kal_COGCheck.modDataBaseUtility.GetField ( Field: CodCausale ) \r\n"
            "Kal_COGCheck.KalCOGCheck.OkAggiorna");
  checker.RsTesta(OneRow(
      {{"CodCausale", DataType::VarWChar}, {"TipoDocumento", DataType::SmallInt}}, {"GEN", Null}));
  checker.RsCausale(OneRow({{"Operazione", DataType::SmallInt},
                            {"TipoRegIva", DataType::SmallInt},
                            {"SegnoIva", DataType::SmallInt},
                            {"TipoVentilazione", DataType::Boolean},
                            {"CassaCorrispettivi", DataType::Boolean},
                            {"IdTipoMovimento", DataType::Integer}},
                           {Null, Null, Null, Null, Null, Null}));
  EXPECT_EQ(TrailOf(save),
            "3265|Errore ( 3265 ) - Componente ( ADODB.Recordset )\r\n"
            "Kal_COGCheck.modDataBaseUtility.GetField ( Field: RegistrazioneLibera ) \r\n"
            "Kal_COGCheck.KalCOGCheck.OkQuadratura\r\nKal_COGCheck.KalCOGCheck.OkAggiorna");
}

TEST(GetField, ReadsNullAsItsTypesDefault) {
  using enum DataType;
  const struct {
    std::initializer_list<DataType> types;
    kal::Variant expected;
  } kRows[] = {
      {{SmallInt, Integer, Single, Double, DataType::Currency, TinyInt, BigInt, Numeric},
       std::int16_t{0}},
      {{DataType::Date, Text, Char, WChar, DBTime, DBTimeStamp, VarChar, LongVarChar, VarWChar,
        LongVarWChar},
       ""},
      {{Boolean}, false},
      {{DataType::Decimal}, kal::Decimal()},
  };
  for (const auto& row : kRows) {
    for (const DataType type : row.types) {
      for (const kal::Variant& missing : {kal::Variant(Null), kal::Variant()}) {
        EXPECT_TRUE(Identical(GetField(OneRow({{"a", type}}, {missing}), "A"), row.expected))
            << "type " << static_cast<int>(type);
      }
    }
  }
  EXPECT_TRUE(GetField(OneRow({{"a", DataType::Variant}}, {Null}), "a").IsNull());
  EXPECT_TRUE(GetField(OneRow({{"a", DataType::Variant}}, {kal::Variant()}), "a").IsEmpty());
}

TEST(GetField, RoundsFloatingValuesAlone) {
  const struct {
    DataType type;
    Variant value;
    Variant expected;
  } kRows[] = {
      {DataType::Double, 1.23456789, 1.234568},
      {DataType::Double, -1.2345674, -1.234567},
      {DataType::Double, 0.0000025, 0.000003},  // a half, away from zero
      {DataType::Double, -1.0000005, -1.000001},
      {DataType::Double, 1.2345665, 1.234567},
      {DataType::Double, 2.5, 2.5},
      {DataType::Double, 0.0000004, 0.0},
      {DataType::Double, 123456789012.125, 123456789012.125},
      {DataType::Double, 1e300, 1e300},
      {DataType::Single, 0.1F, 0.1},
      {DataType::Single, 16777216.0F, 16777216.0},
      {DataType::Currency, Currency::FromUnits(123456), Currency::FromUnits(123456)},
      {DataType::Decimal, Decimal::FromText("1.23456789").value(),
       Decimal::FromText("1.23456789").value()},
      {DataType::VarWChar, "1.23456789", "1.23456789"},
      {DataType::Variant, 1.23456789, 1.23456789},
  };
  for (const auto& row : kRows) {
    const Variant value = GetField(OneRow({{"a", row.type}}, {row.value}), "a");
    EXPECT_TRUE(Identical(value, row.expected)) << CStr(row.value) << " gave " << CStr(value);
  }
}

// What a set of another make says of its end does not count, only whether there is a first field.
TEST(RecordsetIsEmpty, AsksForACurrentRow) {
  struct Contrary final : WrappedRecordset {
    using WrappedRecordset::WrappedRecordset;
    bool Eof() override { return !WrappedRecordset::Eof(); }
  };
  const RecordsetRef set = std::make_shared<Contrary>(
      OneRow({{"a", DataType::Integer}, {"b", DataType::Boolean}}, {1, Null}));
  EXPECT_TRUE(RecordsetIsEmpty(RecordsetRef()));
  EXPECT_FALSE(RecordsetIsEmpty(set));
  EXPECT_FALSE(GetFlag(set, "b"));
  set->MoveNext();
  EXPECT_TRUE(RecordsetIsEmpty(set));
  set->Filter("a = 2");
  EXPECT_TRUE(RecordsetIsEmpty(set));
  set->Filter("");
  EXPECT_FALSE(RecordsetIsEmpty(set));
}

TEST(Checker, StartsEmpty) {
  FakeSiblings siblings;
  KalCOGCheck checker(siblings);
  EXPECT_EQ(checker.ErrString() + checker.WarnString() + checker.WarnDuplicatoDocString() +
                checker.WarnProtocolloString() + checker.WarnInfragruppoString() +
                checker.WarnStringModifica() + checker.TmpTableScadenze() + checker.IsInfragruppo(),
            "False");
  EXPECT_EQ(checker.ImportoPlafond(), Currency());
  EXPECT_FALSE(checker.ChiusuraRateInSospensione() || checker.RiaperturaRateInSospensione());
  EXPECT_EQ(checker.GenericFx("anything", std::make_shared<int>(1)), 0);
  checker.TmpTableScadenze("Tmp");
  EXPECT_EQ(checker.TmpTableScadenze(), "Tmp");
}

}  // namespace
}  // namespace kal
