#include "tests/server/Server.h"

#include <glob.h>
#include <libpq-fe.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace kal::test {
namespace {

namespace fs = std::filesystem;

void Run(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error("failed: " + command);
}

// The newest server that is installed.
fs::path Programs() {
  glob_t found = {};
  const int failed = glob("/usr/lib/postgresql/*/bin", 0, nullptr, &found);
  const std::string path = failed == 0 ? found.gl_pathv[found.gl_pathc - 1] : "";
  globfree(&found);
  if (failed != 0) throw std::runtime_error("no PostgreSQL server is installed");
  return path;
}

}  // namespace

Server& Server::Get() {
  static Server server;
  return server;
}

Server::Server() : programs_(Programs()) {
  std::string name = (fs::temp_directory_path() / "kalcogcheck-server-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
  folder_ = name;
  if (geteuid() == 0) Run("chown postgres " + name);
  // It waits for the end of this program, whatever ends it, in a session of its own that Ctrl-C in
  // this program's terminal does not reach.
  std::string stop;
  for (const char* of : {"standby", "data"}) {
    stop += AsItsUser("pg_ctl", "-m immediate stop -D " + name + "/" + of) + ";";
  }
  supervisor_ = popen(
      ("exec setsid sh -c 'cat >/dev/null; (" + stop + ") >/dev/null 2>&1; rm -rf " + name + "'")
          .c_str(),
      "we");
  if (supervisor_ == nullptr) throw std::runtime_error("nobody supervises the server");
  Run(AsItsUser("initdb", "-A trust -U postgres -E UTF8 --locale=C.UTF-8 --no-sync -D " + name +
                              "/data >" + name + "/initdb.log"));
  std::ofstream(folder_ / "data/pg_hba.conf") << "local all \"Password\" scram-sha-256\n"
                                                 "local all,replication all trust\n";
  std::ofstream(folder_ / "data/postgresql.auto.conf")
      << "listen_addresses = ''\nunix_socket_directories = '" << name
      << "'\nfsync = off\nfull_page_writes = off\nsynchronous_commit = off\n"
         "shared_buffers = 16MB\nautovacuum = off\nmax_connections = 40\n";
  Start();
}

Server::~Server() { pclose(supervisor_); }

std::string Server::AsItsUser(std::string_view program, std::string_view arguments) const {
  return std::string(geteuid() == 0 ? "setpriv --reuid=postgres --regid=postgres --init-groups -- "
                                    : "") +
         (programs_ / program).string() + " " + std::string(arguments);
}

void Server::StartIn(const fs::path& folder) const {
  Run(AsItsUser("pg_ctl", "-s -w start -D " + folder.string() + " -l " + folder.string() + ".log"));
}

void Server::Start() const { StartIn(folder_ / "data"); }

void Server::Stop() const {
  Run(AsItsUser("pg_ctl", "-s -w -m immediate stop -D " + folder_.string() + "/data"));
}

const fs::path& Server::Standby() const {
  static const fs::path kFolder = [this] {
    fs::path folder = folder_ / "standby";
    Run(AsItsUser("pg_basebackup", "-R --no-sync -c fast -U postgres -h " + folder_.string() +
                                       " -D " + folder.string()));
    std::ofstream(folder / "postgresql.auto.conf", std::ios::app)
        << "unix_socket_directories = '" << folder.string() << "'\n";
    StartIn(folder);
    return folder;
  }();
  return kFolder;
}

std::string Server::NewDatabase(std::string_view copied) const {
  static std::atomic<int> made{0};
  std::string name = "libri" + std::to_string(++made);
  (void)Execute("postgres", "CREATE DATABASE " + name + " TEMPLATE " + std::string(copied));
  return name;
}

std::string Server::Uri(std::string_view database, std::string_view user,
                        const fs::path& host) const {
  return "postgresql:///" + std::string(database) + "?user=" + std::string(user) +
         "&host=" + (host.empty() ? folder_ : host).string();
}

std::string Server::Execute(std::string_view database, std::string_view sql) const {
  return Session(Uri(database)).Execute(sql);
}

Session::Session(const std::string& uri) : connection_(PQconnectdb(uri.c_str())) {}

Session::~Session() { PQfinish(static_cast<PGconn*>(connection_)); }

std::string Session::Execute(std::string_view sql) const {
  auto* const connection = static_cast<PGconn*>(connection_);
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(
      PQexec(connection, std::string(sql).c_str()), &PQclear);
  const ExecStatusType status = PQresultStatus(result.get());
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
    throw std::runtime_error(PQerrorMessage(connection) + std::string(" in ") + std::string(sql));
  }
  std::string text;
  for (int row = 0; row < PQntuples(result.get()); ++row) {
    for (int column = 0; column < PQnfields(result.get()); ++column) {
      text += column > 0 ? " " : row > 0 ? ";" : "";
      text += PQgetvalue(result.get(), row, column);
    }
  }
  return text;
}

}  // namespace kal::test
