#include <dorvdl/db/session_pool.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "dbquery/recycled_session.h"

namespace dorvdl::db {

using dorvdbquery::RecycledSession;

// What the pool shares with the sessions that are taken, which may outlive it.
struct SessionPool::Core {
  explicit Core(std::size_t most_places) : most(std::max<std::size_t>(most_places, 1)) {}

  // Takes a place for one more connection; needs the lock.
  void Occupy() {
    free.reserve(places + 1);  // so that to come back needs no memory
    ++places;
  }

  void Vacate() {
    const std::lock_guard lock(mutex);
    --places;
    came_free.notify_one();
  }

  void ComeBack(RecycledSession session) {
    const std::lock_guard lock(mutex);
    if (is_closed || !session.HasConnection()) {
      --places;
    } else {
      free.push_back(std::move(session));
    }
    came_free.notify_one();
  }

  const std::size_t most;
  std::mutex mutex;
  std::condition_variable came_free;
  std::size_t places = 0;  // connections that are free or taken, or are being opened
  std::vector<RecycledSession> free;
  bool is_closed = false;
};

SessionPool::SessionPool(std::size_t most) : core_(std::make_shared<Core>(most)) {}

SessionPool::~SessionPool() {
  std::vector<RecycledSession> closing;
  const std::lock_guard lock(core_->mutex);
  core_->is_closed = true;
  closing.swap(core_->free);
}

std::size_t SessionPool::Open() {
  std::unique_lock lock(core_->mutex);
  for (std::size_t place = 0; place < core_->most; ++place) {
    std::optional<RecycledSession> free;
    if (core_->places < core_->most) {
      core_->Occupy();
    } else if (!core_->free.empty()) {
      // From the other end than that to which it comes back: each is looked at, for it may be lost.
      free.emplace(std::move(core_->free.front()));
      core_->free.erase(core_->free.begin());
    } else {
      break;
    }
    lock.unlock();
    Lend(core_, std::move(free));  // comes back at once
    lock.lock();
  }
  return core_->places;
}

std::shared_ptr<DBSession> SessionPool::Take(std::chrono::milliseconds wait) {
  // A clock cannot add the longest of all waits to the present.
  constexpr std::chrono::milliseconds kForEver = std::chrono::hours(24 * 365);
  std::optional<RecycledSession> free;
  {
    std::unique_lock lock(core_->mutex);
    const auto is_free = [this] { return !core_->free.empty() || core_->places < core_->most; };
    if (!core_->came_free.wait_for(lock, std::min(wait, kForEver), is_free)) {
      return nullptr;
    }
    if (core_->free.empty()) {
      core_->Occupy();
    } else {
      free.emplace(std::move(core_->free.back()));
      core_->free.pop_back();
    }
  }
  return Lend(core_, std::move(free));
}

std::shared_ptr<DBSession> SessionPool::Lend(const std::shared_ptr<Core>& core,
                                             std::optional<RecycledSession> free) {
  std::unique_ptr<DBSession> session;
  try {
    auto used = free ? std::move(*free).Finish() : std::nullopt;
    session.reset(used ? new DBSession(std::make_shared<dorvdbquery::Session>(*std::move(used)))
                       : new DBSession());
  } catch (...) {
    core->Vacate();
    throw;
  }
  const auto come_back = [core](DBSession* returned) {
    const std::unique_ptr<DBSession> owner(returned);
    core->ComeBack(RecycledSession(returned->session()));
  };
  return {session.release(), come_back};
}

}  // namespace dorvdl::db
