#include <cstddef>
#include <ostream>
#include <string>

#include "company/Company.h"
#include "company/Schema.h"
#include "company/Verify.h"
#include "company/postgres/ServerCompany.h"
#include "host/Commands.h"
#include "host/FlawReport.h"
#include "host/Interrupt.h"
#include "platform/RunTimeError.h"

namespace kal::host {
namespace {

std::string MadeLine(const std::string& company, const Options& options) {
  const Language language = LanguageOf(options);
  std::string line =
      Say({"creata l'azienda %: % tabelle, testi dei messaggi in italiano e in inglese",
           "made the company %: % tables, message texts in Italian and English"},
          {company, std::to_string(company::Tables().size())})
          .In(language);
  if (options.withSample) {
    line += Wording{", dati di esempio", ", sample data"}.In(language);
  }
  if (!options.rowsFrom.empty()) {
    line += Say({", le righe di %", ", the rows of %"}, {options.rowsFrom}).In(language);
  }
  return line + "\n";
}

// Ctrl-C ends it in the middle: the server takes back what was not whole.
int InitOnServer(const Options& options, const Streams& streams) {
  try {
    const company::MadeOnServer made =
        options.rowsFrom.empty()
            ? company::CreateServerCompany(options.newCompany, options.withSample)
            : company::CopyToServer(options.rowsFrom, options.newCompany);
    streams.out << MadeLine(made.name, options)
                << Wording{"a un utente che controlla servono questi diritti e nessun altro:\n",
                           "a user who checks needs these rights and no others:\n"}
                       .In(LanguageOf(options))
                << made.grants << std::flush;
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può creare l'azienda %: %", "can't make the company %: %"},
                        {company::ShownName(options.newCompany), error.Description()}));
  }
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

}  // namespace

int Init(const Options& options, const Streams& streams) {
  if (company::IsOnServer(options.newCompany)) {
    return InitOnServer(options, streams);
  }
  if (!options.rowsFrom.empty()) {
    return Complain(streams, options,
                    Say({"--from serve per un'azienda su un server; un file si copia come un file",
                         "--from is for a company on a server; a file is copied as a file"},
                        {}));
  }
  try {
    const Unstoppable made;
    company::CreateCompany(options.newCompany, options.withSample);
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può creare l'azienda %: %", "can't make the company %: %"},
                        {options.newCompany, error.Description()}));
  }
  streams.out << MadeLine(options.newCompany, options) << std::flush;
  return streams.out ? kExitAllTrue : ComplainOfOutput(streams, options);
}

int Verify(const Options& options, const Streams& streams) {
  const Language language = LanguageOf(options);
  std::size_t flaws = 0;
  try {
    company::Verify(options.company, [&](const company::Flaw& flaw) {
      ++flaws;
      streams.out << ToText(flaw, language) << std::flush;
    });
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può verificare l'azienda %: %", "can't verify the company %: %"},
                        {company::ShownName(options.company), error.Description()}));
  }
  streams.out << (flaws == 0 ? Wording{"nessun difetto", "no flaws"}.In(language)
                             : Wording{"difetti: ", "flaws: "}.In(language) + std::to_string(flaws))
              << std::endl;
  if (!streams.out) {
    return ComplainOfOutput(streams, options);
  }
  return flaws == 0 ? kExitAllTrue : kExitSomeFalse;
}

}  // namespace kal::host
