#include "dbquery/file_place.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <utility>
#include <vector>

namespace dorvdbquery {
namespace {

constexpr int kMostLinks = 40;  // as the kernel's own limit

// The text of a link; empty on failure.
std::string ReadLink(int folder, const std::string& name) {
  char text[PATH_MAX];
  const ssize_t length = readlinkat(folder, name.c_str(), text, sizeof text);
  return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

bool SameFile(const Descriptor& one, const Descriptor& other) {
  const struct stat status = one.Status();
  const struct stat other_status = other.Status();
  return status.st_dev == other_status.st_dev && status.st_ino == other_status.st_ino;
}

// Whose links are followed anywhere.
bool IsTrusted(uid_t user) { return user == 0 || user == geteuid(); }

// Whether nobody else can add to the folder.
bool IsClosed(const Descriptor& folder) {
  const struct stat status = folder.Status();
  return IsTrusted(status.st_uid) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// One walk along a path, name by name. The kernel would follow a whole path in one go, but
// whoever's links are in it.
class Walk {
 public:
  explicit Walk(int most_links) : links_left_(most_links) {}

  // Nothing, with errno, when the path cannot be followed.
  std::optional<FilePlace> ToTheEndOf(const std::string& path) {
    bool good = StartAt(".") && Prepend(path);
    while (good && !place_) {
      good = Step();
    }
    return std::move(place_);
  }

 private:
  // What can fail is false then, with errno.

  bool StartAt(const char* folder) {
    return StartAt(Descriptor(open(folder, O_PATH | O_DIRECTORY | O_CLOEXEC)));
  }

  bool StartAt(Descriptor folder) {
    folders_.clear();
    folders_.push_back(std::move(folder));
    return folders_.back().IsOpen();
  }

  bool Prepend(const std::string& path) {
    rest_ = path + (last_ ? "" : "/" + rest_);
    if (rest_[0] != '/') {
      return true;
    }
    rest_.erase(0, rest_.find_first_not_of('/'));
    return StartAt("/");
  }

  std::string TakeName() {
    const std::size_t end = rest_.find('/');
    last_ = end == std::string::npos;
    std::string name = rest_.substr(0, end);
    rest_.erase(0, rest_.find_first_not_of('/', end));
    return name.empty() ? "." : name;
  }

  bool Step() {
    std::string name = TakeName();
    if (name == "..") {
      if (!Back()) {
        return false;
      }
      name = ".";
    }
    if (name == "." && !last_) {
      return true;
    }
    Descriptor entry = Open(name);
    if (!entry.IsOpen()) {
      return errno == ENOENT && last_ &&
             Arrive({std::move(folders_.back()), std::move(name), std::move(link_)});
    }
    const struct stat status = entry.Status();
    if (S_ISLNK(status.st_mode)) {
      return MayFollow(status) && (entry.IsOnProc() ? Jump(name) : Follow(std::move(entry)));
    }
    return last_ ? Arrive({std::move(folders_.back()), std::move(name), std::move(entry)})
                 : Enter(std::move(entry));
  }

  // The folder that the walk came from: the one above may be another by now.
  bool Back() {
    if (folders_.size() == 1) {
      return StartAt(OpenPath("..", O_DIRECTORY));
    }
    folders_.pop_back();
    return true;
  }

  Descriptor OpenPath(const std::string& name, int flags) const {
    return Descriptor(openat(folders_.back().number(), name.c_str(), O_PATH | O_CLOEXEC | flags));
  }

  Descriptor Open(const std::string& name) const {
    if (!last_) {
      // Asking for a folder has one mounted that is mounted on demand.
      Descriptor folder = OpenPath(name, O_NOFOLLOW | O_DIRECTORY);
      if (folder.IsOpen() || errno != ENOTDIR) {
        return folder;
      }
    }
    return OpenPath(name, O_NOFOLLOW);
  }

  bool MayFollow(const struct stat& link) {
    if (links_left_-- == 0) {
      errno = ELOOP;
      return false;
    }
    if (!IsTrusted(link.st_uid)) {
      if (guide_ && *guide_ != link.st_uid) {
        errno = EACCES;
        return false;
      }
      guide_ = link.st_uid;
    } else if (link.st_nlink > 1 && !IsClosed(folders_.back())) {
      // A second name: others can have given it to somebody's link, unless the kernel protects hard
      // links.
      errno = EACCES;
      return false;
    }
    return true;
  }

  bool Follow(Descriptor link) {
    const std::string text = ReadLink(link.number(), "");
    if (last_) {
      link_ = std::move(link);
    }
    return !text.empty() && Prepend(text);
  }

  // Follows a link that stands for something open, whatever its text says.
  bool Jump(const std::string& name) {
    Descriptor target = OpenPath(name, 0);
    if (!target.IsOpen()) {
      return false;
    }
    if (last_) {
      return ArriveAt(std::move(target));
    }
    folders_.clear();
    return Enter(std::move(target));
  }

  bool Enter(Descriptor folder) {
    if (!S_ISDIR(folder.Status().st_mode)) {
      errno = ENOTDIR;
      return false;
    }
    folders_.push_back(std::move(folder));
    return true;
  }

  // Something that has been opened may be known by name, but the name that the kernel tells is by
  // now perhaps another file's.
  bool ArriveAt(Descriptor target) {
    const std::string name = ReadLink(AT_FDCWD, "/proc/self/fd/" + std::to_string(target.number()));
    std::optional<FilePlace> named = Walk(0).ToTheEndOf(name);
    return Arrive(named && SameFile(named->entry, target)
                      ? std::move(*named)
                      : FilePlace{Descriptor(), "", std::move(target)});
  }

  bool Arrive(FilePlace place) {
    const Descriptor& reached = place.folder.IsOpen() ? place.folder : place.entry;
    if (guide_ && reached.Status().st_uid != *guide_) {
      errno = EACCES;
      return false;
    }
    place_ = std::move(place);
    return true;
  }

  std::vector<Descriptor> folders_;  // from a start to where the walk is
  std::string rest_;                 // of the path
  bool last_ = true;                 // the name that was taken from it was its last
  int links_left_;
  Descriptor link_;             // in which the path ends
  std::optional<uid_t> guide_;  // another user whose links have been followed
  std::optional<FilePlace> place_;
};

}  // namespace

std::optional<FilePlace> FindPlace(const std::string& path) {
  return Walk(kMostLinks).ToTheEndOf(path);
}

}  // namespace dorvdbquery
