// WrappedRecordset: a record set around another one, through which every call passes one function.
//
// It is for those who watch a record set, note what it does or make it fail. It knows no more of
// itself than every set must: what only some sets know is theirs to hand through.

#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/Recordset.h"

namespace kal {

class WrappedRecordset : public Recordset {
 public:
  explicit WrappedRecordset(RecordsetRef inner) : inner_(std::move(inner)) {}

  const Field& Fields(std::string_view name) override {
    return Found(std::string(name), [&]() -> const Field& { return inner_->Fields(name); });
  }
  const Field& Fields(std::size_t index) override {
    return Found(
        std::to_string(index), [&]() -> const Field& { return inner_->Fields(index); }, index == 0);
  }
  std::int32_t RecordCount() override {
    return Pass("RecordCount", {}, [&] { return inner_->RecordCount(); });
  }
  kal::EditMode EditMode() override {
    return Pass("EditMode", {}, [&] { return inner_->EditMode(); });
  }
  void Filter(std::string_view condition) override {
    Through("Filter", condition, [&] { inner_->Filter(condition); });
  }
  void Filter(FilterGroup group) override {
    Through("Filter", "0", [&] { inner_->Filter(group); });
  }
  void MoveFirst() override {
    Through("MoveFirst", {}, [&] { inner_->MoveFirst(); });
  }
  void MoveNext() override {
    Through("MoveNext", {}, [&] { inner_->MoveNext(); });
  }
  void MoveLast() override {
    Through("MoveLast", {}, [&] { inner_->MoveLast(); });
  }
  bool Eof() override {
    return Pass("Eof", {}, [&] { return inner_->Eof(); });
  }

 protected:
  using Call = std::function<void()>;

  // One call of a member: what it is for is the field's name or place where it is about a field,
  // the condition where it is a filter ("0" for none), else "". Whoever overrides it makes the
  // call.
  virtual void Through(std::string_view /*member*/, std::string_view /*of*/, const Call& call) {
    call();
  }
  // The value of a field that was asked for by name, or by its place, which may be the first.
  virtual kal::Variant Read(const Field& field, bool /*isFirst*/) { return field.Value(); }

  RecordsetRef inner_;

 private:
  // Final, never owned as Field.
  class WrappedField final  // NOLINT(cppcoreguidelines-virtual-class-destructor)
      : public Field {
   public:
    WrappedField(WrappedRecordset& set, std::string of, const Field& inner, bool isFirst)
        : set_(set), of_(std::move(of)), inner_(inner), isFirst_(isFirst) {}

    [[nodiscard]] kal::Variant Value() const override {
      return set_.Pass("Value", of_, [&] { return set_.Read(inner_, isFirst_); });
    }
    [[nodiscard]] DataType Type() const override {
      return set_.Pass("Type", of_, [&] { return inner_.Type(); });
    }

   private:
    WrappedRecordset& set_;
    std::string of_;
    const Field& inner_;
    bool isFirst_;
  };

  template <class Answer>
  std::invoke_result_t<Answer> Pass(std::string_view member, std::string_view of, Answer answer) {
    std::optional<std::invoke_result_t<Answer>> given;
    Through(member, of, [&] { given = answer(); });
    return *std::move(given);
  }
  template <class Find>
  const Field& Found(std::string of, Find find, bool isFirst = false) {
    const Field* field = nullptr;
    Through("Fields", of, [&] { field = &find(); });
    return fields_.emplace_back(*this, std::move(of), *field, isFirst);
  }

  std::deque<WrappedField> fields_;
};

}  // namespace kal
