// Any text as a filter, over a small table and over one large enough for indexes: the same rows,
// or the same refusal, with the filter before it left in force.

#include <vector>

#include "fuzz/Input.h"
#include "platform/MemoryRecordset.h"
#include "platform/RunTimeError.h"

namespace {

using kal::fuzz::Require;
using namespace kal;

constexpr std::size_t kRows = 6;

std::shared_ptr<const RowTable> Table(std::size_t copies) {
  const auto table = std::make_shared<RowTable>(std::vector<Column>{{"N", DataType::Integer},
                                                                    {"a", DataType::Currency},
                                                                    {"b", DataType::VarWChar},
                                                                    {"c", DataType::Date},
                                                                    {"d", DataType::Boolean},
                                                                    {"e f", DataType::Double}});
  const char* const texts[] = {"", "x", "It's", "1001", "\xC3\x80", "%a*"};
  for (std::size_t row = 0; row < kRows * copies; ++row) {
    const auto i = static_cast<std::int32_t>(row % kRows);
    table->AddRow({i, i == 3 ? Variant(Null) : Currency::FromUnits(i * 5000 - 10000), texts[i],
                   i == 2 ? Variant(Null) : Date::FromYmd(2024, 2, 27 + i % 3).value(), i % 2 == 0,
                   i / 4.0});
  }
  return table;
}

// The rows shown, each once; or nothing when the filter is refused.
std::optional<std::vector<bool>> Shown(MemoryRecordset& set, std::string_view filter) {
  try {
    set.Filter(filter);
  } catch (const RunTimeError& error) {
    Require(error.Number() == 3001, "a refused filter is error 3001");
    Require(set.FilterText() == "N = 1" && set.RecordCount() > 0, "the filter before stays");
    return std::nullopt;
  }
  std::vector<bool> shown(kRows);
  for (; !set.Eof(); set.MoveNext()) {
    shown[static_cast<std::size_t>(CLng(set.Fields("N").Value()))] = true;
  }
  return shown;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view filter(reinterpret_cast<const char*>(data), size);
  static const auto kSmall = Table(1);
  const auto large = Table(8);
  MemoryRecordset few(kSmall);
  MemoryRecordset many(large);
  few.Filter("N = 1");
  many.Filter("N = 1");
  const auto expected = Shown(few, filter);
  Require(Shown(many, filter) == expected, "a large table shows the same rows");
  if (expected) {
    many.Filter("N = 1");
    Require(Shown(many, filter) == expected, "an index shows the same rows");
  }
  return 0;
}
