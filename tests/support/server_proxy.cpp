#include "support/server_proxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace test_support {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

sockaddr_un Address(const std::string& folder) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder + "/.s.PGSQL." + Variable("PGPORT");
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

int MakeSocket() { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

// Passes on what has arrived; false when a side has gone or the count has run out.
bool PassOn(int from, int to, std::atomic<long long>& left) {
  std::vector<char> bytes(65536);
  const ssize_t size = read(from, bytes.data(), bytes.size());
  if (size <= 0 || (left -= size) <= 0) {
    return false;
  }
  for (ssize_t done = 0; done < size;) {
    const ssize_t sent =
        send(to, bytes.data() + done, static_cast<std::size_t>(size - done), MSG_NOSIGNAL);
    if (sent < 0) {
      return false;
    }
    done += sent;
  }
  return true;
}

}  // namespace

ServerProxy::ServerProxy() : server_folder_(Variable("PGHOST")), listener_(MakeSocket()) {
  const sockaddr_un address = Address(folder_.Path("."));
  if (pipe(stop_) != 0 ||
      bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener_, 1) != 0) {
    throw std::runtime_error("the proxy cannot listen");
  }
  setenv("PGHOST", folder_.Path(".").c_str(), 1);
  thread_ = std::thread([this] { Serve(); });
}

ServerProxy::~ServerProxy() {
  close(stop_[1]);
  thread_.join();
  close(stop_[0]);
  close(listener_);
  setenv("PGHOST", server_folder_.c_str(), 1);
}

void ServerProxy::Serve() const {
  pollfd events[] = {{listener_, POLLIN, 0}, {stop_[0], 0, 0}};
  while (poll(events, 2, -1) >= 0 && events[1].revents == 0) {
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const int server = MakeSocket();
    const sockaddr_un address = Address(server_folder_);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
      Pump(client, server);
    }
    close(client);
    close(server);
  }
}

void ServerProxy::Pump(int client, int server) const {
  pollfd events[] = {{client, POLLIN, 0}, {server, POLLIN, 0}, {stop_[0], 0, 0}};
  while (poll(events, 3, -1) >= 0 && events[2].revents == 0) {
    if ((events[0].revents != 0 && !PassOn(client, server, left_from_client_)) ||
        (events[1].revents != 0 && !PassOn(server, client, left_from_server_))) {
      return;
    }
  }
}

}  // namespace test_support
