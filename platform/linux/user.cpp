#include <dorv/user.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "account.h"
#include "guarded.h"

namespace {

int CopyRealName(const char* user, char* buf, std::size_t size) {
  if (std::strchr(user, '/') != nullptr) {
    return -1;
  }
  const auto account = dorv::FindAccountInAnyCase(user);
  if (!account || account->name.size() >= size) {
    return -1;
  }
  std::memcpy(buf, account->name.c_str(), account->name.size() + 1);
  return 0;
}

int IsAdministrator(uid_t uid) {
  const auto account = dorv::FindAccount(uid);
  const auto administrators = dorv::FindGroup(DORV_ADMIN_GROUP);
  if (!account || !administrators) {
    return -1;
  }
  const auto groups = GroupsOf(*account);
  return std::count(groups.begin(), groups.end(), *administrators) > 0 ? 1 : 0;
}

}  // namespace

int VLIBUserRealNameGet(const char* user, char* buf, int size) {
  return dorv::Guarded(
      -1, [=] { return size > 0 ? CopyRealName(user, buf, static_cast<std::size_t>(size)) : -1; });
}

int VLIBGroupIsAdminGroupMemByUid(uid_t uid, int /*flag*/) {
  return uid == 0 ? 1 : dorv::Guarded(-1, [=] { return IsAdministrator(uid); });
}
