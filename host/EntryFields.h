// EntryFields: the record sets that an entry can carry, their fields, and how a JSON value
// becomes the value of a field.

#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "checker/KalCOGCheck.h"
#include "host/JsonText.h"
#include "platform/MemoryRecordset.h"
#include "platform/Wording.h"

namespace kal::host {

struct EntrySet {
  std::string_view name;  // the entry's key, and the checker's member
  void (KalCOGCheck::*assign)(Unread<RecordsetRef>);
};

// In the order in which results list them.
[[nodiscard]] std::span<const EntrySet> EntrySets();

// An empty table with the fields of that set.
[[nodiscard]] std::shared_ptr<RowTable> NewRowTable(const EntrySet& set);

// The value for a field of that type, Empty when it does not fit; Null fits every field.
[[nodiscard]] Variant FieldValue(const JsonValue& value, DataType type);
// What a field of that type takes, for messages: "a date (yyyy-mm-dd)".
[[nodiscard]] Wording WantedValue(DataType type);

}  // namespace kal::host
