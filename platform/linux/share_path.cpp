#include <dorv/share_path.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "account.h"

namespace dorvdl::common {
namespace {

struct User {
  uid_t uid;
  std::vector<gid_t> groups;
};

// The user of that name; none also when the account database cannot be read.
std::optional<User> FindUser(const std::string& name) {
  try {
    const auto account = dorv::FindAccountInAnyCase(name);
    return account ? std::optional<User>({account->uid, GroupsOf(*account)}) : std::nullopt;
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

// Whether the mode bits of a folder grant @p wanted, a sum of R_OK, W_OK and X_OK. As in the
// kernel the first class that the user belongs to decides, even when a later one grants more.
bool Grants(const std::string& folder, const User& user, unsigned wanted) {
  struct stat info {};
  if (stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
    return false;
  }
  if (user.uid == 0) {
    return true;
  }
  unsigned granted = info.st_mode;
  if (info.st_uid == user.uid) {
    granted >>= 6;
  } else if (std::count(user.groups.begin(), user.groups.end(), info.st_gid) > 0) {
    granted >>= 3;
  }
  return (granted & wanted) == wanted;
}

// Whether the user may use the folder @p real, an absolute path without links.
bool MayUse(const std::string& real, const User& user) {
  for (std::size_t end = 1; end != std::string::npos; end = real.find('/', end + 1)) {
    if (!Grants(real.substr(0, end), user, X_OK)) {
      return false;
    }
  }
  return Grants(real, user, R_OK | X_OK);
}

// The absolute path without links; empty when there is no such file or it cannot be reached.
std::string RealPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real ? real.get() : "";
}

// Whether the file @p real is @p folder or lies below it; both are absolute and without links.
bool IsInside(const std::string& real, const std::string& folder) {
  return real == folder || folder == "/" || boost::algorithm::starts_with(real, folder + "/");
}

bool HasNul(const std::string& text) { return text.find('\0') != std::string::npos; }

}  // namespace

std::string GetRealPathFromSharePath(const std::string& path, const std::string& user) {
  if (HasNul(path) || HasNul(user)) {
    return {};
  }
  std::vector<std::string> names;
  boost::algorithm::split(names, path, [](char letter) { return letter == '/'; });
  names.erase(std::remove(names.begin(), names.end(), ""), names.end());
  const bool climbs = std::any_of(names.begin(), names.end(), [](const std::string& name) {
    return name == "." || name == "..";
  });
  if (names.empty() || climbs) {
    return {};
  }

  const std::string root = std::string(DORV_SHARE_ROOT) + "/";
  const std::string share = RealPath(root + names.front());
  const std::string real = RealPath(root + boost::algorithm::join(names, "/"));
  if (share.empty() || real.empty() || !IsInside(real, share)) {
    return {};
  }
  const std::optional<User> account = FindUser(user);
  return account && MayUse(real, *account) ? real : std::string();
}

}  // namespace dorvdl::common
