#include <memory>

#include "host/JsonReaders.h"
#include "host/JsonText.h"
#include "host/JsonTree.h"

namespace kal::host {

class JsonReader::Memory {
 public:
  JsonReading Read(std::string_view text) {
    large_ = text.size() > kLarge;
    tree_.Start();
    JsonReading reading;
    if (quick_.Read(text, tree_)) {
      reading.value = &tree_.Finish();
    } else {
      tree_.Start();
      reading = ReadCarefully(text, tree_);
    }
    if (reading.error.empty()) {
      reading.error = RepeatedKeyError(tree_);
    }
    return reading;
  }

  [[nodiscard]] bool IsLarge() const { return large_; }

 private:
  static constexpr std::size_t kLarge = 1U << 18U;

  bool large_ = false;
  QuickJson quick_;
  JsonTree tree_;
};

JsonReader::JsonReader() = default;
JsonReader::JsonReader(JsonReader&&) noexcept = default;
JsonReader& JsonReader::operator=(JsonReader&&) noexcept = default;
JsonReader::~JsonReader() = default;

JsonReading JsonReader::Read(std::string_view text) {
  // One large text does not hold its memory for all those that come after it.
  if (memory_ == nullptr || memory_->IsLarge()) {
    memory_ = std::make_unique<Memory>();
  }
  return memory_->Read(text);
}

}  // namespace kal::host
