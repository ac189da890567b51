// What is accepted counts no longer, and what a run writes beside its answers. The page itself is
// tried in a browser, by tests/page.py.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/kit.h"

namespace kal::host {
namespace {

using test::EntryText;
using test::ScratchPath;
using test::TestCompany;

std::string Content(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class Accepted : public testing::Test {
 protected:
  // Checks the entries with more options; the answers are in out_ and err_.
  int Check(const std::string& entries, std::vector<std::string> options) {
    options.insert(options.begin(), {"check", "--company", company_.Text()});
    options.emplace_back("-");
    const test::HostRun run = test::RunHost(options, entries);
    out_ = run.out;
    err_ = run.err;
    return run.status;
  }

  TestCompany company_;
  ScratchPath baseline_;
  std::string out_;
  std::string err_;
};

TEST_F(Accepted, CountsNoLongerUntilTheEntryChanges) {
  const std::string bad = EntryText("acquisto", "id=7;T.Fixing=1.5;C2.CodConto=\"\"");
  const std::string both =
      bad + '\n' + EntryText("giroconto", "id=\"x\";C1.ImportoDareVB=1") + '\n';
  const std::string path = baseline_.Text();
  EXPECT_EQ(Check(both, {"--write-baseline", path}), 1);
  const std::string lines = Content(path);
  const std::string::size_type second = lines.find('\n') + 1;
  ASSERT_EQ(std::ranges::count(lines, '\n'), 2) << lines;
  EXPECT_LT(lines.substr(0, second), lines.substr(second));
  EXPECT_NE(lines.find(R"({"id":7,"code":10520,"parameters":[2],"content":")"), std::string::npos);

  const struct {
    std::string entry;
    int status;
    const char* summary;
  } rows[] = {
      {both, 0, "2 registrazioni: 2 già accettate\n"},
      // Laid out otherwise, with what is not looked at.
      {EntryText("acquisto", "expected=1;id=7;T.Fixing=1.50;C2.IdCliFor=null;C2.CodConto=\"\""), 0,
       "1 già accettata\n"},
      {EntryText("acquisto", "id=8;T.Fixing=1.5;C2.CodConto=\"\""), 1, "1 bloccata\n"},
      {EntryText("acquisto", "id=7;T.Fixing=1.6;C2.CodConto=\"\""), 1, "1 bloccata\n"},
      {EntryText("acquisto", "id=7;T.Fixing=1.5;C2.CodConto=\"0\""), 1, "1 bloccata\n"},
      {bad + "\n{\"id\":7}", 2, "1 non controllata, 1 già accettata\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Check(row.entry, {"--baseline", path}), row.status) << out_ << err_;
    EXPECT_NE(out_.find(row.summary), std::string::npos) << out_;
    EXPECT_EQ(out_.find("errore:") == std::string::npos, row.status != 1) << out_;
  }
  EXPECT_EQ(Check(bad, {"--baseline", path, "--json"}), 0);
  EXPECT_NE(out_.find(R"("result":false)"), std::string::npos) << out_;
  EXPECT_NE(out_.find(R"("at":{"RsRCont":2},"baseline":true})"), std::string::npos) << out_;
  EXPECT_EQ(Check(bad, {"--baseline", path, "--json", "--only-problems"}), 0);
  EXPECT_EQ(out_, "");

  // The books have changed: what is new of an accepted entry counts alone.
  company_.Execute("INSERT INTO COGBlocchiPeriodo VALUES ('2023-12-31','2025-12-31')");
  EXPECT_EQ(Check(bad, {"--baseline", path}), 1);
  EXPECT_NE(out_.find("da confermare"), std::string::npos) << out_;
  EXPECT_EQ(out_.find("errore:"), std::string::npos) << out_;
  EXPECT_EQ(Check(bad, {"--baseline", path, "--fail-on", "error"}), 0);
  EXPECT_EQ(Check(bad, {"--baseline", path, "--write-baseline", path}), 1);
  EXPECT_EQ(Check(bad, {"--baseline", path}), 0);
  EXPECT_EQ(Check(bad, {"--baseline", path, "--explain"}), 0);
  EXPECT_NE(out_.find("già accettato: errore 10520"), std::string::npos) << out_;

  std::ofstream(path, std::ios::app) << "\n{\"id\":7}\n";
  EXPECT_EQ(Check(bad, {"--baseline", path, "--lang", "en"}), 2);
  EXPECT_NE(err_.find(path + " line 4: an accepted finding has id"), std::string::npos) << err_;
  EXPECT_EQ(out_, "");
}

TEST_F(Accepted, WhatCanNotBeWrittenIsSaidBehindTheAnswers) {
  const std::string good = EntryText("giroconto") + '\n';
  EXPECT_EQ(Check(good, {"--lang", "en"}), 0);
  const std::string answers = out_;
  const ScratchPath folder;
  std::filesystem::create_directory(folder.Path());
  const struct {
    std::string option;
    std::string path;
    std::string said;  // "" where the file is written
  } rows[] = {
      {"--report", "/dev/full", "the report /dev/full can't be written: No space left on device"},
      {"--report", folder.Text(), "can't be written: Is a directory"},
      {"--report", "/no-such-folder/x", "can't be written: No such file or directory"},
      {"--write-baseline", "/no-such-folder/x", "the baseline /no-such-folder/x can't be written"},
      {"--report", baseline_.Text(), ""},
      {"--report", company_.Text(), "the report would take the place of"},
      {"--write-baseline", company_.Text(), "the new baseline would take the place of"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Check(good, {row.option, row.path, "--lang", "en"}), row.said.empty() ? 0 : 2)
        << row.path;
    EXPECT_NE(err_.find(row.said), std::string::npos) << err_;
    EXPECT_LE(std::ranges::count(err_, '\n'), 1) << err_;
    EXPECT_EQ(out_, row.path == company_.Text() ? "" : answers) << row.path;
  }
  EXPECT_EQ(Content(baseline_.Path()).substr(0, 15), "<!doctype html>");
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
  for (const auto& file : std::filesystem::directory_iterator(baseline_.Path().parent_path())) {
    EXPECT_FALSE(file.path().string().starts_with(baseline_.Text() + ".part")) << file.path();
  }
}

}  // namespace
}  // namespace kal::host
