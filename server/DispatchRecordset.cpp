#include "server/DispatchRecordset.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kal {

// The collection is asked for without arguments and then for its item: of all ways to write it
// the one that every record set understands.
ComPtr<IDispatch> DispatchRecordset::FieldObject(const Variant& key) {
  if (!collection_) {
    collection_.emplace(set_.GetObject("Fields"), kRecordsetSource);
  }
  return collection_->GetObject("Item", {&key, 1});
}

LateBound& DispatchRecordset::DispatchField::Object() const {
  if (!object_) {
    object_.emplace(set_.FieldObject(key_), kRecordsetSource);
  }
  return *object_;
}

DataType DispatchRecordset::DispatchField::Type() const {
  if (!type_) {
    type_ = static_cast<DataType>(CLng(Object().Get("Type")));
  }
  return *type_;
}

void DispatchRecordset::DispatchField::LetGo() const {
  std::optional<LateBound> gone;
  gone.swap(object_);  // letting go is a call as well
  type_.reset();
}

template <class Map, class Key>
const DispatchRecordset::DispatchField& DispatchRecordset::Find(Map& fields, const Key& key,
                                                                const Variant& name) {
  auto found = fields.find(key);
  if (found == fields.end()) {
    found = fields.try_emplace(typename Map::key_type(key), *this, name).first;
  }
  (void)found->second.Object();  // a field that is not there is an error now, not when it is read
  return found->second;
}

const Field& DispatchRecordset::Fields(std::string_view name) { return Find(named_, name, name); }

const Field& DispatchRecordset::Fields(std::size_t index) {
  return Find(placed_, index, static_cast<std::int32_t>(index));
}

bool DispatchRecordset::HasCurrentRow() noexcept {
  try {
    (void)Find(placed_, std::size_t{0}, std::int32_t{0}).Object().GetAsItIs("Value");
    return true;
  } catch (...) {
    return false;
  }
}

void DispatchRecordset::RequireMembers() {
  for (const char* const member : {"Fields", "RecordCount", "EditMode", "Filter", "MoveFirst",
                                   "MoveNext", "MoveLast", "EOF"}) {
    if (!set_.Has(member)) {
      Raise(RunTime::TypeMismatch,
            "Type mismatch: the object is no record set, it has no member '" + std::string(member) +
                "'");
    }
  }
}

void DispatchRecordset::LetFieldsGo() {
  for (const auto& [name, field] : named_) {
    field.LetGo();
  }
  for (const auto& [place, field] : placed_) {
    field.LetGo();
  }
  std::optional<LateBound> gone;
  gone.swap(collection_);
}

BorrowedSets::Use::Use(BorrowedSets& sets) : sets_(sets) {
  if (sets_.calls_ > 0) {
    for (const std::weak_ptr<DispatchRecordset>& one : sets_.sets_) {
      if (auto set = one.lock();
          set && std::ranges::find(sets_.inUse_, set) == sets_.inUse_.end()) {
        sets_.inUse_.push_back(std::move(set));
      }
    }
  }
  ++sets_.calls_;
}

BorrowedSets::Use::~Use() {
  if (sets_.calls_ == 1) {
    for (std::size_t at = 0; at < sets_.sets_.size(); ++at) {  // there may be more on the way
      if (const auto set = sets_.sets_[at].lock()) {
        set->LetFieldsGo();
      }
    }
    const auto gone = std::exchange(sets_.inUse_, {});  // which calls the host, too
  }
  --sets_.calls_;
}

std::shared_ptr<DispatchRecordset> BorrowedSets::Add(const ComPtr<IDispatch>& set) {
  auto rows = std::make_shared<DispatchRecordset>(set);
  std::erase_if(sets_, [](const auto& one) { return one.expired(); });
  sets_.push_back(rows);
  return rows;
}

RecordsetRef BorrowedSets::Borrow(const ComPtr<IDispatch>& set) {
  return set ? RecordsetRef(Add(set)) : nullptr;
}

RecordsetRef BorrowedSets::BorrowFromHost(const ComPtr<IDispatch>& set) {
  if (!set) {
    return nullptr;
  }
  auto rows = Add(set);
  rows->RequireMembers();
  return rows;
}

}  // namespace kal
