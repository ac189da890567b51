#include "tests/server/Proxy.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <deque>
#include <stdexcept>
#include <string>
#include <utility>

namespace kal::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr const char* kSocket = ".s.PGSQL.5432";

// A socket of that path, connected to it or listening on it.
template <class Join>
int SocketOf(const std::filesystem::path& path, Join join) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.string().copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (join(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(socket);
    return -1;
  }
  return socket;
}

}  // namespace

// What goes from one end of a connection to the other.
struct Proxy::Way {
  int from;
  int to;
  bool starts;              // its first message has no letter before its size
  std::string unread = {};  // of a message that is not whole yet
  std::deque<std::pair<Clock::time_point, std::string>> due = {};
};

struct Proxy::Connection {
  Connection(int client, int server) : there{client, server, true}, back{server, client, false} {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    for (const int end : {there.from, there.to}) {
      shutdown(end, SHUT_RDWR);
      close(end);
    }
  }

  Way there;
  Way back;
};

Proxy::Proxy(const Server& server) : server_(server.Folder() / kSocket) {
  static std::atomic<int> made{0};
  folder_ = server.Folder() / ("proxy" + std::to_string(++made));
  std::filesystem::create_directory(folder_);
  listener_ = SocketOf(Folder() / kSocket, [](int socket, const sockaddr* address, socklen_t size) {
    return bind(socket, address, size) != 0 ? -1 : listen(socket, 16);
  });
  if (listener_ < 0 || pipe2(wake_, O_CLOEXEC) != 0)
    throw std::runtime_error("the proxy can't listen");
  thread_ = std::thread([this] { Serve(); });
}

Proxy::~Proxy() {
  close(wake_[1]);
  thread_.join();
  close(wake_[0]);
  close(listener_);
}

void Proxy::Accept() {
  const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  const int server = SocketOf(server_, &connect);
  auto connection = std::make_unique<Connection>(client, server);
  if (server >= 0) connections_.push_back(std::move(connection));
}

// False where the connection ended or is to be cut.
bool Proxy::Read(Way& way) {
  char bytes[65536];
  const ssize_t count = read(way.from, bytes, sizeof bytes);
  if (count <= 0) return false;
  way.unread.append(bytes, static_cast<std::size_t>(count));
  std::size_t whole = 0;
  bool cut = false;
  while (!cut) {
    const std::size_t letter = way.starts ? 0 : 1;
    std::uint32_t size = 0;
    if (way.unread.size() < whole + letter + sizeof size) break;
    std::memcpy(&size, way.unread.data() + whole + letter, sizeof size);
    const std::size_t end = whole + letter + ntohl(size);
    if (way.unread.size() < end) break;
    way.starts = false;
    cut = ++passed_ == cutAt_;
    if (cut && again_) passed_ = 0;
    whole = cut ? whole : end;
  }
  way.due.emplace_back(Clock::now() + delay_.load(), way.unread.substr(0, whole));
  way.unread.erase(0, whole);
  return !cut;
}

// What is due; False where nobody takes it.
bool Proxy::Write(Way& way) {
  for (; !way.due.empty() && way.due.front().first <= Clock::now(); way.due.pop_front()) {
    std::string& rest = way.due.front().second;
    while (!rest.empty()) {
      const ssize_t count = send(way.to, rest.data(), rest.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count < 0) return errno == EAGAIN;
      rest.erase(0, static_cast<std::size_t>(count));
    }
  }
  return true;
}

void Proxy::Serve() {
  for (;;) {
    std::vector<pollfd> waits = {{wake_[0], POLLIN, 0}, {listener_, POLLIN, 0}};
    auto next = Clock::now() + std::chrono::milliseconds(hangs_ ? 20 : 1000);
    for (const auto& connection : connections_) {
      for (const Way* way : {&connection->there, &connection->back}) {
        waits.push_back({hangs_ ? -1 : way->from, POLLIN, 0});
        if (!way->due.empty()) next = std::min(next, way->due.front().first);
      }
    }
    const auto left = std::max(next - Clock::now(), Clock::duration(0));
    const timespec patience = {left / std::chrono::seconds(1),
                               (left % std::chrono::seconds(1)).count()};
    if (ppoll(waits.data(), waits.size(), &patience, nullptr) < 0) continue;
    if (waits[0].revents != 0) return connections_.clear();
    std::size_t at = 2;
    std::erase_if(connections_, [&](const auto& connection) {
      bool stays = true;
      for (Way* way : {&connection->there, &connection->back}) {
        const bool arrived = waits[at++].revents != 0 && !hangs_;
        stays = (!arrived || Read(*way)) && stays;
        // What passed before a cut still arrives.
        if (!stays && !way->due.empty()) way->due.front().first = {};
        stays = (hangs_ || Write(*way)) && stays;
      }
      return !stays;
    });
    if (waits[1].revents != 0) Accept();
  }
}

}  // namespace kal::test
