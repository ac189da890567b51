// The save check over record sets of random rows, values and types: an answer, or an error with a
// whole trail. The same object asked again answers the same.

#include <filesystem>
#include <random>

#include "checker/KalCOGCheck.h"
#include "company/Company.h"
#include "fuzz/Input.h"
#include "host/EntryFields.h"
#include "platform/MemoryRecordset.h"
#include "platform/RunTimeError.h"

namespace {

using kal::fuzz::Require;
using namespace kal;

// A sample company of this process alone.
struct Books {
  Books() { company::CreateCompany(path, true); }
  Books(const Books&) = delete;
  Books& operator=(const Books&) = delete;
  ~Books() { std::filesystem::remove(path); }

  std::string path = (std::filesystem::temp_directory_path() /
                      ("kalcogcheck-fuzz-" + std::to_string(std::random_device{}())))
                         .string();
};

Siblings& BooksSiblings() {
  static const Books kBooks;
  static company::Company company(kBooks.path);
  return company.Siblings();
}

// Usual values for the fields that decide which checks run, else the input's.
Variant Cell(fuzz::Input& input, std::string_view name, DataType type) {
  static constexpr const char* kTemplates[] = {"FTA", "FTV", "COR", "GEN", "NCA", "x"};
  if (input.Take<std::uint8_t>() % 4 != 0) {
    if (name == "CodCausale") return kTemplates[input.Take<std::uint8_t>() % 6];
    if (name == "CodConto") return "1001";
    if (name == "CodIva") return "22";
    if (type == DataType::Date) return input.Day();
    if (type == DataType::Boolean) return input.Take<std::uint8_t>() % 2 == 0;
    if (type == DataType::Currency) return Currency::FromUnits(input.Take<std::int8_t>() * 10000);
    if (type == DataType::SmallInt || type == DataType::Integer) {
      return static_cast<std::int16_t>(input.Take<std::uint8_t>() % 4);
    }
  }
  return input.Value();
}

std::shared_ptr<const RowTable> Rows(fuzz::Input& input, const host::EntrySet& set,
                                     std::size_t count) {
  const auto usual = host::NewRowTable(set);
  std::vector<Column> columns = usual->Columns();
  static constexpr DataType kTypes[] = {DataType::Variant, DataType::VarWChar, DataType::Double,
                                        DataType::Decimal, DataType::BigInt};
  const std::uint8_t odd = input.Take<std::uint8_t>();
  if (odd < columns.size()) {  // a column of another type, or without its name
    columns[odd].type = kTypes[input.Take<std::uint8_t>() % 5];
    columns[odd].name += input.Take<std::uint8_t>() % 8 == 0 ? "_" : "";
  }
  const auto rows = std::make_shared<RowTable>(columns);
  for (std::size_t row = 0; row < count; ++row) {
    std::vector<Variant> values;
    for (const Column& column : columns) {
      values.push_back(Cell(input, column.name, column.type));
    }
    rows->AddRow(std::move(values));
  }
  return rows;
}

std::string Call(KalCOGCheck& checker, bool flag) {
  std::string shown;
  try {
    shown = checker.OkAggiorna(flag, !flag) ? "True" : "False";
  } catch (const RunTimeError& error) {
    const std::string& trail = error.Source();
    Require(error.Number() != 51, "no internal error");
    Require(trail.starts_with("Errore ( " + std::to_string(error.Number()) + " ) - Componente ( "),
            "the trail begins");
    Require(trail.ends_with("\r\nKal_COGCheck.KalCOGCheck.OkAggiorna"), "the trail ends");
    shown = trail;
  }
  const bool silent = checker.ErrString().empty() && checker.WarnString().empty() &&
                      checker.WarnProtocolloString().empty() &&
                      checker.WarnDuplicatoDocString().empty() &&
                      checker.WarnInfragruppoString().empty();
  Require(shown != "True" || silent, "True has no message");
  Require(shown != "False" || !silent, "False has one");
  return shown + checker.ErrString() + checker.WarnString() + checker.WarnProtocolloString();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  KalCOGCheck checker(BooksSiblings());
  std::vector<std::pair<const host::EntrySet*, std::shared_ptr<const RowTable>>> sets;
  const auto mode = static_cast<EditMode>(input.Take<std::uint8_t>() % 3);
  for (const host::EntrySet& set : host::EntrySets()) {
    const std::uint8_t rows = input.Take<std::uint8_t>();
    if (rows % 8 != 7 && set.name != "RsCausale") {
      sets.emplace_back(&set, Rows(input, set, set.name == "RsTesta" ? 1 : rows % 4));
    }
  }
  const bool flag = input.Take<std::uint8_t>() % 2 == 0;
  const auto hand = [&] {
    checker.RsCausale(nullptr);
    for (const auto& [set, rows] : sets) {
      (checker.*set->assign)(std::make_shared<MemoryRecordset>(rows, mode));
    }
  };
  hand();
  const std::string first = Call(checker, flag);
  hand();
  Require(Call(checker, flag) == first, "asked again the object answers the same");
  return 0;
}
