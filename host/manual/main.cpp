// kal_manual: writes the program's pages of the manual and the completions into a folder.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "host/manual/Completion.h"
#include "host/manual/Page.h"
#include "host/manual/Surface.h"

namespace kal::host {
namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << text).flush()) {
    throw std::runtime_error("can't write " + path.string());
  }
}

void WriteAll(const std::filesystem::path& folder) {
  const ProgramSurface italian = ReadSurface(Language::Italian);
  const ProgramSurface english = ReadSurface(Language::English);
  Write(folder / "kalcogcheck.1", ManualPage(english, Language::English));
  Write(folder / "kalcogcheck.it.1", ManualPage(italian, Language::Italian));
  Write(folder / "kalcogcheck.bash", BashCompletion(english));
  Write(folder / "_kalcogcheck", ZshCompletion(italian, english));
}

}  // namespace
}  // namespace kal::host

int main(int argc, char** argv) {
  try {
    kal::host::WriteAll(argc == 2 ? argv[1] : ".");
  } catch (const std::exception& error) {
    std::cerr << "kal_manual: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
