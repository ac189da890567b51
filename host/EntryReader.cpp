#include "host/EntryReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "host/JsonText.h"
#include "host/PerThread.h"

namespace kal::host {
namespace {

using Kind = JsonValue::Kind;

constexpr std::string_view kDefaultOperation = "OkAggiorna";
constexpr std::size_t kLongestQuotedValue = 60;
// The header and its posting template.
constexpr std::array<std::string_view, 2> kOfOneRow = {"RsTesta", "RsCausale"};

struct InputError {
  Said why;
};

[[noreturn]] void Refuse(const Wording& words, std::initializer_list<SaidPart> parts) {
  throw InputError{Say(words, parts)};
}

constexpr Wording kArray = {"una lista", "an array"};
constexpr Wording kNotThis = {"% deve essere %, non %", "% must be %, not %"};

// The value as messages quote it: its JSON text, cut between characters when it is long.
std::string Shown(const JsonValue& value) {
  std::string text = ToText(value);
  if (text.size() > kLongestQuotedValue) {
    std::size_t cut = kLongestQuotedValue;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U) {
      --cut;
    }
    text = text.substr(0, cut) + "...";
  }
  return text;
}

const JsonValue& Require(const JsonValue& value, Kind kind, const SaidPart& what,
                         const Wording& wanted) {
  if (value.kind != kind) {
    Refuse(kNotThis, {what, wanted, Shown(value)});
  }
  return value;
}

Said RowName(std::string_view set, std::size_t row) {
  return Say({"% riga %", "% row %"}, {set, std::to_string(row + 1)});
}

// Raises why the row can't be taken, the first reason in its own order.
[[noreturn]] void RefuseRow(const RowTable& table, const JsonValue& row, const Said& name) {
  if (row.kind != Kind::Object) {
    Refuse(kNotThis, {name, Wording{"un oggetto", "an object"}, Shown(row)});
  }
  std::vector<bool> given(table.Columns().size(), false);
  for (const JsonValue& item : row.Items()) {
    const std::ptrdiff_t place = table.FindColumn(item.key);
    if (place < 0) {
      Refuse({"% ha un campo sconosciuto %", "% has an unknown field %"},
             {name, QuotedText(item.key)});
    }
    const Said field = Say({"%, campo %", "%, field %"}, {name, QuotedText(item.key)});
    const auto column = static_cast<std::size_t>(place);
    if (given[column]) {
      Refuse({"%: dato due volte", "%: given twice"}, {field});
    }
    given[column] = true;
    const DataType type = table.Columns()[column].type;
    if (FieldValue(item, type).IsEmpty()) {
      Refuse({"%: % non è %", "%: % is not %"}, {field, Shown(item), WantedValue(type)});
    }
  }
  throw std::logic_error("a row that can be taken was refused");
}

// Fills the tables of one kind of set.
class RowReader {
 public:
  void Read(const JsonValue& rows, std::string_view set, std::size_t most, RowTable& table) {
    // Room for a usual entry at once; many rows must come before they get it.
    constexpr std::size_t kUsual = 64;
    const auto count = static_cast<std::size_t>(std::ranges::distance(rows.Items()));
    RequireFew(count, set, most);
    table.Reserve(std::min(count, kUsual));
    for (const JsonValue& row : rows.Items()) {
      const auto refuse = [&] { RefuseRow(table, row, RowName(set, table.RowCount())); };
      if (row.kind != Kind::Object || !FindGiven(row, table)) {
        refuse();
      }
      table.AddRowOf([&](std::size_t column) -> Variant {
        if (given_[column] == nullptr) {
          return Null;
        }
        Variant value = FieldValue(*given_[column], table.Columns()[column].type);
        if (value.IsEmpty()) {
          refuse();
        }
        return value;
      });
    }
  }

 private:
  // Where the values of a row go that has these keys, by their order.
  struct Plan {
    bool possible = false;  // every key is a field's, and no other key the same field's
    std::vector<std::size_t> columns;
  };

  static void RequireFew(std::size_t count, std::string_view set, std::size_t most) {
    if (count > 1 && std::ranges::find(kOfOneRow, set) != kOfOneRow.end()) {
      Refuse({"% ha % righe: una registrazione ne ha una sola", "% has % rows: an entry has one"},
             {set, std::to_string(count)});
    }
    if (count > most) {
      Refuse({"% ha % righe; se ne leggono al più %, con % di più",
              "% has % rows; at most % are read, % allows more"},
             {set, std::to_string(count), std::to_string(most), kRowsOption});
    }
  }

  // What the row gives for each column; false when its keys can't be taken.
  bool FindGiven(const JsonValue& row, const RowTable& table) {
    const Plan& plan = PlanFor(row, table);
    if (!plan.possible) {
      return false;
    }
    given_.assign(table.Columns().size(), nullptr);
    auto column = plan.columns.begin();
    for (const JsonValue& item : row.Items()) {
      given_[*column++] = &item;
    }
    return true;
  }

  const Plan& PlanFor(const JsonValue& row, const RowTable& table) {
    const auto known = plans_.find(row.keys);
    if (known != plans_.end()) {
      return known->second;
    }
    constexpr std::size_t kMostPlans = 256;
    if (plans_.size() == kMostPlans) {
      plans_.clear();
    }
    return plans_.emplace(row.keys, MakePlan(row, table)).first->second;
  }

  static Plan MakePlan(const JsonValue& row, const RowTable& table) {
    Plan plan;
    std::vector<bool> given(table.Columns().size(), false);
    for (const JsonValue& item : row.Items()) {
      const std::ptrdiff_t place = table.FindColumn(item.key);
      const auto column = static_cast<std::size_t>(place);
      if (place < 0 || given[column]) {
        return {};
      }
      given[column] = true;
      plan.columns.push_back(column);
    }
    plan.possible = true;
    return plan;
  }

  std::unordered_map<std::uint64_t, Plan> plans_;  // by the number of the keys
  std::vector<const JsonValue*> given_;            // by column
};

EditMode ReadEditMode(const JsonValue& value, std::string_view set) {
  constexpr std::array kModes = {EditMode::None, EditMode::InProgress, EditMode::Add,
                                 EditMode::Delete};
  const Variant number = FieldValue(value, DataType::Integer);
  const auto* const mode = number.As<std::int32_t>();
  const auto known = std::ranges::find_if(kModes, [&](EditMode candidate) {
    return mode != nullptr && static_cast<std::int32_t>(candidate) == *mode;
  });
  if (known == kModes.end()) {
    Refuse(kNotThis, {Say({"%: EditMode", "%: EditMode"}, {set}),
                      Wording{"0, 1, 2 o 4", "0, 1, 2 or 4"}, Shown(value)});
  }
  return *known;
}

SuppliedSet ReadSet(const EntrySet& set, const JsonValue& value, std::size_t mostRows,
                    RowReader& reader) {
  Require(value, Kind::Object, set.name,
          {"un oggetto con rows, o null", "an object with rows, or null"});
  SuppliedSet supplied{.set = &set};
  const JsonValue* rows = nullptr;
  for (const JsonValue& item : value.Items()) {
    if (item.key == "EditMode") {
      supplied.editMode = ReadEditMode(item, set.name);
    } else if (item.key == "rows") {
      rows = &item;
    } else {
      Refuse({"% ha una chiave sconosciuta %", "% has an unknown key %"},
             {set.name, QuotedText(item.key)});
    }
  }
  if (rows == nullptr) {
    Refuse({"% non ha rows: per un insieme senza righe si scrive \"rows\": []",
            "% has no rows: write \"rows\": [] for a set without"},
           {set.name});
  }
  Require(*rows, Kind::Array, Say({"%: rows", "%: rows"}, {set.name}), kArray);
  const auto table = NewRowTable(set);
  reader.Read(*rows, set.name, mostRows, *table);
  supplied.rows = table;
  return supplied;
}

Variant ArgumentValue(const JsonValue& value, ArgumentKind kind) {
  constexpr std::array kTypes = {DataType::Boolean, DataType::SmallInt, DataType::Integer,
                                 DataType::VarWChar, DataType::Date};
  if (kind == ArgumentKind::Day) {
    if (value.kind == Kind::Text && value.text.empty()) {
      return "";
    }
  } else if (value.kind == Kind::Null) {
    return {};
  }
  return FieldValue(value, kTypes[static_cast<std::size_t>(kind)]);
}

Wording WantedArgument(ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::Flag:
      return WantedValue(DataType::Boolean);
    case ArgumentKind::Short:
      return WantedValue(DataType::SmallInt);
    case ArgumentKind::Long:
      return WantedValue(DataType::Integer);
    case ArgumentKind::Text:
      return WantedValue(DataType::VarWChar);
    case ArgumentKind::Day:
      break;
  }
  return {"una data (aaaa-mm-gg), \"\" o null", "a date (yyyy-mm-dd), \"\" or null"};
}

std::vector<Variant> ReadArguments(const Operation& operation, const JsonValue* given) {
  static const JsonValue kNone{.kind = Kind::Array};
  const JsonValue& list =
      given == nullptr ? kNone : Require(*given, Kind::Array, "arguments", kArray);
  const auto count = static_cast<std::size_t>(std::ranges::distance(list.Items()));
  if (count == 0 && operation.name == kDefaultOperation) {
    return {true, true};
  }
  if (count != operation.arguments.size()) {
    Refuse({"% vuole % argomenti, non %", "% takes % arguments, not %"},
           {operation.name, std::to_string(operation.arguments.size()), std::to_string(count)});
  }
  std::vector<Variant> values;
  for (const JsonValue& item : list.Items()) {
    const ArgumentKind kind = operation.arguments[values.size()];
    Variant value = ArgumentValue(item, kind);
    if (value.IsEmpty()) {
      Refuse(kNotThis, {Say({"% argomento %", "% argument %"},
                            {operation.name, std::to_string(values.size() + 1)}),
                        WantedArgument(kind), Shown(item)});
    }
    values.push_back(std::move(value));
  }
  return values;
}

bool IsEntryKey(std::string_view key) {
  constexpr std::array<std::string_view, 7> kOtherKeys = {
      "operation", "arguments", "id", "expected", "IsParcella", "IsFromCard", "TmpTableScadenze"};
  return std::ranges::find(kOtherKeys, key) != kOtherKeys.end() ||
         std::ranges::find(EntrySets(), key, &EntrySet::name) != EntrySets().end();
}

bool ReadFlag(const JsonValue& root, std::string_view key) {
  const JsonValue* const value = root.Find(key);
  return value != nullptr &&
         Require(*value, Kind::Boolean, key, WantedValue(DataType::Boolean)).boolean;
}

std::string_view ReadText(const JsonValue& root, std::string_view key, std::string_view missing) {
  const JsonValue* const value = root.Find(key);
  return value == nullptr ? missing
                          : Require(*value, Kind::Text, key, WantedValue(DataType::VarWChar)).text;
}

// The id and the operation, also of a text that broke off behind them.
void ReadHead(const JsonReading& json, EntryReading& reading) {
  const JsonValue& root = *json.value;
  if (const JsonValue* const id = root.Find("id")) {
    reading.id.json = ToText(*id);
    if (id->kind != Kind::Null) {
      reading.id.name = id->kind == Kind::Text ? std::string(id->text) : reading.id.json;
    }
  }
  const JsonValue* const operation = root.Find("operation");
  if (operation != nullptr && operation->kind == Kind::Text) {
    reading.operation = operation->text;
  } else if (operation == nullptr && root.kind == Kind::Object &&
             json.ending == JsonReading::Ending::Complete) {
    reading.operation = kDefaultOperation;
  }
}

// Reads one entry after the other, each with what was learnt from those before it.
class Reader {
 public:
  explicit Reader(const Limits& limits = {}) : limits_(limits), json_(limits.json) {}

  [[nodiscard]] const Limits& Allowed() const { return limits_; }

  EntryReading Read(std::string_view text) {
    EntryReading reading;
    const JsonReading json = json_.Read(text);
    ReadHead(json, reading);
    try {
      if (!json.error.IsEmpty()) {
        throw InputError{json.error};
      }
      if (json.value->kind == Kind::Array) {
        Refuse({"una lista non è una registrazione: si scrive un oggetto per riga",
                "an array is no entry: write one object a line"},
               {});
      }
      reading.entry =
          MakeEntry(Require(*json.value, Kind::Object, Wording{"una registrazione", "an entry"},
                            {"un oggetto JSON", "a JSON object"}));
    } catch (const InputError& error) {
      reading.error = error.why;
    }
    return reading;
  }

 private:
  Entry MakeEntry(const JsonValue& root) {
    for (const JsonValue& item : root.Items()) {
      if (!IsEntryKey(item.key)) {
        Refuse({"chiave sconosciuta %", "unknown key %"}, {QuotedText(item.key)});
      }
    }
    Entry entry;
    const std::string_view name = ReadText(root, "operation", kDefaultOperation);
    entry.operation = FindOperation(name);
    if (entry.operation == nullptr) {
      Refuse({"operazione sconosciuta %", "unknown operation %"}, {QuotedText(name)});
    }
    entry.arguments = ReadArguments(*entry.operation, root.Find("arguments"));
    rows_.resize(EntrySets().size());
    for (std::size_t i = 0; i < EntrySets().size(); ++i) {
      const EntrySet& set = EntrySets()[i];
      const JsonValue* const value = root.Find(set.name);
      if (value != nullptr && value->kind != Kind::Null) {
        entry.sets.push_back(ReadSet(set, *value, limits_.rows, rows_[i]));
      }
    }
    entry.isParcella = ReadFlag(root, "IsParcella");
    entry.isFromCard = ReadFlag(root, "IsFromCard");
    entry.tmpTableScadenze = ReadText(root, "TmpTableScadenze", "");
    return entry;
  }

  Limits limits_;
  JsonReader json_;
  std::vector<RowReader> rows_;  // by set
};

}  // namespace

bool HasEntryKey(const JsonValue& value) {
  return value.kind == Kind::Object &&
         std::ranges::any_of(value.Items(), IsEntryKey, &JsonValue::key);
}

EntryReading ReadEntry(std::string_view text, const Limits& limits) {
  auto& reader = OfThisThread<Reader>();
  if (reader.Allowed() != limits) {
    reader = Reader(limits);
  }
  return reader.Read(text);
}

}  // namespace kal::host
