#include "host/JsonTree.h"

namespace kal::host {

void JsonTree::Start() {
  values_.clear();
  kept_.clear();
  depth_ = 0;
  key_ = {};
  keys_.ForgetMany();
  repeatedKey_ = nullptr;
}

void JsonTree::Add(JsonValue::Kind kind, std::string_view text) {
  values_.push_back({.kind = kind, .key = key_, .text = text});
  key_ = {};
}

void JsonTree::AddBoolean(bool value) {
  Add(JsonValue::Kind::Boolean, {});
  values_.back().boolean = value;
}

bool JsonTree::Open(JsonValue::Kind kind) {
  if (depth_ == open_.size()) {
    return false;
  }
  open_[depth_++] = {values_.size(), &keys_.WithoutKeys()};
  Add(kind, {});
  return true;
}

void JsonTree::Close() {
  const Opened& closed = open_[--depth_];
  JsonValue& value = values_[closed.place];
  value.extent = values_.size() - closed.place;
  value.keys = closed.keys->number;
  if (repeatedKey_ == nullptr) {
    repeatedKey_ = JsonKeys::RepeatedKey(*closed.keys);
  }
}

void JsonTree::Key(std::string_view key) {
  Opened& object = open_[depth_ - 1];
  object.keys = &keys_.Append(*object.keys, key);
  key_ = object.keys->key;
}

bool JsonTree::LikelyKey(std::string_view text) {
  Opened& object = open_[depth_ - 1];
  JsonKeyList* const longer = object.keys->latest;
  if (longer == nullptr || longer->quoted.empty() || !text.starts_with(longer->quoted)) {
    return false;
  }
  object.keys = longer;
  key_ = longer->key;
  return true;
}

const JsonValue& JsonTree::Finish() {
  if (depth_ > 1) {
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(open_[1].place), values_.end());
  }
  if (values_.empty()) {
    values_.emplace_back();
  }
  if (depth_ > 0) {
    values_.front().extent = values_.size();
  }
  return values_.front();
}

std::string RepeatedKeyError(const JsonTree& tree) {
  return tree.RepeatedKey() == nullptr
             ? std::string()
             : "the key " + QuotedText(*tree.RepeatedKey()) + " is given twice in one object";
}

}  // namespace kal::host
