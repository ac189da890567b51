// AddMessage against a plain retelling of its rule, over texts and parameters with placeholders.

#include "frame/modKalErrorHandling.h"
#include "fuzz/Input.h"
#include "platform/RunTimeError.h"

namespace {

using kal::fuzz::Require;
using namespace kal;

struct OneText final : Siblings {
  SiblingAnswer Ask(const SiblingCall& call) override {
    return {call.member == Member::KalStatus_GetMessage ? Variant(text) : Variant()};
  }
  std::string text;
};

// Counted from 1, 0 when there is none; as the rule counts.
std::size_t Place(const std::string& text) {
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == '%' && (text[i + 1] == 's' || text[i + 1] == 'S')) {
      return i + 1;
    }
  }
  return 0;
}

std::string Filled(std::string text, const std::string& value) {
  const std::size_t pos = Place(text);
  std::string left = text.substr(0, pos + 1);
  const std::string rest = text.size() > pos + 1 ? text.substr(pos + 1) : "";
  std::string replaced;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (left.compare(i, 2, "%s") == 0) {
      replaced += value;
      ++i;
    } else {
      replaced += left[i];
    }
  }
  return replaced + rest;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  OneText siblings;
  const std::string before = input.Text();
  siblings.text = input.Text();
  const Variant a = input.Value();
  const Variant b = input.Value();
  const bool bad = a.IsNull() || b.IsNull();
  Registrazione entry(siblings);
  const auto found = [&entry] { return entry.Rilievi.Text(ErrString); };
  try {
    Trap(entry, "KalCOGCheck.OkAggiorna", [&] {
      AppendLiteral(entry, ErrString, testi::kPlafondSuperato, before);
      AddMessage(entry, ErrString, MessageCode::ContoMancante, {a, b});
    });
    Require(!bad, "a Null parameter is refused");
    const std::string text = Filled(Filled(siblings.text, CStr(a)), CStr(b));
    Require(found() == (before.empty() ? text : before + "\r\n" + text), "placeholders are filled");
  } catch (const RunTimeError& error) {
    Require(bad && error.Number() == 94, "only Null is refused");
    Require(found() == before, "a refused message leaves the text");
  }
  return 0;
}
