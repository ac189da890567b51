#include "server/DispatchRecordset.h"

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
  object_.reset();
  type_.reset();
}

template <class Map, class Key>
const Field& DispatchRecordset::Find(Map& fields, const Key& key, const Variant& name) {
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

void DispatchRecordset::LetFieldsGo() {
  for (const auto& [name, field] : named_) {
    field.LetGo();
  }
  for (const auto& [place, field] : placed_) {
    field.LetGo();
  }
  collection_.reset();
}

RecordsetRef BorrowedSets::Borrow(const ComPtr<IDispatch>& set) {
  if (!set) {
    return nullptr;
  }
  const auto rows = std::make_shared<DispatchRecordset>(set);
  std::erase_if(sets_, [](const auto& one) { return one.expired(); });
  sets_.push_back(rows);
  return rows;
}

void BorrowedSets::LetFieldsGo() {
  for (const std::weak_ptr<DispatchRecordset>& one : sets_) {
    if (const auto set = one.lock()) {
      set->LetFieldsGo();
    }
  }
}

}  // namespace kal
