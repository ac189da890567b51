#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/Replay.h"

namespace kal::host {
namespace {

using Kind = JsonDocument::Kind;

constexpr std::string_view kFindings = "findings";

// Whether everything that was recorded is there now.
bool Holds(const JsonDocument& now, const JsonDocument& recorded) {
  if (now.kind != recorded.kind || now.boolean != recorded.boolean || now.text != recorded.text) {
    return false;
  }
  if (recorded.kind == Kind::Array) {
    return std::ranges::equal(now.items, recorded.items, Holds);
  }
  for (std::size_t i = 0; i < recorded.items.size(); ++i) {
    const JsonDocument* const same = now.Find(recorded.keys[i]);
    if (same == nullptr || !Holds(*same, recorded.items[i])) {
      return false;
    }
  }
  return true;
}

struct OnlyThere {
  std::vector<const JsonDocument*> recorded;
  std::vector<const JsonDocument*> now;
};

// The findings that stand in one of the results alone.
OnlyThere Apart(const JsonDocument& recorded, const JsonDocument& now) {
  const auto of = [](const JsonDocument& result) {
    std::vector<const JsonDocument*> findings;
    if (const JsonDocument* const list = result.Find(kFindings)) {
      for (const JsonDocument& finding : list->items) {
        findings.push_back(&finding);
      }
    }
    return findings;
  };
  OnlyThere apart{{}, of(now)};
  for (const JsonDocument* const finding : of(recorded)) {
    const auto same = std::ranges::find_if(
        apart.now, [&](const JsonDocument* one) { return Holds(*one, *finding); });
    if (same == apart.now.end()) {
      apart.recorded.push_back(finding);
    } else {
      apart.now.erase(same);
    }
  }
  return apart;
}

// The part of that name as people read it: a text as such, an error as its number, description and
// trail.
std::string Shown(const JsonDocument& object, std::string_view key) {
  const JsonDocument* const value = object.Find(key);
  if (value == nullptr || value->kind == Kind::Text) {
    return value == nullptr ? "" : value->text;
  }
  if (key != "error" || value->Find("number") == nullptr) {
    return ToText(*value);
  }
  std::string shown = Shown(*value, "number") + ": " + Shown(*value, "description") + " < " +
                      Shown(*value, "source");
  for (std::size_t at = shown.find("\r\n"); at != shown.npos; at = shown.find("\r\n", at)) {
    shown.replace(at, 2, " < ");
  }
  return shown;
}

std::string ShownFinding(const JsonDocument& finding, Language language) {
  const std::string code = Shown(finding, "code");
  std::string shown =
      Shown(finding, "string") + (code == "null" ? "" : " " + code) + " " + Shown(finding, "check");
  const JsonDocument* const at = finding.Find("at");
  if (at != nullptr && at->keys.size() == 1) {
    shown += " (" + at->keys.front() + Wording{" riga ", " row "}.In(language) +
             ToText(at->items.front()) + ")";
  }
  return shown + ": " + std::string(WithoutLineEnd(Shown(finding, "text")));
}

// By Again.
constexpr std::array kAgain = {
    AnswerWording{{"come allora", "as recorded"}, {"come allora", "as recorded"}, ""},
    AnswerWording{{"diversa", "different"}, {"diverse", "different"}, kRed},
    AnswerWording{{"illeggibile", "unreadable"}, {"illeggibili", "unreadable"}, kRed},
};
constexpr Wording kThen = {"allora", "recorded"};
constexpr Wording kNow = {"ora", "now"};

class BlockWriter {
 public:
  BlockWriter(const Replayed& replayed, Language language)
      : replayed_(replayed), language_(language) {}

  std::string Write() && {
    const OnlyThere apart = Apart(replayed_.recorded, replayed_.now);
    const bool sameFindings = apart.recorded.empty() && apart.now.empty();
    for (std::size_t i = 0; i < replayed_.recorded.keys.size(); ++i) {
      const std::string& key = replayed_.recorded.keys[i];
      // Other findings make other result strings.
      if (key != kFindings && (sameFindings || !key.ends_with("String"))) {
        Compare(key, replayed_.recorded.items[i]);
      }
    }
    for (const JsonDocument* const finding : apart.recorded) {
      Line(kThen, ShownFinding(*finding, language_));
    }
    for (const JsonDocument* const finding : apart.now) {
      Line(kNow, ShownFinding(*finding, language_));
    }
    for (const std::string& question : replayed_.notRecorded) {
      Line({"domanda non registrata", "question that was not recorded"}, question);
    }
    return std::move(text_);
  }

 private:
  void Line(const Wording& name, const std::string& said) {
    text_ += Wrapped(Printable(name.In(language_) + ": " + said), 2);
  }
  void Compare(const std::string& key, const JsonDocument& recorded) {
    const JsonDocument* const now = replayed_.now.Find(key);
    if (now != nullptr && Holds(*now, recorded)) {
      return;
    }
    Line(kThen, key + " " + Shown(replayed_.recorded, key));
    Line(kNow, key + " " + Shown(replayed_.now, key));
  }

  const Replayed& replayed_;
  Language language_;
  std::string text_;
};

}  // namespace

void Compare(Replayed& replayed) {
  replayed.again = replayed.notRecorded.empty() && Holds(replayed.now, replayed.recorded)
                       ? Again::AsRecorded
                       : Again::Different;
}

std::string ToJson(const Replayed& replayed, Language language) {
  std::string text = "{\"id\":" + replayed.id.json +
                     ",\"place\":" + QuotedText(replayed.place.In(Language::English)) +
                     ",\"same\":";
  switch (replayed.again) {
    case Again::AsRecorded:
      return text + "true}";
    case Again::Unreadable:
      return text + "null,\"error\":" + QuotedText(replayed.error.In(language)) + '}';
    case Again::Different:
      break;
  }
  text += "false,\"recorded\":" + ToText(replayed.recorded) + ",\"now\":" + ToText(replayed.now) +
          ",\"notRecorded\":[";
  for (std::size_t i = 0; i < replayed.notRecorded.size(); ++i) {
    text += (i == 0 ? "" : ",") + QuotedText(replayed.notRecorded[i]);
  }
  return text + "]}";
}

std::string ToBlock(const Replayed& replayed, const ReportStyle& style) {
  if (replayed.again == Again::AsRecorded) {
    return "";
  }
  std::string name = replayed.place.In(style.language);
  if (replayed.id.name) {
    name += "  " + *replayed.id.name;
  }
  const std::string operation = Shown(replayed.recorded, "operation");
  const AnswerWording& wording = kAgain[static_cast<std::size_t>(replayed.again)];
  return Painted(Printable(name), kBold, style) + "  " +
         (operation.empty() ? "" : Printable(operation) + ": ") +
         Painted(wording.one.In(style.language), wording.colour, style) + '\n' +
         (replayed.again == Again::Unreadable
              ? "  " + Printable(replayed.error.In(style.language)) + '\n'
              : BlockWriter(replayed, style.language).Write());
}

std::string ToJson(const ReplayTally& tally, int status) {
  constexpr std::array<std::string_view, std::tuple_size_v<ReplayTally>> kKeys = {
      "asRecorded", "different", "unreadable"};
  return SummaryJson("decisions", tally, kKeys, status);
}

std::string ToSummary(const ReplayTally& tally, Language language) {
  return Summary(tally, kAgain, {{"decisione", "decision"}, {"decisioni", "decisions"}, ""},
                 language);
}

}  // namespace kal::host
