// What runs in several threads: checkers beside each other, companies that are written while they
// are read, and the workers of the command line. Built alone for the thread sanitizer.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "host/CommandLine.h"
#include "host/RecordingText.h"
#include "host/Runner.h"
#include "tests/kit.h"

namespace kal::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// Two objects share nothing.
TEST(Threads, TwoCheckersShareNothing) {
  const auto work = [](const char* kind, const char* changes) {
    OpenedCompany books;
    const std::string expected = Checked(books.siblings, EntryText(kind, changes)).Run();
    EXPECT_NE(expected.find("Err: "), std::string::npos) << expected;
    for (int i = 0; i < 10; ++i) {
      EXPECT_EQ(Checked(books.siblings, EntryText(kind, changes)).Run(), expected);
    }
  };
  std::thread first(work, "acquisto", R"(C1.CodConto="10";I1.CodIva="";S1.DataScadenza=null)");
  std::thread second(work, "vendita", "T.Protocollo=0");
  first.join();
  second.join();
}

// A lock that ends soon is waited for.
TEST(Threads, WaitForALockThatEndsSoon) {
  const TestCompany file;
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.Path().c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::thread writer([db] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  });
  company::Company company(file.Text());
  const char* const journal = R"({"operation":"LibroGiornaleStampato","arguments":["2024-03-15"]})";
  EXPECT_TRUE(host::CheckEntry(company, {journal}).result);
  writer.join();
  sqlite3_close(db);
}

// A writer moves the books between two states all the time; eight checkers each see one of them.
TEST(Threads, EachSeeOneStateOfTheBooks) {
  const TestCompany file("PRAGMA journal_mode = WAL");
  const std::string text = EntryText("acquisto");
  std::atomic<int> checking{8};
  std::atomic<int> calmSeen{0};
  std::atomic<int> busySeen{0};
  std::thread writer([&] {
    for (bool busy = true; checking > 0; busy = !busy) {
      file.Execute(busy ? "BEGIN IMMEDIATE; INSERT INTO COGBollati VALUES (1,2024,3,1,1);"
                          "INSERT INTO COGBlocchiPeriodo VALUES ('2024-03-15','2024-03-15');"
                          "UPDATE STDIva SET CodIva = 'x' WHERE CodIva = '22'; COMMIT"
                        : "BEGIN IMMEDIATE; DELETE FROM COGBollati; DELETE FROM COGBlocchiPeriodo;"
                          "UPDATE STDIva SET CodIva = '22' WHERE CodIva = 'x'; COMMIT");
    }
  });
  const auto check = [&] {
    company::Company company(file.Text());
    for (int i = 0; i < 60 || ((calmSeen == 0 || busySeen == 0) && i < 100'000); ++i) {
      const host::Outcome outcome = host::CheckEntry(company, {text});
      const bool findings = !outcome.errString.empty();
      EXPECT_FALSE(outcome.error) << outcome.error->Description();
      // Journal, register and VAT code, and the lock: all or none.
      EXPECT_EQ(std::ranges::count(outcome.errString, '\n'), findings ? 2 : 0) << outcome.errString;
      EXPECT_EQ(outcome.warnString.empty(), !findings);
      ++(findings ? busySeen : calmSeen);
    }
    --checking;
  };
  std::vector<std::thread> checkers;
  for (int i = 0; i < 8; ++i) {
    checkers.emplace_back(check);
  }
  for (std::thread& checker : checkers) {
    checker.join();
  }
  writer.join();
  EXPECT_GT(calmSeen, 0);
  EXPECT_GT(busySeen, 0);
}

// Many workers give the answers of one, in the same order: from files, which they read some entries
// at a time, and from standard input.
TEST(Threads, AnswerInTheOrderOfTheEntries) {
  const TestCompany books;
  const std::string company = books.Text();
  const ScratchPath file;
  const std::string lines = file.Text();
  std::string input;
  for (int i = 1; i <= 2000; ++i) {
    const std::string id = "{\"id\":" + std::to_string(i) + ",\"operation\":\"";
    input +=
        id + (i % 7 == 0 ? "OkAggiorna\"}\n"
                         : "OkModifica\",\"pad\":\"" +
                               std::string(static_cast<std::size_t>(i % 13) * 100, 'x') + "\"}\n");
  }
  std::ofstream(lines) << input;
  std::istringstream in;
  const auto run = [&](const char* jobs, std::ostream& out, bool files) {
    in = std::istringstream(input);
    std::ostringstream err;
    const char* const name = files ? lines.c_str() : "-";
    const char* const arguments[] = {"kalcogcheck",   "check",  "--json", "--company",
                                     company.c_str(), "--jobs", jobs,     name,
                                     "no-such-file",  name,     name};
    return host::Run(files ? 11 : 9, arguments, in, out, err);
  };
  for (const bool files : {true, false}) {
    std::ostringstream one;
    std::ostringstream many;
    EXPECT_EQ(run("1", one, files), host::kExitTrouble);
    EXPECT_EQ(run("5", many, files), host::kExitTrouble);
    const std::string answers = many.str();
    EXPECT_EQ(std::ranges::count(answers, '\n'), files ? 6001 : 2001);
    EXPECT_TRUE(answers == one.str());
  }
  // Output that ends under way ends the work of all.
  struct Short : std::stringbuf {
    int sync() override { return in_avail() > 50000 ? -1 : 0; }
  } soonFull;
  std::ostream out(&soonFull);
  EXPECT_EQ(run("5", out, false), host::kExitTrouble);
  EXPECT_LT(in.tellg(), input.size() * 3 / 4);
}

// All samples, by several workers, between entries that can't be read: the answers are those of a
// run without recording, the recording holds the decided ones in their order, and replaying gives
// each of them again.
TEST(Threads, DecideRecordedSamplesAgainAsTheyWere) {
  const ScratchPath company;
  company::CreateCompany(company.Text(), true);
  const ScratchPath record;
  std::vector<std::string> check = {"check", "--json", "--jobs", "5", "--company", company.Text()};
  for (const fs::path& file : fs::directory_iterator(fs::path(KAL_SOURCE_DIR) / "host/samples")) {
    check.push_back(file.string());
    check.emplace_back("-");
    check.emplace_back("no-such-file");
  }
  const HostRun plain = RunHost(check, "{\"x\":1}\n{\"id\":\n");
  check.insert(check.begin() + 1, {"--record", record.Text()});
  const HostRun recorded = RunHost(check, "{\"x\":1}\n{\"id\":\n");
  EXPECT_EQ(recorded.status, plain.status);
  EXPECT_TRUE(recorded.out == plain.out);
  std::istringstream answers(plain.out);
  std::ifstream lines(record.Path());
  std::size_t decided = 0;
  for (std::string answer, line; std::getline(answers, answer);) {
    if (!json::parse(answer)["error"].contains("input")) {
      ASSERT_TRUE(std::getline(lines, line));
      answer.replace(answer.find(",\"place\":{"), answer.size(), "}");  // that is no decision
      EXPECT_EQ(host::ReadRecording(line).recording.value().result, answer);
      ++decided;
    }
  }
  EXPECT_EQ(lines.peek(), std::ifstream::traits_type::eof());

  const HostRun again = RunHost({"replay", "--lang", "en", record.Text()});
  const std::string count = std::to_string(decided);
  EXPECT_EQ(again.out, count + " decisions: " + count + " as recorded\n");
  EXPECT_EQ(again.status, 0);
  const HostRun one = RunHost({"replay", "--json", "--jobs", "1", record.Text(), record.Text()});
  const HostRun many = RunHost({"replay", "--json", "--jobs", "5", record.Text(), record.Text()});
  EXPECT_EQ(one.status, 0);
  EXPECT_TRUE(one.out == many.out);
}

}  // namespace
}  // namespace kal::test
