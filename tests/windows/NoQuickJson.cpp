// The quick reader of JSON, where its library is not to be had: it leaves every text to the careful
// one.

#include "host/JsonReaders.h"

namespace kal::host {

struct QuickJson::Parser {};
QuickJson::QuickJson() = default;
QuickJson::~QuickJson() = default;
bool QuickJson::Read(std::string_view /*text*/, JsonTree& /*tree*/) { return false; }

}  // namespace kal::host
