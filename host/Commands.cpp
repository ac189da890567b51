#include "host/Commands.h"

#include <ostream>
#include <string>

#include "host/ExplainPages.h"

namespace kal::host {

int Complain(const Streams& streams, const Options& options, const Said& message) {
  streams.err << "kalcogcheck: " << message.In(LanguageOf(options)) << std::endl;
  return kExitTrouble;
}

int ComplainOfOutput(const Streams& streams, const Options& options) {
  return Complain(streams, options,
                  Say({"non si può scrivere sull'uscita", "standard output can't be written"}));
}

Said OutOfMemory() { return Say({"memoria esaurita", "out of memory"}); }

int Explain(const Options& options, const Streams& streams) {
  std::string text = PageList();
  if (!options.listPages) {
    const Message* const page = FindPage(options.page);
    if (page == nullptr) {
      return Complain(
          streams, options,
          Say({"%; explain --list li mostra tutti", "%; explain --list shows them all"},
              {options.page.empty()
                   ? Say({"explain vuole un codice o un nome", "explain takes a code or a name"})
                   : Say({"non c'è un messaggio %", "there is no message %"}, {options.page})}));
    }
    text = ToText(*page, LanguageOf(options));
  }
  streams.out << text << std::flush;
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

}  // namespace kal::host
