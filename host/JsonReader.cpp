#include <memory>

#include "host/JsonReaders.h"
#include "host/JsonText.h"
#include "host/JsonTree.h"

namespace kal::host {

class JsonReader::Memory {
 public:
  explicit Memory(const JsonLimits& limits) : tree_(limits) {}

  JsonReading Read(std::string_view text) {
    large_ = text.size() > kLarge;
    tree_.Start();
    try {
      JsonReading reading;
      if (quick_.Read(text, tree_)) {
        reading.value = &tree_.Finish();
      } else {
        tree_.Start();
        reading = ReadCarefully(text, tree_);
      }
      if (reading.error.IsEmpty()) {
        reading.error = RepeatedKeyError(tree_, text);
      }
      return reading;
    } catch (const JsonExcess& excess) {
      return {JsonReading::Ending::Wrong, &tree_.Finish(), excess.what};
    }
  }

  [[nodiscard]] bool IsLarge() const { return large_; }

 private:
  static constexpr std::size_t kLarge = 1U << 18U;

  bool large_ = false;
  QuickJson quick_;
  JsonTree tree_;
};

JsonReader::JsonReader(const JsonLimits& limits) : limits_(limits) {}
JsonReader::JsonReader(JsonReader&&) noexcept = default;
JsonReader& JsonReader::operator=(JsonReader&&) noexcept = default;
JsonReader::~JsonReader() = default;

JsonReading JsonReader::Read(std::string_view text) {
  // One large text does not hold its memory for all those that come after it.
  if (memory_ == nullptr || memory_->IsLarge()) {
    memory_ = std::make_unique<Memory>(limits_);
  }
  return memory_->Read(text);
}

}  // namespace kal::host
