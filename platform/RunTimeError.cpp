#include "platform/RunTimeError.h"

#include <exception>
#include <new>
#include <string>

namespace kal {

void Raise(RunTime number, std::string_view description, std::string_view source) {
  throw RunTimeError(static_cast<std::int32_t>(number), std::string(source),
                     std::string(description));
}

RunTimeError CurrentError() {
  const auto raisedHere = [](RunTime number, const std::string& description) {
    return RunTimeError(static_cast<std::int32_t>(number), std::string(kComponentName),
                        description);
  };
  try {
    throw;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return raisedHere(RunTime::OutOfMemory, "Out of memory");
  } catch (const std::exception& error) {
    return raisedHere(RunTime::InternalError, error.what());
  } catch (...) {
    return raisedHere(RunTime::InternalError, "Internal error");
  }
}

}  // namespace kal
