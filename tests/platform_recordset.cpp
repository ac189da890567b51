// Record sets in memory: fields, cursor, filters.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/MemoryRecordset.h"
#include "platform/RunTimeError.h"

namespace kal {
namespace {

// "3001" and the like when the action raises that error of record sets, "" when it raises none.
template <class Action>
std::string ErrorOf(Action&& action) {
  try {
    action();
    return "";
  } catch (const RunTimeError& error) {
    return (error.Source() == kRecordsetSource ? "" : error.Source() + " ") +
           std::to_string(error.Number());
  }
}

Currency Amount(std::string_view text) { return Currency::FromExactText(text).value(); }

// Six rows; column N tells them apart.
std::shared_ptr<RowTable> SomeRows() {
  auto table = std::make_shared<RowTable>(std::vector<Column>{{"N", DataType::Integer},
                                                              {"Conto", DataType::VarWChar},
                                                              {"Importo", DataType::Currency},
                                                              {"Chiuso", DataType::Boolean},
                                                              {"Data", DataType::Date},
                                                              {"Tasso", DataType::Single},
                                                              {"Misto", DataType::Variant},
                                                              {"Data doc", DataType::Date}});
  const Variant march = Date::FromIso("2024-03-15").value();
  table->AddRow({1, "0101", Amount("122"), true, march, 0.1F, 1, march});
  table->AddRow({2, "ab'c", Amount("-5.5"), false, Null, 0.25F, "1", march});
  table->AddRow(
      {3, "AB", Amount("0"), true, Date::FromText("15/03/2024 12:00").value(), Null, true, Null});
  table->AddRow({4, Null, Null, Null, Date::FromIso("1899-12-29").value(), 2.0F, Null, Null});
  table->AddRow({5, "Città×*", Amount("922337203685477.5807"), false, march, 1e9F,
                 Decimal::FromText("1.0").value(), march});
  table->AddRow({6, "", Amount("0.0001"), std::int16_t{-1}, Variant(), Null, Null, march});
  return table;
}

// The values of N in the visible rows.
std::string Visible(MemoryRecordset& set) {
  std::string rows;
  const Field& n = set.Fields("n");
  for (; !set.Eof(); set.MoveNext()) {
    rows += CStr(n.Value());
  }
  return rows;
}

// Each filter on the six rows, and on the same rows behind enough others that indexes answer.
TEST(MemoryRecordset, Filters) {
  struct Row {
    const char* filter;
    const char* expected;  // N of the visible rows, or the error
  };
  const Row rows[] = {
      {"N = 3", "3"},
      {"[n]=3", "3"},
      {"  N\t=\r\n+3 ", "3"},
      {"N <> 3", "12456"},
      {"N < 3 or N >= 5", "1256"},
      {"N <= 2 AND N > 1", "2"},
      {"N = 1 or N = 2 and N = 3", "1"},
      {"(N = 1 or N = 2) and N <> 1", "2"},
      {"((N = 4))", "4"},
      {"N = 2.0", "2"},
      {"N = 2.00001", ""},
      {"N = 99999999999999999999", ""},
      {"N <> 0 and N <> Null and N <> 3 and Importo <> 0", "1256"},
      {"Importo = 122", "1"},
      {"Importo = -5.50", "2"},
      {"Importo = 922337203685477.5807", "5"},
      {"Importo > 922337203685477.58069", "5"},
      {"Importo < 0.0001", "23"},
      {"Importo = null", "4"},
      {"Importo <> 122", "2356"},
      {"Conto = '0101'", "1"},
      {"Conto like '0101'", "1"},
      {"Conto like '01*'", "1"},
      {"Conto like 'aB%'", "23"},
      {"Conto like '*B*'", "23"},
      {"Conto like '%''%'", "2"},
      {"Conto like '*'", "12356"},
      {"Conto = 'AB''C'", "2"},
      {"Conto = 'CITTÀ×*'", "5"},
      {"Conto = 'città÷*'", ""},
      {"Conto like 'cittÀ%'", "5"},
      {"Conto = ''", "6"},
      {"Conto like ''", "6"},
      {"Conto > 'aa'", "235"},
      {"Conto <> 'ab'", "1256"},
      {"Conto = Null", "4"},
      {"Conto <> Null", "12356"},
      {"Chiuso = 1", "136"},
      {"Chiuso = -1", "136"},
      {"Chiuso = 0", "25"},
      {"Chiuso <> 0", "136"},
      {"Chiuso = True", "136"},
      {"Chiuso = false and N > 2", "5"},
      {"Data = #15/03/2024#", "15"},
      {"Data > #2024-03-15#", "3"},
      {"Data < #30/12/1899#", "4"},
      {"Data = Null", "26"},
      {"[data DOC] = Null and N = 3", "3"},
      {"Tasso = 0.1", "1"},
      {"Tasso > 0.2", "245"},
      {"Misto = 1", "135"},
      {"Misto = '1'", "2"},
      {"Misto <> 1", ""},
      // Not filters of this table.
      {"N", "3001"},
      {"N =", "3001"},
      {"N = ()", "3001"},
      {" ", "3001"},
      {"()", "3001"},
      {"N = 1 and", "3001"},
      {"N = 1 N = 2", "3001"},
      {"N = 1and N = 2", "3001"},
      {"N == 1", "3001"},
      {"(N = 1", "3001"},
      {"N = 1)", "3001"},
      {"N < Null", "3001"},
      {"N like '1'", "3001"},
      {"N = '1'", "3001"},
      {"N = - 1", "3001"},
      {"N = 1e2", "3001"},
      {"N = 1 nd N = 2", "3001"},
      {"Manca = 1", "3001"},
      {"[N = 1", "3001"},
      {"[] = 1", "3001"},
      {"Conto = 101", "3001"},
      {"Conto = 'A", "3001"},
      {"Conto = 'A'B'", "3001"},
      {"Conto = 'A' '", "3001"},
      {"Conto like Null", "3001"},
      {"Conto like '*a'", "3001"},
      {"Conto like 'a*b'", "3001"},
      {"Conto like '*a*b*'", "3001"},
      {"Data = #31/02/2024#", "3001"},
      {"Data = #15/03/2024", "3001"},
      {"Data = 45366", "3001"},
      {"Data = '15/03/2024'", "3001"},
      {"Chiuso = 'True'", "3001"},
  };
  const auto few = SomeRows();
  const auto many = SomeRows();
  for (int i = 0; i < 40; ++i) {
    many->AddRow({-7, "other", Amount("-7"), Null, Date::FromIso("1990-01-01").value(), -7.0F,
                  std::nan(""), Date::FromIso("1990-01-01").value()});
  }
  for (const auto& [table, extra] : {std::pair(few, ""), std::pair(many, " and (N <> -7)")}) {
    MemoryRecordset set(table);
    for (const Row& row : rows) {
      const bool invalid = std::string_view(row.expected) == "3001";
      const std::string text = invalid ? row.filter : "(" + std::string(row.filter) + ")" + extra;
      for (int time = 1; time <= 3; ++time) {  // from the second on, indexes answer
        const std::string error = ErrorOf([&] { set.Filter(text); });
        EXPECT_EQ(invalid ? error : error + Visible(set), row.expected)
            << text << ", time " << time << ", of " << table->RowCount();
      }
      set.Filter("");
    }
  }
}

TEST(MemoryRecordset, FiltersNestToAHundredLevels) {
  MemoryRecordset set(SomeRows());
  const auto nested = [](std::size_t levels) {
    return std::string(levels, '(') + "N = 2" + std::string(levels, ')');
  };
  set.Filter(nested(100));
  EXPECT_EQ(Visible(set), "2");
  EXPECT_EQ(ErrorOf([&] { set.Filter(nested(101)); }), "3001");
  EXPECT_EQ(ErrorOf([&] { set.Filter(nested(100'000)); }), "3001");
  std::string chain = "N = 1";
  for (int i = 0; i < 20'000; ++i) {
    chain += " or (N = 2)";
  }
  set.Filter(chain);
  EXPECT_EQ(Visible(set), "12");
}

// Where the set stands after each step, as "position/count", with E at the end.
TEST(MemoryRecordset, Cursor) {
  MemoryRecordset set(SomeRows(), EditMode::Add);
  EXPECT_EQ(set.EditMode(), EditMode::Add);
  const auto state = [&] {
    return std::to_string(set.Position()) + "/" + std::to_string(set.RecordCount()) +
           (set.Eof() ? "E" : "") + " " + set.FilterText();
  };
  struct Step {
    const char* name;
    std::function<void()> run;
    const char* expected;
    const char* error = "";
  };
  const auto first = [&] { set.MoveFirst(); };
  const auto next = [&] { set.MoveNext(); };
  const auto last = [&] { set.MoveLast(); };
  const auto filter = [&](const char* text) { return [&set, text] { set.Filter(text); }; };
  const auto none = [&] { set.Filter(FilterGroup::None); };
  const auto read = [&] { (void)set.Fields("N").Value(); };
  const Step steps[] = {
      {"next", next, "2/6 "},
      {"filter moves to the first", filter("N > 4"), "1/2 N > 4"},
      {"last", last, "2/2 N > 4"},
      {"a bad filter changes nothing", filter("N > "), "2/2 N > 4", "3001"},
      {"to the end", next, "0/2E N > 4"},
      {"beyond the end", next, "0/2E N > 4", "3021"},
      {"read at the end", read, "0/2E N > 4", "3021"},
      {"back", first, "1/2 N > 4"},
      {"another filter", filter("N = 2"), "1/1 N = 2"},
      {"to its end", next, "0/1E N = 2"},
      {"cleared by text", filter(""), "1/6 "},
      {"last of all", last, "6/6 "},
      {"cleared by number, not even set", none, "1/6 "},
      {"nothing left", filter("N = 9"), "0/0E N = 9"},
      {"first of none", first, "0/0E N = 9", "3021"},
      {"last of none", last, "0/0E N = 9", "3021"},
      {"next of none", next, "0/0E N = 9", "3021"},
      {"read of none", read, "0/0E N = 9", "3021"},
      {"cleared by number", none, "1/6 "},
      {"read", read, "1/6 "},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(ErrorOf(step.run), step.error) << step.name;
    EXPECT_EQ(state(), step.expected) << step.name;
  }
}

TEST(MemoryRecordset, FieldsFollowTheRow) {
  MemoryRecordset set(SomeRows());
  const Field& conto = set.Fields("CONTO");
  EXPECT_EQ(&conto, &set.Fields(std::size_t{1}));
  EXPECT_EQ(conto.Type(), DataType::VarWChar);
  EXPECT_TRUE(Identical(conto.Value(), "0101"));
  set.MoveNext();
  EXPECT_TRUE(Identical(conto.Value(), "ab'c"));
  set.Filter("N >= 4");
  EXPECT_TRUE(conto.Value().IsNull());
  for (const char* name : {"", "Cont", "Contoo", "Data_doc"}) {
    EXPECT_EQ(ErrorOf([&] { (void)set.Fields(name); }), "3265") << name;
  }
  EXPECT_EQ(ErrorOf([&] { (void)set.Fields(std::size_t{8}); }), "3265");
  // Names with equal ends, some so short that these overlap, some so long that they have a middle.
  RowTable table({{"ImportoDareVB", DataType::Currency},
                  {"ImportoXYreVB", DataType::Currency},
                  {"ImportoDelDareVB", DataType::Currency},
                  {"ImportoPagatoDareInVB", DataType::Currency},
                  {"ImportoPosatoDareInVB", DataType::Currency},
                  {"DData", DataType::Date},
                  {"IData", DataType::Date},
                  {"DDato", DataType::Integer}});
  for (std::size_t column = 0; column < table.Columns().size(); ++column) {
    EXPECT_EQ(table.FindColumn(table.Columns()[column].name), column);
  }
  EXPECT_EQ(table.FindColumn("importoxyREvb"), 1);
  EXPECT_EQ(table.FindColumn("importoposatodareinvb"), 4);
  for (const char* name : {"ImportoZZreVB", "ImportoPigiatDareInVB"}) {
    EXPECT_EQ(table.FindColumn(name), -1) << name;
  }
  EXPECT_EQ(ErrorOf([&] { table.AddRow({1}); }), "Kal_COGCheck 51");
  EXPECT_EQ(table.RowCount(), 0U);
}

TEST(MemoryRecordset, SetsOverOneTableAreIndependent) {
  const auto table = SomeRows();
  MemoryRecordset left(table);
  MemoryRecordset right(table);
  left.Filter("N > 2");
  right.MoveLast();
  left.MoveNext();
  EXPECT_EQ(CStr(left.Fields("N").Value()) + CStr(right.Fields("N").Value()), "46");
  EXPECT_EQ(left.RecordCount() + right.RecordCount(), 4 + 6);
  // A set may be made before its rows are.
  const auto growing = std::make_shared<RowTable>(std::vector<Column>{{"N", DataType::Integer}});
  MemoryRecordset early(growing);
  EXPECT_TRUE(early.Eof());
  growing->AddRow({5});
  EXPECT_EQ(CStr(early.Fields("N").Value()), "5");
}

// Every key of a large set, by numbers of every type and by texts in either case.
TEST(MemoryRecordset, LargeSetsAnswerFromIndexes) {
  constexpr int kRows = 10'000;
  constexpr int kKeys = 2'500;
  auto table = std::make_shared<RowTable>(std::vector<Column>{
      {"N", DataType::Integer}, {"Id", DataType::Variant}, {"Codice", DataType::VarWChar}});
  const auto key = [](int row) -> Variant {
    const int id = row % kKeys;
    switch (row % 3) {
      case 0:
        return id;
      case 1:
        return Currency::FromInteger(id);
      default:
        return static_cast<double>(id);
    }
  };
  for (int row = 0; row < kRows; ++row) {
    table->AddRow({row, key(row), (row < kKeys ? "è" : "È") + std::to_string(row % kKeys)});
  }
  MemoryRecordset set(table);
  for (int id = 0; id < kKeys; ++id) {
    const std::string number = std::to_string(id);
    for (const std::string& text : {"Id = " + number, "Codice like 'È" + number + "'",
                                    "Id = " + number + ".0 and Codice = 'è" + number + "'"}) {
      set.Filter(text);
      ASSERT_EQ(set.RecordCount(), kRows / kKeys) << text;
      for (int row = id; !set.Eof(); set.MoveNext(), row += kKeys) {
        ASSERT_EQ(CLng(set.Fields("N").Value()), row) << text;
      }
    }
  }
  table->AddRow({kRows, 7, Null});
  EXPECT_EQ(table->RowsWhereEqual(1, 7.0).size(), 5U) << "a row added is found";
  EXPECT_EQ(table->RowsWhereEqual(1, Null).size() + table->RowsWhereEqual(2, 7).size(), 0U);
}

}  // namespace
}  // namespace kal
