// A PostgreSQL server of the program's own, on a socket in a temporary folder, for as long as the
// program runs and however it ends.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kal::test {

class Server {
 public:
  // Started when it is first asked for, and once; as an unprivileged user when the program is root.
  static Server& Get();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  // The folder of the socket, which is what a URI calls its host.
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }
  // Makes a database under a name that no other has, empty or as a copy of another.
  [[nodiscard]] std::string NewDatabase(std::string_view copied = "template0") const;
  // The administrator is "postgres"; whoever is named "Password" needs one. The host may be another
  // folder: a proxy's or a standby's.
  [[nodiscard]] std::string Uri(std::string_view database, std::string_view user = "postgres",
                                const std::filesystem::path& host = {}) const;

  // As the administrator. The cells of the last answer, rows separated by semicolons; throws what
  // the server said when it refuses.
  std::string Execute(std::string_view database, std::string_view sql) const;

  // Stops at once, connections and all, or starts again. A server that runs can be stopped, and one
  // that is stopped started.
  void Stop() const;
  void Start() const;
  // A hot standby that follows this server, made and started once; its folder.
  [[nodiscard]] const std::filesystem::path& Standby() const;

 private:
  Server();

  [[nodiscard]] std::string AsItsUser(std::string_view program, std::string_view arguments) const;
  void StartIn(const std::filesystem::path& folder) const;

  std::filesystem::path folder_;
  std::filesystem::path programs_;
  std::FILE* supervisor_ = nullptr;
};

// An administrator's connection that stays, for transactions that are left open.
class Session {
 public:
  explicit Session(const std::string& uri);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  std::string Execute(std::string_view sql) const;

 private:
  void* connection_;
};

}  // namespace kal::test
