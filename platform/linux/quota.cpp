#include <dorv/quota.h>
#include <dorv/volume.h>
#include <sys/quota.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string_view>

namespace {

// A limit, which is counted in blocks, in bytes.
std::uint64_t ToBytes(std::uint64_t blocks) {
  return dbtob(std::min(blocks, btodb(std::numeric_limits<std::uint64_t>::max())));
}

// Whether the space in use grows beyond a limit; the limit 0 is none.
bool Exceeds(std::uint64_t used, std::uint64_t bytes, std::uint64_t limit_in_blocks) {
  const std::uint64_t limit = ToBytes(limit_in_blocks);
  return limit != 0 && (used > limit || bytes > limit - used);
}

// What the kernel would say: the soft limit may be exceeded until its time has run out, which
// begins to run when that happens first.
bool IsEnough(const dqblk& quota, std::uint64_t bytes) {
  const bool time_is_up =
      quota.dqb_btime != 0 && static_cast<std::uint64_t>(std::time(nullptr)) >= quota.dqb_btime;
  return !Exceeds(quota.dqb_curspace, bytes, quota.dqb_bhardlimit) &&
         !(time_is_up && Exceeds(quota.dqb_curspace, bytes, quota.dqb_bsoftlimit));
}

// Whether a volume's source is a name for something else than a file of this machine: a kind of
// file system ("tmpfs"), a pool's folder ("tank/data"), another machine's ("server:/export",
// "//server/share").
bool NamesNoDevice(const std::string_view source) {
  return source.substr(0, 1) != "/" || source.substr(0, 2) == "//";
}

// Whether "no such file or directory", as an answer for a volume that holds @p path, is about the
// user: file systems say so of users whom they do not know, and the kernel of a device without a
// file. Volumes that are not on a block device have none to miss.
bool IsAboutTheUser(const char* path, const char* device) {
  struct stat info {};
  return stat(device, &info) == 0 || (stat(path, &info) == 0 && major(info.st_dev) == 0);
}

// Whether an error of quotactl() for a mounted volume says that the user has no quota there: none
// on this volume, none on a file system of this kind (ENODEV for one that is not tied to a single
// device, as btrfs), none on what is no block device, none in this kernel.
bool MeansNoQuota(int error, const char* path, const char* device) {
  return error == ESRCH || error == EINVAL || error == EOPNOTSUPP || error == ENODEV ||
         error == ENOTBLK || error == ENOSYS || (error == ENOENT && IsAboutTheUser(path, device));
}

}  // namespace

int DORVQuotaIsEnough(uid_t uid, const char* path, unsigned long long bytes) {
  DorvVolumeInfo volume;
  if (VolumePathParseEx(path, &volume) != 0) {
    return -1;
  }
  if (NamesNoDevice(volume.device)) {
    return 1;
  }
  dqblk quota{};
  if (quotactl(QCMD(Q_GETQUOTA, USRQUOTA), volume.device, static_cast<int>(uid),
               reinterpret_cast<caddr_t>(&quota)) != 0) {
    return MeansNoQuota(errno, path, volume.device) ? 1 : -1;
  }
  return IsEnough(quota, bytes) ? 1 : 0;
}
