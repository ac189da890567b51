// The host's record set behind the core's interface: the same answers and errors as the set in
// memory that the double stands before.

#include <gtest/gtest.h>

#include <functional>

#include "platform/RunTimeError.h"
#include "server/DispatchRecordset.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

std::shared_ptr<MemoryRecordset> SomeRows() {
  return std::make_shared<MemoryRecordset>(
      MakeTable({"N:l Conto:t Importo:m Data:d Chiuso:b Tasso:f",
                 {"N=1 Conto=0101 Importo=-0.0001 Data=2024-03-15 Chiuso=1 Tasso=0.1",
                  "N=2 Conto=0102 Importo=922337203685477.5807", "N=3 Conto=0101 Chiuso=0"}}),
      EditMode::InProgress);
}

std::string ShownOrError(const std::function<Variant()>& ask) {
  try {
    return Shown(ask());
  } catch (const RunTimeError& error) {
    return std::to_string(error.Number()) + " " + error.Source() + " " + error.Description();
  }
}

TEST(DispatchRecordset, AnswersAsTheSetBehindIt) {
  struct Step {
    const char* name;
    std::function<Variant(Recordset&)> ask;
  };
  const auto moves = [](void (Recordset::*move)()) {
    return [move](Recordset& set) {
      (set.*move)();
      return Variant();
    };
  };
  const auto filters = [](auto filter) {
    return [filter](Recordset& set) {
      set.Filter(filter);
      return Variant(set.RecordCount());
    };
  };
  const auto reads = [](auto key) {
    return [key](Recordset& set) { return set.Fields(key).Value(); };
  };
  const auto type = [](std::string_view name) {
    return [name](Recordset& set) {
      return Variant(static_cast<std::int32_t>(set.Fields(name).Type()));
    };
  };
  const Step steps[] = {
      {"count", [](Recordset& set) { return Variant(set.RecordCount()); }},
      {"edit mode", [](Recordset& set) { return static_cast<std::int32_t>(set.EditMode()); }},
      {"number", reads("N")},
      {"text, other case", reads("CONTO")},
      {"amount", reads("Importo")},
      {"date", reads("Data")},
      {"flag", reads("Chiuso")},
      {"double", reads("Tasso")},
      {"by place", reads(std::size_t{1})},
      {"type of a text", type("Conto")},
      {"type of an amount", type("Importo")},
      {"no such field", reads("Altro")},
      {"no such place", reads(std::size_t{6})},
      {"next", moves(&Recordset::MoveNext)},
      {"extreme amount", reads("Importo")},
      {"null", reads("Data")},
      {"last", moves(&Recordset::MoveLast)},
      {"after last", moves(&Recordset::MoveNext)},
      {"end", [](Recordset& set) { return Variant(set.Eof()); }},
      {"beyond the end", moves(&Recordset::MoveNext)},
      {"no row", reads("N")},
      {"filter", filters("Conto = '0101'")},
      {"first of two", reads("N")},
      {"bad filter", filters("Conto ~ 1")},
      {"no row matches", filters("N > 5")},
      {"first of none", moves(&Recordset::MoveFirst)},
      {"filter cleared by a text", filters("")},
      {"filter again", filters("N = 3")},
      {"filter cleared by a number", filters(FilterGroup::None)},
      {"first again", reads("N")},
  };
  const auto native = SomeRows();
  DispatchRecordset through(MakeRecordsetDouble(SomeRows()));
  for (const Step& step : steps) {
    EXPECT_EQ(ShownOrError([&] { return step.ask(through); }),
              ShownOrError([&] { return step.ask(*native); }))
        << step.name;
  }
}

TEST(DispatchRecordset, LooksMembersUpOnceForEachObject) {
  DispatchRecordset set(MakeRecordsetDouble(SomeRows()));
  const auto walk = [&set] {
    for (set.MoveFirst(); !set.Eof(); set.MoveNext()) {
      (void)set.Fields("N").Value();
      (void)set.Fields("Conto").Type();
    }
    return IdLookups();
  };
  const long first = walk();
  EXPECT_EQ(walk(), first);
  EXPECT_EQ(LiveDoubles("Field"), 2);
}

// A host may close and open its set again between two operations: other fields, other rows.
TEST(DispatchRecordset, AsksAReopenedSetForItsFieldsAgain) {
  ComPtr<IDispatch> inner = MakeRecordsetDouble(SomeRows());
  DispatchRecordset set(MakeDouble(
      "Host", {{L"Fields", DISPATCH_PROPERTYGET, 0,
                [&inner](auto) { return ToVariant(LateBound(inner, "").GetObject(L"Fields")); }}}));
  const Field& field = set.Fields("Conto");
  EXPECT_EQ(CStr(field.Value()), "0101");
  inner =
      MakeRecordsetDouble(std::make_shared<MemoryRecordset>(MakeTable({"Conto:l", {"Conto=8"}})));
  EXPECT_EQ(CStr(field.Value()), "0101");
  set.LetFieldsGo();
  EXPECT_EQ(LiveDoubles("Field") + LiveDoubles("Fields"), 0);
  EXPECT_EQ(CStr(field.Value()), "8");
  EXPECT_EQ(field.Type(), DataType::Integer);
}

TEST(LateBound, NamesWhatIsNotThere) {
  struct Row {
    const char* name;
    std::function<void(LateBound&)> call;
    const char* expected;
  };
  const Row rows[] = {
      {"no such member", [](LateBound& it) { it.Do(L"Altro"); },
       "438 Source Automation error 0x80020006 in member 'Altro'"},
      {"no such kind of member", [](LateBound& it) { it.Put(L"MoveFirst", 1); },
       "438 Source Automation error 0x80020003 in member 'MoveFirst'"},
      {"too many arguments", [](LateBound& it) { it.Do(L"MoveFirst", 1); },
       "450 Source Automation error 0x8002000E in member 'MoveFirst'"},
      {"a value for an object", [](LateBound& it) { (void)it.GetObject(L"RecordCount"); },
       "424 Source Object required"},
      {"error of the object", [](LateBound& it) { it.Put(L"Filter", "?"); },
       "3001 ADODB.Recordset"},
      {"no such class", [](LateBound&) { (void)LateBound::Create(L"Kal.Nobody"); },
       "429 Kal_COGCheck Can't create object Kal.Nobody (0x800401F3)"},
      {"Nothing", [](LateBound&) { LateBound(ComPtr<IDispatch>(), "").Do(L"MoveFirst"); },
       "91 Kal_COGCheck Object variable not set"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    LateBound object(MakeRecordsetDouble(SomeRows()), "Source");
    const std::string shown = ShownOrError([&] {
      row.call(object);
      return Variant();
    });
    EXPECT_EQ(shown.substr(0, std::string(row.expected).size()), row.expected);
  }
  EXPECT_EQ(LiveDoubles(), 0);
}

}  // namespace
}  // namespace kal::test
