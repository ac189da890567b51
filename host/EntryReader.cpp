#include "host/EntryReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "host/JsonText.h"

namespace kal::host {
namespace {

using Kind = JsonValue::Kind;

constexpr std::string_view kDefaultOperation = "OkAggiorna";
constexpr std::size_t kLongestQuotedValue = 60;

class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

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

const JsonValue& Require(const JsonValue& value, Kind kind, const std::string& what,
                         std::string_view wanted) {
  if (value.kind != kind) {
    throw InputError(what + " must be " + std::string(wanted) + ", not " + Shown(value));
  }
  return value;
}

std::string RowName(std::string_view set, std::size_t row) {
  return std::string(set) + " row " + std::to_string(row + 1);
}

std::vector<Variant> ReadRow(const RowTable& table, const JsonValue& row, std::string_view set,
                             std::size_t index) {
  if (row.kind != Kind::Object) {
    throw InputError(RowName(set, index) + " must be an object, not " + Shown(row));
  }
  std::vector<Variant> values(table.Columns().size(), Variant(Null));
  std::vector<bool> given(values.size(), false);
  for (std::size_t i = 0; i < row.items.size(); ++i) {
    const std::ptrdiff_t place = table.FindColumn(row.keys[i]);
    if (place < 0) {
      throw InputError(RowName(set, index) + " has an unknown field " + QuotedText(row.keys[i]));
    }
    const auto column = static_cast<std::size_t>(place);
    if (given[column]) {
      throw InputError(RowName(set, index) + ", field " + QuotedText(row.keys[i]) +
                       ": given twice");
    }
    given[column] = true;
    const DataType type = table.Columns()[column].type;
    std::optional<Variant> value = FieldValue(row.items[i], type);
    if (!value) {
      throw InputError(RowName(set, index) + ", field " + QuotedText(row.keys[i]) + ": " +
                       Shown(row.items[i]) + " is not " + std::string(WantedValue(type)));
    }
    values[column] = *std::move(value);
  }
  return values;
}

EditMode ReadEditMode(const JsonValue& value, std::string_view set) {
  constexpr std::array kModes = {EditMode::None, EditMode::InProgress, EditMode::Add,
                                 EditMode::Delete};
  const auto number =
      value.kind == Kind::Null ? std::nullopt : FieldValue(value, DataType::Integer);
  const std::int32_t* const mode = number ? number->As<std::int32_t>() : nullptr;
  const auto known = std::ranges::find_if(kModes, [&](EditMode candidate) {
    return mode != nullptr && static_cast<std::int32_t>(candidate) == *mode;
  });
  if (known == kModes.end()) {
    throw InputError(std::string(set) + ": EditMode must be 0, 1, 2 or 4, not " + Shown(value));
  }
  return *known;
}

SuppliedSet ReadSet(const EntrySet& set, const JsonValue& value) {
  Require(value, Kind::Object, std::string(set.name), "an object with rows, or null");
  SuppliedSet supplied{.set = &set};
  const JsonValue* rows = nullptr;
  for (std::size_t i = 0; i < value.items.size(); ++i) {
    if (value.keys[i] == "EditMode") {
      supplied.editMode = ReadEditMode(value.items[i], set.name);
    } else if (value.keys[i] == "rows") {
      rows = &value.items[i];
    } else {
      throw InputError(std::string(set.name) + " has an unknown key " + QuotedText(value.keys[i]));
    }
  }
  if (rows == nullptr) {
    throw InputError(std::string(set.name) + " has no rows: write \"rows\": [] for a set without");
  }
  Require(*rows, Kind::Array, std::string(set.name) + ": rows", "an array");
  const auto table = NewRowTable(set);
  for (std::size_t i = 0; i < rows->items.size(); ++i) {
    table->AddRow(ReadRow(*table, rows->items[i], set.name, i));
  }
  supplied.rows = table;
  return supplied;
}

std::optional<Variant> ArgumentValue(const JsonValue& value, ArgumentKind kind) {
  constexpr std::array kTypes = {DataType::Boolean, DataType::SmallInt, DataType::Integer,
                                 DataType::VarWChar, DataType::Date};
  if (kind == ArgumentKind::Day) {
    if (value.kind == Kind::Text && value.text.empty()) {
      return Variant("");
    }
  } else if (value.kind == Kind::Null) {
    return std::nullopt;
  }
  return FieldValue(value, kTypes[static_cast<std::size_t>(kind)]);
}

std::string_view WantedArgument(ArgumentKind kind) {
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
  return "a date (yyyy-mm-dd), \"\" or null";
}

std::vector<Variant> ReadArguments(const Operation& operation, const JsonValue* given) {
  static const JsonValue kNone{.kind = Kind::Array};
  const JsonValue& list =
      given == nullptr ? kNone : Require(*given, Kind::Array, "arguments", "an array");
  if (list.items.empty() && operation.name == kDefaultOperation) {
    return {true, true};
  }
  const std::string name(operation.name);
  if (list.items.size() != operation.arguments.size()) {
    throw InputError(name + " takes " + std::to_string(operation.arguments.size()) +
                     " arguments, not " + std::to_string(list.items.size()));
  }
  std::vector<Variant> values;
  for (std::size_t i = 0; i < list.items.size(); ++i) {
    const ArgumentKind kind = operation.arguments[i];
    std::optional<Variant> value = ArgumentValue(list.items[i], kind);
    if (!value) {
      throw InputError(name + " argument " + std::to_string(i + 1) + " must be " +
                       std::string(WantedArgument(kind)) + ", not " + Shown(list.items[i]));
    }
    values.push_back(*std::move(value));
  }
  return values;
}

bool IsEntryKey(std::string_view key) {
  constexpr std::array<std::string_view, 7> kOtherKeys = {
      "operation", "arguments", "id", "expected", "IsParcella", "IsFromCard", "TmpTableScadenze"};
  return std::ranges::find(kOtherKeys, key) != kOtherKeys.end() ||
         std::ranges::find(EntrySets(), key, &EntrySet::name) != EntrySets().end();
}

bool ReadFlag(const JsonValue& root, const std::string& key) {
  const JsonValue* const value = root.Find(key);
  return value != nullptr && Require(*value, Kind::Boolean, key, "true or false").boolean;
}

std::string ReadText(const JsonValue& root, const std::string& key, std::string_view missing) {
  const JsonValue* const value = root.Find(key);
  return value == nullptr ? std::string(missing) : Require(*value, Kind::Text, key, "a text").text;
}

Entry MakeEntry(const JsonValue& root) {
  const auto unknown = std::ranges::find_if_not(root.keys, IsEntryKey);
  if (unknown != root.keys.end()) {
    throw InputError("unknown key " + QuotedText(*unknown));
  }
  Entry entry;
  const std::string name = ReadText(root, "operation", kDefaultOperation);
  entry.operation = FindOperation(name);
  if (entry.operation == nullptr) {
    throw InputError("unknown operation " + QuotedText(name));
  }
  entry.arguments = ReadArguments(*entry.operation, root.Find("arguments"));
  for (const EntrySet& set : EntrySets()) {
    const JsonValue* const value = root.Find(set.name);
    if (value != nullptr && value->kind != Kind::Null) {
      entry.sets.push_back(ReadSet(set, *value));
    }
  }
  entry.isParcella = ReadFlag(root, "IsParcella");
  entry.isFromCard = ReadFlag(root, "IsFromCard");
  entry.tmpTableScadenze = ReadText(root, "TmpTableScadenze", "");
  return entry;
}

// The id and the operation, also of a text that broke off behind them.
void ReadHead(const JsonReading& json, EntryReading& reading) {
  if (const JsonValue* const id = json.value.Find("id")) {
    reading.id = *id;
  }
  const JsonValue* const operation = json.value.Find("operation");
  if (operation != nullptr && operation->kind == Kind::Text) {
    reading.operation = operation->text;
  } else if (operation == nullptr && json.value.kind == Kind::Object &&
             json.ending == JsonReading::Ending::Complete) {
    reading.operation = kDefaultOperation;
  }
}

}  // namespace

bool HasEntryKey(const JsonValue& value) { return std::ranges::any_of(value.keys, IsEntryKey); }

EntryReading ReadEntry(std::string_view text) {
  EntryReading reading;
  const JsonReading json = ReadJson(text);
  ReadHead(json, reading);
  try {
    if (!json.error.empty()) {
      throw InputError(json.error);
    }
    if (json.value.kind == Kind::Array) {
      throw InputError("an array is no entry: write one object a line");
    }
    reading.entry = MakeEntry(Require(json.value, Kind::Object, "an entry", "a JSON object"));
  } catch (const InputError& error) {
    reading.error = error.what();
  }
  return reading;
}

}  // namespace kal::host
