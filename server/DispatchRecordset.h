// DispatchRecordset: a host's record set behind the core's interface, called by member names.
//
// The set itself is held as long as this object lives; the objects of its fields only until
// LetFieldsGo, which the component calls when an operation ends: a host may close and reopen its
// set between two operations, and what the component holds then is the set alone. A field that
// was handed out stays usable, and asks the set for its object again.
//
// BorrowedSets makes the record sets of one checker, those of its host and those of its siblings,
// and lets the fields of all of them go.
//
// Every call of a host's object may come back: to an event handler, or through a sibling that pumps
// messages. The checker's members may then be called within one of its members, on record sets that
// are in use further out. So fields are let go, and sets that were replaced meanwhile, when the
// outermost call ends.

#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Recordset.h"
#include "platform/RunTimeError.h"
#include "server/LateBound.h"

namespace kal {

class DispatchRecordset final : public Recordset {
 public:
  explicit DispatchRecordset(ComPtr<IDispatch> set) : set_(std::move(set), kRecordsetSource) {}

  [[nodiscard]] const Field& Fields(std::string_view name) override;
  [[nodiscard]] const Field& Fields(std::size_t index) override;
  [[nodiscard]] std::int32_t RecordCount() override { return CLng(set_.Get("RecordCount")); }
  [[nodiscard]] kal::EditMode EditMode() override {
    return static_cast<kal::EditMode>(CLng(set_.Get("EditMode")));
  }
  void Filter(std::string_view condition) override { set_.Put("Filter", condition); }
  void Filter(FilterGroup group) override { set_.Put("Filter", static_cast<std::int32_t>(group)); }
  // The row is there whatever its first value is: one that has no counterpart here is read too.
  [[nodiscard]] bool HasCurrentRow() noexcept override;
  void MoveFirst() override { set_.Do("MoveFirst"); }
  void MoveNext() override { set_.Do("MoveNext"); }
  void MoveLast() override { set_.Do("MoveLast"); }
  [[nodiscard]] bool Eof() override { return CBool(set_.Get("EOF")); }

  [[nodiscard]] const ComPtr<IDispatch>& Object() const { return set_.Object(); }
  // Raises 13 where the object behind it has not the members of a record set.
  void RequireMembers();
  void LetFieldsGo();

 private:
  class DispatchField final : public Field {
   public:
    DispatchField(DispatchRecordset& set, Variant key) : set_(set), key_(std::move(key)) {}

    [[nodiscard]] Variant Value() const override { return Object().Get("Value"); }
    [[nodiscard]] DataType Type() const override;
    // The field's object, fetched where it is not held. Raises 3265.
    LateBound& Object() const;
    void LetGo() const;

   private:
    DispatchRecordset& set_;
    Variant key_;  // name or place
    mutable std::optional<LateBound> object_;
    mutable std::optional<DataType> type_;
  };

  template <class Map, class Key>
  const DispatchField& Find(Map& fields, const Key& key, const Variant& name);
  [[nodiscard]] ComPtr<IDispatch> FieldObject(const Variant& key);

  LateBound set_;
  std::optional<LateBound> collection_;
  std::map<std::string, DispatchField, std::less<>> named_;
  std::map<std::size_t, DispatchField> placed_;
};

class BorrowedSets {
 public:
  // One call of a member, from its beginning to its end.
  class Use {
   public:
    explicit Use(BorrowedSets& sets);
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    ~Use();

   private:
    BorrowedSets& sets_;
  };

  // Nothing for Nothing.
  [[nodiscard]] RecordsetRef Borrow(const ComPtr<IDispatch>& set);
  // The same for what a host assigns, which may be anything. Raises 13 for what is no record set.
  [[nodiscard]] RecordsetRef BorrowFromHost(const ComPtr<IDispatch>& set);

 private:
  std::shared_ptr<DispatchRecordset> Add(const ComPtr<IDispatch>& set);

  std::vector<std::weak_ptr<DispatchRecordset>> sets_;     // owned by whoever was given them
  std::vector<std::shared_ptr<DispatchRecordset>> inUse_;  // by the outer ones of calls in calls
  int calls_ = 0;                                          // under way, one within the other
};

}  // namespace kal
