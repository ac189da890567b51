// A proxy before the test server, which delays, cuts or hangs what passes through it.

#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include "tests/server/Server.h"

namespace kal::test {

class Proxy {
 public:
  explicit Proxy(const Server& server = Server::Get());
  Proxy(const Proxy&) = delete;
  Proxy& operator=(const Proxy&) = delete;
  ~Proxy();

  // The folder of its socket.
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }
  // What passes from now on takes so much longer, each way.
  void Delay(std::chrono::microseconds each) { delay_ = each; }
  // Of the messages that come from now on, counted from 1 on both ways of all connections, that one
  // does not pass: its connection is cut before it. Once, or at every so many; 0 cuts none.
  void CutAt(std::size_t message, bool again = false) {
    passed_ = 0;
    again_ = again;
    cutAt_ = message;
  }
  // Messages since CutAt.
  [[nodiscard]] std::size_t Passed() const { return passed_; }
  // Whether nothing passes from now on.
  void Hang(bool hangs) { hangs_ = hangs; }

 private:
  struct Way;
  struct Connection;

  void Serve();
  void Accept();
  bool Read(Way& way);
  static bool Write(Way& way);

  std::filesystem::path folder_;
  std::filesystem::path server_;
  int listener_;
  int wake_[2] = {-1, -1};  // a pipe that ends the thread
  std::atomic<std::chrono::microseconds> delay_{std::chrono::microseconds(0)};
  std::atomic<std::size_t> cutAt_{0};
  std::atomic<bool> again_{false};
  std::atomic<std::size_t> passed_{0};
  std::atomic<bool> hangs_{false};
  std::vector<std::unique_ptr<Connection>> connections_;
  std::thread thread_;
};

}  // namespace kal::test
