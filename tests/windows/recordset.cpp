// The host's objects behind the core's interfaces: a record set gives the same answers and errors
// as the set in memory that its double stands before.

#include <gtest/gtest.h>

#include "server/DispatchRecordset.h"
#include "tests/windows/Doubles.h"
#include "tests/windows/ScriptedSiblings.h"

namespace kal::test {
namespace {

RecordsetRef SomeRows() {
  return std::make_shared<MemoryRecordset>(
      MakeTable({"N:l=1 Conto:t=0101 Importo:m=-0.0001 Data:d=2024-03-15 Chiuso:b=1 Tasso:f=0.1",
                 "N=2 Conto=0102 Importo=922337203685477.5807", "N=3 Conto=0101 Chiuso=0"}),
      EditMode::InProgress);
}

// What the call answers, where it answers anything, or the error that it raises.
template <class Call>
std::string ShownOrError(Call call) {
  return TextOrError([&]() -> std::string {
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
      return "";
    } else {
      return Shown(call());
    }
  });
}

// clang-format off
TEST(DispatchRecordset, AnswersAsTheSetBehindIt) {
  const RecordsetRef native = SomeRows();
  DispatchRecordset through(MakeRecordsetDouble(SomeRows()));
  const auto same = [&](const char* what, auto ask) {
    EXPECT_EQ(ShownOrError([&] { return ask(through); }), ShownOrError([&] { return ask(*native); })) << what;
  };
  const auto values = [&](const char* what) {
    for (const char* const name : {"N", "CONTO", "Importo", "Data", "Chiuso", "Tasso", "Altro"}) {
      same(what, [name](Recordset& it) { return it.Fields(name).Value(); });
    }
    same(what, [](Recordset& it) { return it.RecordCount(); });
    same(what, [](Recordset& it) { return it.Eof(); });
    same(what, [](Recordset& it) { return it.HasCurrentRow(); });
  };
  values("first row");
  same("edit mode", [](Recordset& it) { return static_cast<std::int32_t>(it.EditMode()); });
  same("by place", [](Recordset& it) { return it.Fields(std::size_t{1}).Value(); });
  same("no such place", [](Recordset& it) { return it.Fields(std::size_t{6}).Value(); });
  same("type of a text", [](Recordset& it) { return static_cast<std::int32_t>(it.Fields("Conto").Type()); });
  same("type of an amount", [](Recordset& it) { return static_cast<std::int32_t>(it.Fields("Importo").Type()); });
  same("next", [](Recordset& it) { it.MoveNext(); });
  values("second row");
  same("last", [](Recordset& it) { it.MoveLast(); });
  values("last row");
  same("after the last", [](Recordset& it) { it.MoveNext(); });
  values("end");
  same("beyond the end", [](Recordset& it) { it.MoveNext(); });
  same("filter", [](Recordset& it) { it.Filter("Conto = '0101'"); });
  values("filtered");
  same("bad filter", [](Recordset& it) { it.Filter("Conto ~ 1"); });
  values("filtered as before");
  same("no row matches", [](Recordset& it) { it.Filter("N > 5"); });
  same("first of none", [](Recordset& it) { it.MoveFirst(); });
  same("filter cleared by a text", [](Recordset& it) { it.Filter(""); });
  values("all rows");
  same("filter again", [](Recordset& it) { it.Filter("N = 3"); });
  same("filter cleared by a number", [](Recordset& it) { it.Filter(FilterGroup::None); });
  values("all rows again");
}
// clang-format on

TEST(DispatchRecordset, LooksMembersUpOnceForEachObject) {
  DispatchRecordset set(MakeRecordsetDouble(SomeRows()));
  const auto walk = [&set] {
    for (set.MoveFirst(); !set.Eof(); set.MoveNext()) {
      (void)set.Fields("N").Value();
      (void)set.Fields("Conto").Type();
    }
    return counts.lookups;
  };
  const long first = walk();
  EXPECT_EQ(walk(), first);
  EXPECT_EQ(LiveDoubles("Field"), 2);
}

// A first field that has no counterpart in the core stands in a row all the same.
TEST(DispatchRecordset, HasARowWhateverIsInIt) {
  const DoubleMember value = {"Value", DISPATCH_PROPERTYGET, 0, [](Arguments) {
                                ScopedVariant outsideOfTheCalendar;
                                outsideOfTheCalendar->vt = VT_DATE;
                                outsideOfTheCalendar->date = -700000;
                                return outsideOfTheCalendar;
                              }};
  const auto item = [&](auto) { return MakeDouble("Field", {value}); };
  DispatchRecordset set(
      MakeDouble("Host", {Answers("Fields", DISPATCH_PROPERTYGET, 0, [&](auto) {
                   return MakeDouble("Fields", {Answers("Item", DISPATCH_PROPERTYGET, 1, item)});
                 })}));
  EXPECT_TRUE(set.HasCurrentRow());
}

// A host may close and open its set again between two operations: other fields, other rows.
TEST(DispatchRecordset, AsksAReopenedSetForItsFieldsAgain) {
  ComPtr<IDispatch> inner = MakeRecordsetDouble(SomeRows());
  DispatchRecordset set(MakeDouble("Host", {Answers("Fields", DISPATCH_PROPERTYGET, 0, [&](auto) {
                                     return LateBound(inner, "").GetObject("Fields");
                                   })}));
  const Field& field = set.Fields("Conto");
  EXPECT_EQ(CStr(field.Value()), "0101");
  inner = MakeRecordsetDouble(std::make_shared<MemoryRecordset>(MakeTable({"Conto:l=8"})));
  EXPECT_EQ(CStr(field.Value()), "0101");
  set.LetFieldsGo();
  EXPECT_EQ(LiveDoubles("Field") + LiveDoubles("Fields"), 0);
  EXPECT_EQ(CStr(field.Value()), "8");
  EXPECT_EQ(field.Type(), DataType::Integer);
}

TEST(LateBound, NamesWhatIsNotThere) {
  LateBound it(MakeRecordsetDouble(SomeRows()), "Source");
  const auto expect = [](auto call, const std::string& error) {
    EXPECT_EQ(ShownOrError(call), "Error " + error);
  };
  expect([&] { it.Do("Altro"); }, "438 'Source' 'Automation error 0x80020006 in member 'Altro''");
  expect([&] { it.Put("MoveFirst", 1); },
         "438 'Source' 'Automation error 0x80020003 in member 'MoveFirst''");
  expect([&] { it.Do("MoveFirst", {1}); },
         "450 'Source' 'Automation error 0x8002000E in member 'MoveFirst''");
  expect([&] { (void)it.GetObject("RecordCount"); }, "424 'Source' 'Object required'");
  expect([] { (void)LateBound::Create("Kal.Nobody"); },
         "429 'Kal_COGCheck' 'Can't create object Kal.Nobody (0x800401F3)'");
  expect([] { LateBound(ComPtr<IDispatch>(), "").Do("MoveFirst"); },
         "91 'Kal_COGCheck' 'Object variable not set'");
}

}  // namespace
}  // namespace kal::test
