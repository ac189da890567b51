#include "host/WholeFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "host/Interrupt.h"

namespace kal::host {

namespace fs = std::filesystem;

std::string WriteWholeFile(const std::string& path,
                           const std::function<void(std::ostream&)>& write) {
  std::error_code none;
  const fs::file_status there = fs::status(path, none);
  const bool isDevice = fs::exists(there) && !fs::is_regular_file(there);
  // A link stays one, to the new file.
  const fs::path place =
      fs::exists(there) && !isDevice ? fs::canonical(path, none) : fs::path(path);
  const fs::path made =
      isDevice ? place : fs::path(place.string() + ".part" + std::to_string(getpid()));
  std::optional<Unstoppable> whole;  // a device may never take it
  if (!isDevice) {
    whole.emplace();
  }
  errno = 0;
  std::ofstream stream(made, std::ios::binary);
  if (stream) {
    write(stream);
    stream.close();
  }
  if (!stream) {
    const int why = errno;
    if (!isDevice) {
      fs::remove(made, none);
    }
    return std::strerror(why);
  }
  std::error_code refused;
  if (!isDevice) {
    fs::rename(made, place, refused);
    if (refused) {
      fs::remove(made, none);
    }
  }
  return refused ? refused.message() : "";
}

}  // namespace kal::host
