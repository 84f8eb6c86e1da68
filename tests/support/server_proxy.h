// A connection to the private server that a test can break at any byte.
#ifndef TESTS_SUPPORT_SERVER_PROXY_H_
#define TESTS_SUPPORT_SERVER_PROXY_H_

#include <atomic>
#include <string>
#include <thread>

#include "support/temporary_folder.h"

namespace test_support {

// Stands between the private server and the connections that this process opens while it lives:
// PGHOST names it in the meantime. Passes every byte on, for one connection at a time.
class ServerProxy {
 public:
  ServerProxy();
  ~ServerProxy();
  ServerProxy(const ServerProxy&) = delete;
  ServerProxy& operator=(const ServerProxy&) = delete;

  // Breaks the connection as soon as its client, or the server, has sent this many more bytes.
  void BreakAfterFromClient(long long bytes) { left_from_client_ = bytes; }
  void BreakAfterFromServer(long long bytes) { left_from_server_ = bytes; }

 private:
  void Serve() const;
  void Pump(int client, int server) const;

  TemporaryFolder folder_;
  std::string server_folder_;
  int listener_;
  int stop_[2];
  mutable std::atomic<long long> left_from_client_{1LL << 60};
  mutable std::atomic<long long> left_from_server_{1LL << 60};
  std::thread thread_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_SERVER_PROXY_H_
