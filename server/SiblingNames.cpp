#include "server/SiblingNames.h"

#include <algorithm>

#include "platform/RunTimeError.h"
#include "server/Boundary.h"
#include "server/Conversion.h"
#include "server/Module.h"

namespace kal {
namespace {

constexpr std::int32_t kInvalidFileFormat = 321;  // of the language
constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == text.npos ? std::string_view()
                            : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::size_t FindKey(std::string_view text) {
  const auto found = std::ranges::find(names::kKeys, text, names::TextOf);
  return static_cast<std::size_t>(found - names::kKeys.begin());
}

class File {
 public:
  explicit File(const std::wstring& path)
      : handle_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)),
        failure_(IsOpen() ? ERROR_SUCCESS : GetLastError()) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (IsOpen()) {
      CloseHandle(handle_);
    }
  }

  [[nodiscard]] DWORD Failure() const { return failure_; }
  std::string ReadAll() {
    constexpr DWORD kAtOnce = 4096;
    std::string text;
    for (DWORD read = kAtOnce; read > 0 && failure_ == ERROR_SUCCESS;) {
      const std::size_t before = text.size();
      text.resize(before + kAtOnce);
      if (ReadFile(handle_, text.data() + before, kAtOnce, &read, nullptr) == FALSE) {
        failure_ = GetLastError();
      }
      text.resize(before + read);
    }
    return text;
  }

 private:
  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

  HANDLE handle_;
  DWORD failure_;
};

}  // namespace

SiblingNames::SiblingNames(std::string_view text, std::string_view path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const auto refuse = [&](const std::string& why) {
      throw RunTimeError(kInvalidFileFormat, std::string(kComponentName),
                         std::string(path) + ", line " + std::to_string(number) + ": " + why);
    };
    if (ToUtf8(ToUtf16(line)) != line) {
      refuse("no text in UTF-8");
    }
    const std::string_view said = Trimmed(line);
    if (said.empty() || said.front() == '#') {
      continue;
    }
    const std::size_t equals = said.find('=');
    if (equals == said.npos) {
      refuse("no line of the form 'key = name'");
    }
    const std::string key(Trimmed(said.substr(0, equals)));
    const std::string_view name = Trimmed(said.substr(equals + 1));
    const std::size_t place = FindKey(key);
    if (place == names::kKeys.size()) {
      refuse("unknown key '" + key + "'");
    }
    if (!others_[place].empty()) {
      refuse("key '" + key + "' for the second time");
    }
    if (name.empty() || name.find_first_of(kBlanks) != name.npos) {
      refuse("the name of '" + key + "' is no single word");
    }
    others_[place] = name;
  }
}

SiblingNames NamesBesideModule() {
  std::wstring path = ModulePath();
  path.replace(path.rfind(L'\\') + 1, path.npos, L"KalCOGCheck20.names");
  File file(path);
  const std::string text = file.ReadAll();
  if (file.Failure() == ERROR_FILE_NOT_FOUND) {
    return {};
  }
  if (file.Failure() != ERROR_SUCCESS) {
    throw RunTimeError(NumberOfResult(HRESULT_FROM_WIN32(file.Failure())),
                       std::string(kComponentName), "Can't read " + ToUtf8(path));
  }
  return {text, ToUtf8(path)};
}

}  // namespace kal
