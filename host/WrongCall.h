// WrongCall: what is wrong with a call of the program.

#pragma once

#include "host/Said.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace kal::host {

// Said of the app in which the parsing ended so.
[[nodiscard]] Said WrongCall(const CLI::ParseError& error, const CLI::App& app);

}  // namespace kal::host
