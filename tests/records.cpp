// Recordings: what they hold, how they are written by check and decided again by replay, and what
// becomes of those that were changed or cut off. That every answer and every error plays back is
// tried with every table of entries (RunTable) and with every call that fails (Faults).

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/CommandLine.h"
#include "host/RecordingText.h"
#include "host/Replay.h"
#include "records/Player.h"
#include "records/SelectionMaker.h"
#include "siblings/Components.h"
#include "tests/kit.h"

namespace kal::host {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using records::Conversation;
using test::HostRun;
using test::RunHost;

class Records : public testing::Test {
 protected:
  // The lines that are recorded of these entries over the sample company.
  std::vector<std::string> Recorded(const std::string& entries) {
    const test::ScratchPath file;
    const HostRun run = RunHost(
        {"check", "--json", "--record", file.Text(), "--company", company_.Text(), "-"}, entries);
    EXPECT_EQ(run.err, "");
    std::ifstream stream(file.Path());
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  test::ScratchPath company_;
  bool made_ = (company::CreateCompany(company_.Text(), true), true);
};

// One thing is changed in a recording, and what is said of it then.
TEST_F(Records, TellsWhatIsDifferent) {
  const std::string entry =
      "{\"id\":7,\"operation\":\"OkModifica\",\"RsTesta\":{\"rows\":[{\"IdPrimaNota\":1,"
      "\"CodCausale\":\"FTV\",\"TipoRegIva\":2,\"TipoDocumento\":4,"
      "\"DataRegistrazione\":\"2024-05-06\"}]}}";
  const std::vector<std::string> lines = Recorded(entry + '\n' + "{\"id\":8}\n");
  ASSERT_EQ(lines.size(), 2U);
  const struct {
    const char* name;
    std::size_t line;
    std::string from;
    std::string to;
    const char* said;  // "" where the decision is as it was
  } rows[] = {
      {"nothing", 0, "", "", ""},
      {"a later version told less", 0, "\"IsInfragruppo\":\"False\",", "", ""},
      {"where the entry stood", 0, "\"error\":null}", "\"error\":null,\"place\":{\"line\":1}}", ""},
      {"an answer", 0, "\"PeriodLock.IsLocked\",\"with\":[\"\"],\"answer\":false",
       "\"PeriodLock.IsLocked\",\"with\":[\"\"],\"answer\":true",
       "7  OkModifica: diversa\n  allora: result true\n  ora: result false\n  ora: WarnString "
       "10511 OkModifica: [10511]\n"},
      {"an answer that becomes an error", 0,
       "\"PeriodLock.IsLocked\",\"with\":[\"\"],\"answer\":false",
       "\"PeriodLock.IsLocked\",\"with\":[\"\"],\"error\":{\"number\":5,\"source\":\"s\","
       "\"description\":\"d\"}",
       "ora: error 5: d < Errore ( 5 ) - Componente ( s )"},
      {"a finding", 0, "\"findings\":[]",
       "\"findings\":[{\"string\":\"ErrString\",\"code\":1,\"check\":\"X\",\"at\":{\"RsTesta\":1},"
       "\"text\":\"x\"}]",
       "diversa\n  allora: ErrString 1 X (RsTesta riga 1): x\n"},
      {"a result string", 0, "\"WarnString\":\"\"", "\"WarnString\":\"x\"",
       "allora: WarnString x\n"},
      {"the answer", 0, "\"result\":true", "\"result\":false",
       "allora: result false\n  ora: result true\n"},
      {"how a set is handed back", 0, "\"Position\":1", "\"Position\":0", "allora: recordSets"},
      {"a question", 0, "[\"GestisciPNInfragruppo\"]", "[\"Gestisci\"]",
       "domanda non registrata: CompanySettings.Setting 'GestisciPNInfragruppo'\n"},
      {"a trail", 1, "\\r\\nKal_COGCheck.KalCOGCheck.OkAggiorna", "", "allora: error 91: Object"},
      {"the entry", 1, "\"id\":8}", "\"id\":8,\"x\":1}", "contabile: chiave sconosciuta \"x\""},
      {"the version", 1, "\"recording\":1", "\"recording\":2", "it is of the version 2"},
      {"a key", 1, "\"result\"", "\"resulted\"", "it has an unknown key \"resulted\""},
      {"no key", 1, "\"recording\":1,", "", "it has no \"recording\""},
      {"a result", 1, "\"result\":{", "\"result\":1{", "it is no recording: column "},
      {"more", 1, "}}}", "}}} {}", "there is more behind its end"},
      {"who is asked", 0, "PeriodLock.IsLocked", "PeriodLock.Locked",
       "there is no question \"PeriodLock.Locked\""},
      {"the values of a selection", 0, "\"with\":[1]", "\"with\":[1,1]",
       "question 1: a selection with 1 comparisons has 2 values"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::string line = lines[row.line];
    const std::size_t at = line.find(row.from);
    ASSERT_NE(at, std::string::npos) << line;
    line.replace(at, row.from.size(), row.to);
    const Replayed replayed = Replay({line, {"F", 3}});
    const std::string block = ToBlock(replayed, {});
    EXPECT_EQ(block.empty(), *row.said == '\0') << block;
    EXPECT_NE(block.find(row.said), std::string::npos) << block << line;
    EXPECT_TRUE(block.empty() || block.starts_with("F riga 3")) << block;
    const int status = replayed.again == Again::Unreadable ? 2 : block.empty() ? 0 : 1;
    const HostRun run = RunHost({"replay", "--json", "-"}, lines[0] + "\n\n" + line + '\n');
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(json::parse(run.out.substr(run.out.find('\n')))["same"],
              status == 2 ? json() : json(status == 0));
  }
}

// Wherever a line breaks off it is refused, by its number.
TEST_F(Records, RefusesWhatWasCutOff) {
  const std::string line = Recorded(
                               "{\"operation\":\"RegistriIvaStampati\",\"arguments\":["
                               "\"2024-03-15\",1,1]}\n")
                               .at(0);
  for (std::size_t end = 1; end < line.size(); ++end) {
    const Replayed replayed = Replay({line.substr(0, end), {"F", 3}});
    ASSERT_EQ(replayed.again, Again::Unreadable) << end;
    ASSERT_FALSE(replayed.error.IsEmpty()) << end;
  }
  const HostRun run = RunHost({"replay", "--lang", "en", "-"}, line + '\n' + line.substr(0, 300));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out,
            "standard input line 2  unreadable\n  it breaks off\n"
            "2 decisions: 1 as recorded, 1 unreadable\n");
}

// Values, columns and selections of every kind are read as they were written.
TEST(RecordingText, KeepsEveryValueExactly) {
  const std::vector<Variant> values = {{},
                                       Null,
                                       true,
                                       std::int8_t{-128},
                                       std::int16_t{1},
                                       1,
                                       std::int64_t{1} << 60,
                                       0.1F,
                                       0.1,
                                       -0.0,
                                       std::numeric_limits<double>::infinity(),
                                       std::numeric_limits<double>::denorm_min(),
                                       Currency::FromUnits(INT64_MIN),
                                       *Decimal::FromText("-79228162514264337593543950335"),
                                       *Decimal::FromText("0.0000000000000000000000000001"),
                                       *Date::FromYmd(100, 1, 1),
                                       *Date::FromSerial(-1.25),
                                       *Date::FromSerial(45000.123456789),
                                       "",
                                       "l'è\"\\\r\n\x01\x7F",
                                       "\xEF\xBF\xBD",
                                       "\xFF\x80g"};
  records::SelectionMaker maker;
  maker.Option(-3);
  maker.Select("a.X, Year(a.Y)");
  maker.Select("b.Z");
  maker.From("A as a");
  for (const JoinKind kind : {JoinKind::Inner, JoinKind::LeftOuter}) {
    maker.JoinWith(kind, "B \"b\"");
    maker.Columns("a.X", "b.X");
    maker.BeginAnyOf();
    maker.BeginAlternative();
    maker.Compare("p", CompareWith::NotEqual);
    maker.Compare("q", CompareWith::LessOrEqual);
    maker.BeginAlternative();
    maker.Compare("r", CompareWith::Greater);
    maker.EndAnyOf();
  }
  maker.Where();
  maker.Literal("x = 'è?'");
  maker.Compare("IsNull(X,0)", CompareWith::Less);
  auto rows = std::make_shared<RowTable>(std::vector<Column>{
      {"X", DataType::TinyInt}, {"X", static_cast<DataType>(-7)}, {"è", DataType::Date}});
  for (const Variant& value : values) rows->AddRow({value, Null, value});
  const Conversation written = {
      {.component = Component::KalStatus, .member = Member::KalStatus_GetMessage, .with = values},
      {.component = Component::DataAccess,
       .member = Member::DataAccess_Open,
       .with = {values.begin(), values.begin() + 7},
       .selection = maker.Take(),
       .rows = rows,
       .editMode = EditMode::Delete}};
  const Conversation read = test::WrittenAndRead(written);
  ASSERT_EQ(read.size(), written.size());
  ASSERT_EQ(read[0].with.size(), values.size());
  ASSERT_EQ(read[1].rows->RowCount(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_TRUE(Identical(read[0].with[i], values[i])) << i;
    EXPECT_TRUE(Identical(read[1].rows->Cell(i, 2), values[i])) << i;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(read[1].rows->Columns()[i].name, rows->Columns()[i].name);
    EXPECT_EQ(read[1].rows->Columns()[i].type, rows->Columns()[i].type);
  }
  // The question is known again, part by part.
  records::Player player(read);
  const SiblingAnswer answer = [&] {
    std::unique_ptr<SiblingState> state;
    const Query query = written[1].AsQuery();
    return player.Ask({.component = Component::DataAccess,
                       .member = Member::DataAccess_Open,
                       .values = {},
                       .query = &query,
                       .state = state});
  }();
  EXPECT_EQ(answer.rows->EditMode(), EditMode::Delete);
}

// Asked in another order, each question has its own answer: of the same one the next that was
// recorded, and behind the last that one again; of one customer not the other's.
TEST(Player, AnswersTheSameQuestion) {
  Conversation conversation;
  const auto add = [&](Member member, std::vector<Variant> with, std::vector<Variant> about,
                       const Variant& answer) {
    conversation.push_back({.component = kMembers[static_cast<std::size_t>(member)].component,
                            .member = member,
                            .with = std::move(with),
                            .about = std::move(about),
                            .answer = answer});
  };
  add(Member::CompanySettings_Setting, {"A"}, {}, 1);
  add(Member::CompanySettings_Setting, {"B"}, {}, 2);
  add(Member::CompanySettings_Setting, {"A"}, {}, 3);
  add(Member::KalAnagrafiche_InfoAnagrafica, {"S"}, {10, std::int16_t{1}}, true);
  add(Member::KalAnagrafiche_InfoAnagrafica, {"S"}, {11, std::int16_t{1}}, false);
  records::Player player(conversation);
  CompanySettings settings(player);
  for (const auto& [name, answer] : {std::pair{"B", 2}, {"A", 1}, {"A", 3}, {"B", 2}, {"A", 3}}) {
    EXPECT_TRUE(Identical(settings.Setting(name), answer)) << name;
  }
  for (const std::int32_t id : {11, 10, 11}) {
    KalAnagrafiche person(player);
    person.IDAnagrafica(12);
    person.IDAnagrafica(id);
    person.TipoAnagrafica(1);
    person.Init();
    EXPECT_TRUE(Identical(person.InfoAnagrafica("S"), id == 10)) << id;
  }
  EXPECT_TRUE(player.NotRecorded().empty());
  try {
    (void)KalAnagrafiche(player).InfoAnagrafica("S");
    FAIL() << "nobody was told of";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), 445);
    EXPECT_EQ(error.Description(),
              "This question was not recorded: KalAnagrafiche.InfoAnagrafica 'S'");
  }
}

// The answers are given all the same, and nothing that is in use is written over.
TEST_F(Records, ARecordingThatCanNotBeWritten) {
  const std::string entry = "{\"operation\":\"LeggiIdPrimaNota\",\"arguments\":[1,1]}\n";
  const test::ScratchPath entries;
  std::ofstream(entries.Path()) << entry;
  const auto size = fs::file_size(company_.Path());
  const struct {
    std::string path;
    bool answers;
    const char* said;
  } rows[] = {
      {"/dev/full", true, "the recording /dev/full can't be written: No space left on device"},
      {"/no-such-folder/x", true, "can't be written: No such file or directory"},
      {company_.Text(), false, "the recording would take the place of"},
      {entries.Text(), false, "the recording would take the place of"},
  };
  for (const auto& row : rows) {
    const HostRun run = RunHost({"check", "--lang", "en", "--record", row.path, "--company",
                                 company_.Text(), entries.Text()});
    EXPECT_EQ(run.status, 2) << row.path;
    EXPECT_NE(run.err.find(row.said), std::string::npos) << run.err;
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << run.err;
    EXPECT_EQ(run.out.find("1 entry: 1 yes") != std::string::npos, row.answers) << run.out;
  }
  EXPECT_EQ(fs::file_size(company_.Path()), size);
  EXPECT_EQ(fs::file_size(entries.Path()), entry.size());
}

}  // namespace
}  // namespace kal::host
