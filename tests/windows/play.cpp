// kal_player early|late FILE...: decides recorded entries again through the DLL and says of each
// whether the decision is the recorded one, as "kalcogcheck replay" does, with its exit status.
//
// A decision is the same when every property of the component answers what was recorded, every
// record set is handed back as it was, an error has its number, source and description, the
// siblings were asked the same in the same order, and nothing of the host's is held afterwards.

#include <fstream>
#include <iostream>
#include <stdexcept>

#include "host/RecordingFile.h"
#include "host/Replay.h"
#include "platform/RunTimeError.h"
#include "tests/windows/Door.h"
#include "tests/windows/Doubles.h"

namespace kal::test {
namespace {

using host::JsonDocument;
using host::Replayed;

Siblings* theSiblings = nullptr;

std::string InJson(const Variant& value) {
  if (value.As<bool>() != nullptr) {
    return CBool(value) ? "true" : "false";
  }
  const auto* const amount = value.As<Currency>();
  return amount != nullptr            ? host::QuotedText(amount->ToFixedText())
         : value.AsText().has_value() ? host::QuotedText(CStr(value))
                                      : CStr(value);
}

// Another value for what the result holds under that key.
void Set(JsonDocument& result, std::string_view key, const std::string& json) {
  for (std::size_t at = 0; at < result.keys.size(); ++at) {
    if (result.keys[at] == key) {
      result.items[at] = host::ReadDocument(json).value;
    }
  }
}

// The component tells no findings but the texts that they make: those that stand in the strings are
// there, and what is left of the strings is a finding by itself.
std::string FindingsOf(const JsonDocument& result) {
  std::string findings;
  std::map<std::string, std::string> rest;
  for (std::size_t at = 0; at < result.keys.size(); ++at) {
    rest[result.keys[at]] = result.items[at].text;
  }
  for (const JsonDocument& finding : result.Find("findings")->items) {
    std::string& string = rest[finding.Find("string")->text];
    const std::string& text = finding.Find("text")->text;
    if (const std::size_t at = string.find(text); at != string.npos) {
      string.erase(at, text.size());
      findings += "," + ToText(finding);
    }
  }
  for (const auto& [name, left] : rest) {
    if (name.ends_with("String") && left.find_first_not_of("\r\n") != left.npos) {
      findings += ",{\"string\":" + InJson(name) + ",\"text\":" + InJson(left) + "}";
    }
  }
  return "[" + (findings.empty() ? "" : findings.substr(1)) + "]";
}

// What the component answers to the recorded entry, as the result that was recorded.
JsonDocument Decide(Recorded& recorded, JsonDocument result, Binding binding) {
  const std::pair<const char*, Variant> kProperties[] = {{"ErrString", ""},
                                                         {"WarnString", ""},
                                                         {"WarnProtocolloString", ""},
                                                         {"WarnDuplicatoDocString", ""},
                                                         {"WarnInfragruppoString", ""},
                                                         {"ImportoPlafond", Currency()},
                                                         {"ChiusuraRateInSospensione", false},
                                                         {"RiaperturaRateInSospensione", false},
                                                         {"IsInfragruppo", "False"}};
  std::string answer = "null";
  std::string error = "null";
  const auto attempt = [&](auto body) {
    try {
      body();
    } catch (const RunTimeError& raised) {
      answer = "null";
      error = error != "null" ? error
                              : "{\"number\":" + InJson(raised.Number()) +
                                    ",\"source\":" + InJson(raised.Source()) +
                                    ",\"description\":" + InJson(raised.Description()) + "}";
    }
  };
  Door door(binding);
  attempt([&] {
    door.Hand(recorded);
    answer = InJson(door.Ask(recorded.entry.operation->name, recorded.entry.arguments));
  });
  for (const auto& [name, none] : kProperties) {
    Set(result, name, InJson(none));
    attempt([&, of = name] { Set(result, of, InJson(door.Ask(of))); });
  }
  Set(result, "result", answer);
  Set(result, "error", error);
  Set(result, "findings", FindingsOf(result));
  std::string states;
  for (std::size_t at = 0; at < recorded.sets.size(); ++at) {
    const MemoryRecordset& set = *recorded.sets[at];
    states += (at == 0 ? "" : ",") + InJson(recorded.entry.sets[at].set->name) +
              ":{\"Filter\":" + InJson(set.FilterText()) +
              ",\"Position\":" + std::to_string(set.Position()) + "}";
  }
  Set(result, "recordSets", "{" + states + "}");
  return result;
}

// The first question that is another one, or was answered otherwise; "" where there is none.
std::string OtherQuestion(const records::Conversation& recorded,
                          const records::Conversation& asked) {
  const auto told = [](const records::Conversation& conversation, std::size_t at) {
    std::string line = "[none]";
    if (at < conversation.size()) {
      line.clear();
      host::AppendRecording(line, "", {conversation[at]}, "");
    }
    const std::size_t start = line.find('[');
    return line.substr(start, line.rfind(']') - start + 1);
  };
  for (std::size_t at = 0; at < std::max(recorded.size(), asked.size()); ++at) {
    if (const std::string now = told(asked, at), then = told(recorded, at); now != then) {
      return "question " + std::to_string(at + 1) + " is " + now + " in the place of " + then;
    }
  }
  return "";
}

Replayed Play(const host::EntryText& line, Binding binding) {
  Replayed replayed{.place = line.place, .error = line.error};
  std::string other;
  try {
    Recorded recorded(line.text);
    theSiblings = &recorded.siblings;
    replayed.recorded = host::ReadDocument(recorded.recording.result).value;
    if (replayed.recorded.Find("findings") == nullptr) {
      throw std::invalid_argument("the result is none of --json");
    }
    if (const JsonDocument* const id = replayed.recorded.Find("id")) {
      replayed.id.json = ToText(*id);
      if (id->kind != JsonDocument::Kind::Null) {
        replayed.id.name = id->kind == JsonDocument::Kind::Text ? id->text : replayed.id.json;
      }
    }
    replayed.now = Decide(recorded, replayed.recorded, binding);
    replayed.notRecorded = recorded.player.NotRecorded();
    host::Compare(replayed);
    if (replayed.again == host::Again::AsRecorded) {
      other = OtherQuestion(recorded.recording.conversation, recorded.asked);
    }
  } catch (const std::invalid_argument& error) {
    replayed.again = host::Again::Unreadable;
    replayed.error = host::Say({"%", "%"}, {error.what()});
    return replayed;
  }
  if (LiveDoubles() != 0) {
    other += std::to_string(LiveDoubles()) + " objects of the host are held";
  }
  if (!other.empty()) {
    replayed.again = host::Again::Different;
    std::cout << replayed.place.In(Language::English) << ": " << other << '\n';
  }
  return replayed;
}

int PlayAll(Binding binding, std::span<char*> files) {
  host::ReplayTally tally{};
  for (const char* const path : files) {
    std::ifstream stream(path, std::ios::binary);
    host::RecordingFile file(stream, path, {});
    if (!stream) {
      std::cout << path << ": the file can't be read\n";
      ++tally[static_cast<std::size_t>(host::Again::Unreadable)];
    }
    while (const auto line = file.Next()) {
      const Replayed replayed = Play(*line, binding);
      ++tally[static_cast<std::size_t>(replayed.again)];
      std::cout << host::ToBlock(replayed, {.language = Language::English});
    }
  }
  std::cout << host::ToSummary(tally, Language::English);
  const auto came = [&](host::Again again) { return tally[static_cast<std::size_t>(again)] != 0; };
  return came(host::Again::Unreadable)   ? 2
         : came(host::Again::Different)  ? 1
         : came(host::Again::AsRecorded) ? 0
                                         : 2;  // nothing was played
}

}  // namespace
}  // namespace kal::test

int main(int argc, char** argv) {
  using namespace kal::test;
  const std::string binding = argc > 2 ? argv[1] : "";
  if (binding != "early" && binding != "late") {
    std::cout << "kal_player early|late FILE...\n";
    return 2;
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  RegisterInThisProgram(theSiblings);
  const int status = PlayAll(binding == "early" ? Binding::Early : Binding::Late,
                             std::span(argv, static_cast<std::size_t>(argc)).subspan(2));
  DeleteClasses();
  CoUninitialize();
  return status;
}
