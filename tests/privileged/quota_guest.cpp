// Asks for disk quotas on a kernel that enforces them, and lets that kernel judge the answers.
//
// usage: quota_guest IMAGE
//
// Boots a user-mode kernel with this program as its first process and IMAGE, an ext4 file system
// with the feature "quota", as its disk; what the guest finds goes to the standard output. The
// guest sees the host's files, read-only.
#include <dorv/quota.h>
#include <fcntl.h>
#include <glob.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/quota.h>
#include <sys/reboot.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

constexpr char kDisk[] = "/dev/ubda";
constexpr char kFolder[] = "/mnt/disk";
constexpr char kFile[] = "/mnt/disk/file";
constexpr char kAskedFile[] = "/mnt/disk/asked";
constexpr uid_t kUser = 1026;
constexpr unsigned long long kKib = 1024;

[[noreturn]] void Die(const char* what) {
  std::printf("%s: %s\n", what, std::strerror(errno));
  std::fflush(stdout);
  _exit(1);
}

void Require(bool done, const char* what) {
  if (!done) {
    Die(what);
  }
}

// Makes the guest's C library leave the registers alone that HideExtendedRegisters() hides: the
// kernel does not keep them when it changes from one process to another.
constexpr char kNoWideRegisters[] =
    "GLIBC_TUNABLES=glibc.cpu.hwcaps="
    "-AVX,-AVX2,-AVX512F,-AVX512VL,-AVX512BW,-XSAVE,-XSAVEC,-AVX_Fast_Unaligned_Load";

// Lets the user-mode kernel believe that this machine has no extended registers: it cannot hold
// those of processors that have more than it knows of, and would not start.
void HideExtendedRegisters() {
  std::array<sock_filter, 6> filter = {{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_ptrace, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PTRACE_GETREGSET, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  }};
  sock_fprog program = {filter.size(), filter.data()};
  Require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no_new_privs");
  Require(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0, "seccomp");
}

[[noreturn]] void Boot(const std::string& image) {
  std::array<char, PATH_MAX> self{};
  Require(readlink("/proc/self/exe", self.data(), self.size() - 1) > 0, "/proc/self/exe");
  HideExtendedRegisters();
  const std::vector<std::string> arguments = {
      "linux.uml",      "mem=64M",  "root=/dev/root", "rootfstype=hostfs",
      "rootflags=/",    "ro",       "ubd0=" + image,  "init=" + std::string(self.data()),
      kNoWideRegisters, "con=null", "con0=fd:0,fd:1", "quiet"};
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.c_str()));
  }
  words.push_back(nullptr);
  execvp(words.front(), words.data());
  Die("linux.uml");
}

void LoadModule(const std::string& name) {
  glob_t found{};
  const std::string pattern = "/usr/lib/uml/modules/*/kernel/fs/quota/" + name + ".ko";
  Require(glob(pattern.c_str(), 0, nullptr, &found) == 0, pattern.c_str());
  const int file = open(found.gl_pathv[0], O_RDONLY | O_CLOEXEC);
  Require(file >= 0 && syscall(SYS_finit_module, file, "", 0) == 0, name.c_str());
  close(file);
  globfree(&found);
}

// The user's limits in KiB, and when the time to exceed the soft one ends; 0 for none.
void SetQuota(unsigned long long soft, unsigned long long hard, std::time_t grace_end) {
  dqblk quota{};
  quota.dqb_bsoftlimit = soft;
  quota.dqb_bhardlimit = hard;
  quota.dqb_btime = static_cast<unsigned long long>(grace_end);
  quota.dqb_valid = QIF_BLIMITS | (grace_end == 0 ? 0U : QIF_BTIME);
  Require(quotactl(QCMD(Q_SETQUOTA, USRQUOTA), kDisk, kUser, reinterpret_cast<char*>(&quota)) == 0,
          "Q_SETQUOTA");
}

// Whether the kernel lets the user write so much into a new file.
bool KernelAllows(uid_t user, unsigned long long bytes, const char* path) {
  const pid_t child = fork();
  if (child == 0) {
    Require(setuid(user) == 0, "setuid");
    const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const std::vector<char> data(bytes, 'x');
    const bool written =
        file >= 0 && write(file, data.data(), bytes) == static_cast<ssize_t>(bytes);
    _exit(written ? 0 : 1);
  }
  int status = 0;
  Require(child > 0 && waitpid(child, &status, 0) == child, "fork");
  return status == 0;
}

void Ask(const char* about, uid_t user, unsigned long long bytes) {
  const int answer = DORVQuotaIsEnough(user, kFolder, bytes);
  const bool allowed = KernelAllows(user, bytes, kAskedFile);
  unlink(kAskedFile);
  std::printf("%s: answer %d, the kernel %s\n", about, answer,
              allowed ? "allows it" : "refuses it");
}

void AskAboutEveryKindOfQuota() {
  Ask("no quota", kUser, 300 * kKib);
  SetQuota(0, 200, 0);
  Ask("hard limit, exactly enough", kUser, 200 * kKib);
  Ask("hard limit, one byte short", kUser, 200 * kKib + 1);
  Ask("another user", kUser + 1, 300 * kKib);
  SetQuota(100, 200, 0);
  Ask("soft limit exceeded for the first time", kUser, 150 * kKib);
  Require(KernelAllows(kUser, 120 * kKib, kFile), "a file beyond the soft limit");
  Ask("soft limit within its time", kUser, 80 * kKib);
  Ask("soft limit within its time, hard limit one byte short", kUser, 80 * kKib + 1);
  SetQuota(100, 200, std::time(nullptr) - 1);
  Ask("soft limit after its time", kUser, 1);
}

[[noreturn]] void RunAsFirstProcess() {
  std::printf("started\n");
  LoadModule("quota_tree");
  LoadModule("quota_v2");
  Require(mount("proc", "/proc", "proc", 0, nullptr) == 0, "/proc");
  Require(mount("tmpfs", "/mnt", "tmpfs", 0, nullptr) == 0, "/mnt");
  Require(mkdir(kFolder, 0755) == 0, kFolder);
  Require(mount(kDisk, kFolder, "ext4", 0, "usrquota") == 0, "ext4");
  Require(chmod(kFolder, 0777) == 0, "chmod");
  AskAboutEveryKindOfQuota();
  std::fflush(stdout);
  reboot(RB_POWER_OFF);
  Die("power off");
}

}  // namespace

int main(int argc, char** argv) {
  if (getpid() == 1) {
    RunAsFirstProcess();
  }
  if (argc != 2) {
    std::fprintf(stderr, "usage: quota_guest IMAGE\n");
    return 2;
  }
  Boot(argv[1]);
}
