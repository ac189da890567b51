// A company on a server: how it comes to be, and that it answers as the same company in a file.

#include "tests/server/Server.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "company/Company.h"
#include "company/Schema.h"
#include "company/postgres/ServerCompany.h"
#include "platform/RunTimeError.h"
#include "tests/kit.h"
#include "tests/server/Proxy.h"

namespace kal::company {
namespace {

using test::Proxy;
using test::Server;
using test::Session;

class ServerTest : public testing::Test {
 protected:
  // "" or what was raised.
  static std::string Failure(const std::function<void()>& action) {
    try {
      action();
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Source(), "DataAccess") << error.Description();
      return error.Description();
    }
    return "";
  }
  std::string Made(const std::string& uri) {
    return Failure([&] { (void)CreateServerCompany(uri, false); });
  }
  [[nodiscard]] std::string CountTables(const std::string& database) const {
    return server_.Execute(database,
                           "SELECT count(*) FROM pg_class WHERE relkind IN ('r', 'v') AND "
                           "relnamespace::regnamespace::text IN ('public', 'altra')");
  }

  const Server& server_ = Server::Get();
};

TEST_F(ServerTest, MakesAllOrNothing) {
  const std::string database = server_.NewDatabase();
  const auto at = [&](const std::string& more) { return server_.Uri(database) + more; };
  const std::string name = server_.Folder().string() + ":5432/" + database;
  const std::string free = name + ": ";
  const struct {
    const char* before;
    std::string uri;
    std::string failure;  // of the description
    const char* after;
  } kRows[] = {
      {"SELECT 1", at("&options=-csearch_path%3Dmanca"),
       free + "search_path names no schema that exists", "SELECT 1"},
      {"CREATE VIEW \"stdIVA\" AS SELECT 1", at(""),
       free + "the schema public holds a table stdIVA already", "DROP VIEW \"stdIVA\""},
      {"CREATE FUNCTION KalNuovaVersione() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN END'", at(""),
       free + "function \"kalnuovaversione\" already exists with same argument types",
       "DROP FUNCTION KalNuovaVersione"},
      {"CREATE ROLE ospite LOGIN", server_.Uri(database, "ospite"),
       free + "permission denied for schema public", "SELECT 1"},
  };
  for (const auto& row : kRows) {
    (void)server_.Execute(database, row.before);
    EXPECT_EQ(Made(row.uri), row.failure);
    (void)server_.Execute(database, row.after);
    EXPECT_EQ(CountTables(database), "0") << row.before;
  }
  (void)server_.Execute(database,
                        "CREATE DATABASE latino TEMPLATE template0 ENCODING 'LATIN1' LOCALE 'C'");
  EXPECT_NE(Made(server_.Uri("latino")).find("keeps its texts as LATIN1, not as UTF8"),
            std::string::npos);
  // A schema of its own beside another company.
  const std::string all = std::to_string(Tables().size() + 1);
  EXPECT_EQ(Made(at("")), "");
  EXPECT_EQ(CountTables(database), all);
  EXPECT_EQ(Made(at("")), free + "the schema public holds a table cogblocchiperiodo already");
  (void)server_.Execute(database, "CREATE SCHEMA altra");
  EXPECT_EQ(Made(at("&options=-csearch_path%3Daltra,public")), "");
}

// The connection is lost at ever later messages, until one attempt is whole.
TEST_F(ServerTest, LeavesNothingOfWhatWasCutOff) {
  Proxy proxy;
  const std::string database = server_.NewDatabase();
  const std::string all = std::to_string(Tables().size() + 1);
  std::size_t attempts = 0;
  for (std::size_t cut = 1; CountTables(database) != all; cut += 1 + cut / 4) {
    ASSERT_EQ(CountTables(database), "0") << cut;
    proxy.CutAt(cut);
    ++attempts;
    const std::string failure = Made(server_.Uri(database, "postgres", proxy.Folder()));
    EXPECT_EQ(failure.empty(), proxy.Passed() < cut) << failure;
  }
  EXPECT_GT(attempts, 15U);
}

// Every change of a table that rarely changes raises its version and no other, whoever makes it and
// however, whatever names he has put before those of the catalog.
TEST_F(ServerTest, ChangesRaiseVersions) {
  const std::string database = server_.NewDatabase();
  ASSERT_EQ(Made(server_.Uri(database)), "");
  (void)server_.Execute(
      database,
      "CREATE ROLE scrittore LOGIN; GRANT INSERT, SELECT, UPDATE, DELETE, TRUNCATE ON ALL TABLES "
      "IN SCHEMA public TO scrittore; REVOKE ALL ON KalVersioni FROM scrittore; "
      "CREATE SCHEMA scrittore AUTHORIZATION scrittore");
  const Session writer(server_.Uri(database, "scrittore"));
  (void)writer.Execute(
      "CREATE TABLE KalVersioni (Tabella text PRIMARY KEY, Versione bigint); "
      "CREATE FUNCTION floor(numeric) RETURNS numeric LANGUAGE sql AS 'SELECT 1.0'; "
      "CREATE FUNCTION clock_timestamp() RETURNS timestamptz LANGUAGE sql AS 'SELECT "
      "''-infinity''::timestamptz'; CREATE TABLE STDAltra (CodIva text); "
      "SET search_path = scrittore, pg_catalog, public");
  EXPECT_THROW(writer.Execute("CREATE TRIGGER t AFTER INSERT ON STDAltra "
                              "EXECUTE FUNCTION public.KalNuovaVersione('STDIva')"),
               std::runtime_error);
  const auto versions = [&] {
    return server_.Execute(database, "SELECT Versione FROM KalVersioni ORDER BY Tabella");
  };
  const auto raised = [&](const std::string& before) {
    return server_.Execute(
        database,
        "SELECT string_agg(Tabella, ' ') FROM (SELECT *, row_number() OVER (ORDER BY "
        "Tabella) FROM KalVersioni) AS own WHERE Versione > (string_to_array('" +
            before + "', ';'))[row_number]::bigint");
  };
  const Session replica(server_.Uri(database));
  (void)replica.Execute("SET session_replication_role = replica");
  for (const SchemaTable& table : Tables()) {
    const std::string name(table.name);
    const std::string column(table.columns[0].name);
    for (const std::string& change : {"INSERT INTO public." + name + " DEFAULT VALUES",
                                      "UPDATE public." + name + " SET " + column + " = " + column,
                                      "DELETE FROM public." + name, "TRUNCATE public." + name}) {
      const std::string before = versions();
      (void)(change.starts_with("UPDATE") ? replica : writer).Execute(change);
      EXPECT_EQ(raised(before), table.growsWithEntries ? "" : name) << change;
    }
  }
}

}  // namespace
}  // namespace kal::company
