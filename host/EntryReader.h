// EntryReader: the JSON text of one journal entry becomes what the checker is given.
//
// A text that is no entry is never half used: it gives an error that says which record set, row
// and field, or which argument, is meant, together with the id and the operation as far as they
// could be read.
//
// The key "expected" may hold any value and is not looked at: it is for whoever keeps entries
// together with what they should answer, as host/samples/ does. There it is an object of the
// result and of each result string that is not empty, with the codes of its messages (the name,
// where a message is a literal text):
//   {"result": false, "ErrString": [10520, 10520], "WarnString": ["XmlGenerato"]}

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/EntryFields.h"
#include "host/Limits.h"
#include "host/Operations.h"
#include "host/Said.h"
#include "platform/MemoryRecordset.h"
#include "platform/Variant.h"

namespace kal::host {

struct SuppliedSet {
  const EntrySet* set = nullptr;
  std::shared_ptr<const RowTable> rows{};
  EditMode editMode = EditMode::None;
};

struct Entry {
  const Operation* operation = nullptr;
  std::vector<Variant> arguments;
  std::vector<SuppliedSet> sets;  // in the order of EntrySets; those left out are Nothing
  bool isParcella = false;
  bool isFromCard = false;
  std::string tmpTableScadenze;
};

struct EntryId {
  std::string json = "null";        // on one line
  std::optional<std::string> name;  // for people: a text's own words; nothing when it is null
};

struct EntryReading {
  EntryId id;
  std::optional<std::string> operation;  // its name, known or not; nothing when unreadable
  std::optional<Entry> entry;            // nothing when there is an error
  Said error;                            // empty when there is none
};

// Whether the value is an object with at least one of an entry's keys.
[[nodiscard]] bool HasEntryKey(const JsonValue& value);

[[nodiscard]] EntryReading ReadEntry(std::string_view text, const Limits& limits = {});

}  // namespace kal::host
