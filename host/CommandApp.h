// CommandApp: the commands of the program, their options, and what is said of each, stated once.
// The help, the manual pages and the completions of the shells are all made of it.
//
// What an option takes is the name of its value: words with "|" between them are all that it takes,
// kFile is a file, kCompany a company, kCode a message.

#pragma once

#include "host/Commands.h"
#include "platform/Wording.h"

namespace CLI {
class App;
}  // namespace CLI

namespace kal::host {

inline constexpr const char* kProgram = "kalcogcheck";
inline constexpr const char* kFile = "FILE";
inline constexpr const char* kCompany = "COMPANY";
inline constexpr const char* kCode = "CODE";

// What an exit status means; of the commands that are named, or of all others.
struct ExitStatus {
  int status;
  Wording commands;  // empty: all others
  Wording meaning;
};
inline constexpr ExitStatus kExitStatuses[] = {
    {kExitAllTrue, {}, {"ogni registrazione ha risposto True", "every entry answered True"}},
    {kExitSomeFalse, {}, {"almeno una ha risposto False", "at least one answered False"}},
    {kExitTrouble,
     {},
     {"almeno una non si è potuta controllare, o la chiamata era sbagliata",
      "at least one could not be checked, or the call was wrong"}},
    {kExitAllTrue, {"verify", "verify"}, {"l'azienda è sana", "the company is sound"}},
    {kExitSomeFalse, {"verify", "verify"}, {"almeno un difetto", "at least one flaw"}},
    {kExitTrouble, {"verify", "verify"}, {"non si è potuta leggere", "it could not be read"}},
    {kExitAllTrue, {"replay", "replay"}, {"tutte come registrate", "all as recorded"}},
    {kExitSomeFalse, {"replay", "replay"}, {"almeno una diversa", "at least one is different"}},
    {kExitTrouble,
     {"replay", "replay"},
     {"almeno una non si è potuta leggere", "at least one could not be read"}},
};

// Makes the program of an empty app. Parsing fills the options; what is shown and what is wrong
// with a value is said in that language.
void DescribeCommands(CLI::App& app, Options& options, Language language);

}  // namespace kal::host
