#include "host/manual/Completion.h"

#include "host/CommandApp.h"
#include "messages/Catalogue.h"

namespace kal::host {
namespace {

std::string Joined(const std::vector<std::string>& words, const std::string& between) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : between) + word;
  }
  return text;
}

// Codes and names, as explain takes them.
std::vector<std::string> Messages() {
  std::vector<std::string> words;
  for (const Message& message : Catalogue()) {
    if (message.code) {
      words.push_back(std::to_string(static_cast<int>(*message.code)));
    }
    words.emplace_back(message.name);
  }
  return words;
}

bool IsPath(const OptionSurface& option) {
  return option.takes == kFile || option.takes == kCompany;
}

// All that the option takes, where it is a list of words.
std::vector<std::string> WordsOf(const OptionSurface& option) {
  if (option.takes == kCode) {
    return Messages();
  }
  return option.takes.find('|') == std::string::npos ? std::vector<std::string>()
                                                     : Parts(option.takes, '|');
}

// What bash does with a word in the place of that value.
std::string BashValue(const OptionSurface& option) {
  if (IsPath(option)) {
    return "_kalcogcheck_files";
  }
  const std::vector<std::string> words = WordsOf(option);
  return words.empty() ? ":" : "_kalcogcheck_words '" + Joined(words, " ") + "'";
}

// A line of "case $command:$previous in" for each option with a value, one for what else is named
// by dashes, one for the arguments.
std::string BashCases(const CommandSurface& command, const std::string& name,
                      const std::string& otherwise) {
  std::string values;
  std::vector<std::string> names;
  std::string argument = otherwise;
  for (const OptionSurface& option : command.options) {
    if (option.isArgument) {
      argument = BashValue(option);
      continue;
    }
    names.insert(names.end(), option.names.begin(), option.names.end());
    if (!option.takes.empty()) {
      values += "    " + name + ":" + Joined(option.names, "|" + name + ":") + ") " +
                BashValue(option) + " ;;\n";
    }
  }
  return values + "    " + name + ":*)\n      if [[ $current == -* ]]; then _kalcogcheck_words '" +
         Joined(names, " ") + "'\n      else " + argument + "\n      fi ;;\n";
}

std::vector<std::string> Names(const std::vector<CommandSurface>& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const CommandSurface& command : commands) {
    names.push_back(command.name);
  }
  return names;
}

std::string Replaced(std::string text, char what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, 1, by);
  }
  return text;
}

// In single quotes, with what means something to zsh's _arguments taken literally.
std::string ZshText(std::string text) {
  for (const char c : {'\\', '[', ']', ':'}) {
    text = Replaced(text, c, std::string("\\") + c);
  }
  return Replaced(text, '\'', "'\\''");
}

// An option, or an argument, as _arguments takes it.
std::string ZshElement(const OptionSurface& option) {
  std::string value;
  if (!option.takes.empty()) {
    const std::vector<std::string> words = WordsOf(option);
    value = ":" + (words.empty() ? option.takes + ":" + (IsPath(option) ? "_files" : " ")
                                 : "value:(" + Joined(words, " ") + ")");
  }
  if (option.isArgument) {
    return "'" +
           std::string(option.isRepeated   ? "*"
                       : option.isRequired ? "1"
                                           : "1:") +
           value + "'";
  }
  std::vector<std::string> others = option.without;
  others.insert(others.end(), option.names.begin(), option.names.end());
  const std::string before = "'(" + Joined(others, " ") + ")";
  const std::string behind = "[" + ZshText(option.says) + "]" + value + "'";
  return before + Joined(option.names, behind + " " + before) + behind;
}

std::string ZshArray(const CommandSurface& command, const std::string& name) {
  std::string text = "    " + name + "=(\n";
  for (const OptionSurface& option : command.options) {
    text += "      " + ZshElement(option) + "\n";
  }
  return text + "    )\n";
}

std::string ZshArrays(const ProgramSurface& surface) {
  std::string text = ZshArray(surface.program, "program") + "    commands=(\n";
  for (const CommandSurface& command : surface.commands) {
    text += "      '" + command.name + ":" + ZshText(command.says) + "'\n";
  }
  text += "    )\n";
  for (const CommandSurface& command : surface.commands) {
    text += ZshArray(command, "of_" + command.name);
  }
  return text;
}

}  // namespace

std::string BashCompletion(const ProgramSurface& surface) {
  const std::vector<std::string> commands = Names(surface.commands);
  std::string cases =
      BashCases(surface.program, "", "_kalcogcheck_words '" + Joined(commands, " ") + "'");
  for (const CommandSurface& command : surface.commands) {
    cases += BashCases(command, command.name, ":");
  }
  return R"(# bash completion for kalcogcheck

_kalcogcheck_words() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

_kalcogcheck_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

_kalcogcheck() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' i
  COMPREPLY=()
  # "--lang=it" comes as three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      )" +
         Joined(commands, "|") +
         R"()
        command=${COMP_WORDS[i]}
        break ;;
    esac
  done
  case $command:$previous in
)" + cases +
         R"(  esac
}

complete -F _kalcogcheck kalcogcheck
)";
}

std::string ZshCompletion(const ProgramSurface& italian, const ProgramSurface& english) {
  std::string arrays;
  for (const std::string& name : Names(english.commands)) {
    arrays += " of_" + name;
  }
  return R"(#compdef kalcogcheck
# zsh completion for kalcogcheck

_kalcogcheck() {
  local curcontext=$curcontext state line
  local -A opt_args
  local -a program commands)" +
         arrays + R"(
  if [[ ${LC_ALL:-${LC_MESSAGES:-$LANG}} == it* ]]; then
)" + ZshArrays(italian) +
         "  else\n" + ZshArrays(english) + R"(  fi
  _arguments -C $program '1: :->command' '*:: :->rest'
  case $state in
    command) _describe -t commands command commands ;;
    rest)
      local name=of_$words[1]
      (( ${(P)#name} )) && _arguments "${(@P)name}" ;;
  esac
}

_kalcogcheck "$@"
)";
}

}  // namespace kal::host
