#include "host/ExplainPages.h"

#include <algorithm>
#include <cstdint>

#include "host/Wording.h"

namespace kal::host {
namespace {

std::string CodeText(const Message& message) {
  return message.code ? std::to_string(static_cast<std::int32_t>(*message.code)) : "-";
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, text.size() + 1), ' ');
  return padded;
}

}  // namespace

const Message* FindPage(std::string_view codeOrName) {
  const std::span<const Message> messages = Catalogue();
  const auto found = std::ranges::find_if(messages, [&](const Message& message) {
    return message.name == codeOrName || (message.code && CodeText(message) == codeOrName);
  });
  return found == messages.end() ? nullptr : &*found;
}

std::string ToText(const Message& message, Language language) {
  const auto part = [&](const Wording& heading, std::string_view text) {
    return '\n' + heading.In(language) + '\n' + Wrapped(text, 2);
  };
  const std::string sample =
      message.sample.empty() ? Wording{"nessuno: l'azienda di esempio non ha attività IVA separate",
                                       "none: the sample company has no separate VAT activities"}
                                   .In(language)
                             : "host/samples/" + std::string(message.sample) + ".json";
  return CodeText(message) + ' ' + std::string(message.name) + '\n' +
         Wrapped(message.text.In(language), 2) + part({"Controllo", "Check"}, message.check) +
         part({"Che cosa protegge", "What it protects"}, message.protects.In(language)) +
         part({"Quando compare", "When it arises"}, message.when.In(language)) +
         part({"Che cosa fare", "What to do"}, message.remedy.In(language)) +
         part({"Esempio", "Example"}, sample);
}

std::string PageList() {
  std::string list;
  for (const Message& message : Catalogue()) {
    list += Padded(CodeText(message), 6) + Padded(message.name, 34) + Padded(message.check, 37) +
            std::string(message.sample.empty() ? "-" : message.sample) + '\n';
  }
  return list;
}

}  // namespace kal::host
