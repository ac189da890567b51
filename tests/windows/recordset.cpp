// The host's objects behind the core's interfaces: what is held of them, and what they are asked
// where they are not as usual. That a record set gives the same answers and errors as one in memory
// is tried with recordings (play.cpp).

#include <gtest/gtest.h>

#include "platform/MemoryRecordset.h"
#include "server/DispatchRecordset.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

RecordsetRef OneColumn(const Column& column, std::vector<Variant> values) {
  const auto rows = std::make_shared<RowTable>(std::vector<Column>{column});
  for (Variant& value : values) {
    rows->AddRow({std::move(value)});
  }
  return std::make_shared<MemoryRecordset>(rows);
}
RecordsetRef SomeRows() { return OneColumn({"Conto", DataType::VarWChar}, {"0101", "0102"}); }

TEST(DispatchRecordset, LooksMembersUpOnceForEachObject) {
  DispatchRecordset set(MakeRecordsetDouble(SomeRows()));
  const auto walk = [&set] {
    for (set.MoveFirst(); !set.Eof(); set.MoveNext()) {
      (void)set.Fields("Conto").Value();
      (void)set.Fields("Conto").Type();
    }
    return counts.lookups;
  };
  const long first = walk();
  EXPECT_EQ(walk(), first);
  EXPECT_EQ(LiveDoubles("Field"), 1);
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
  inner = MakeRecordsetDouble(OneColumn({"Conto", DataType::Integer}, {8}));
  EXPECT_EQ(CStr(field.Value()), "0101");
  set.LetFieldsGo();
  EXPECT_EQ(LiveDoubles("Field") + LiveDoubles("Fields"), 0);
  EXPECT_EQ(CStr(field.Value()), "8");
  EXPECT_EQ(field.Type(), DataType::Integer);
}

TEST(LateBound, NamesWhatIsNotThere) {
  LateBound it(MakeRecordsetDouble(SomeRows()), "Source");
  const auto expect = [](auto call, const std::string& error) {
    EXPECT_EQ(TextOrError([&] { return (call(), std::string()); }), "Error " + error);
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
