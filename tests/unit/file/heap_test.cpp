// The C functions take no memory from the heap.
#include <dorvdl/file.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "unit/file/file_test.h"

namespace {
thread_local int allocations = 0;
}

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the C library's and the sanitizer's.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*on_malloc)(const volatile void*,
                                                                           std::size_t),
                                                         void (*on_free)(const volatile void*));

static const int installed = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { ++allocations; }, [](const volatile void*) {});
#else
extern "C" {
#define EXPORTED __attribute__((visibility("default")))

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

EXPORTED void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}
EXPORTED void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}
EXPORTED void* realloc(void* block, std::size_t size) {
  ++allocations;
  return __libc_realloc(block, size);
}
}
#endif
// NOLINTEND(bugprone-reserved-identifier)

namespace test_support {
namespace {

class HeapTest : public FileTest {
 protected:
  HeapTest() { platform_.recording = false; }

  template <typename Function>
  static int Allocations(Function function) {
    TakeLog();
    const int before = allocations;
    function();
    return allocations - before;
  }

  static void CallAll() {
    static std::array<char, 4096> buffer{};
    GetTmpDownloadDirRealPath(buffer.data(), 4096);
    GetTmpDownloadDir(buffer.data(), 4096);
    GetTmpDownloadDirVol(buffer.data(), buffer.size());
    TmpVolumeSpaceCheck();
    RemoveTaskTemp("/volume1/download/17", 0);
  }
};

TEST_F(HeapTest, TheCountSeesAnAllocation) {
  EXPECT_GT(Allocations([] { std::string(100, 'a').swap(*std::make_unique<std::string>()); }), 0);
}

TEST_F(HeapTest, SuccessTakesNone) {
  files_.target = "/" + std::string(1000, 'a');
  EXPECT_EQ(Allocations(CallAll), 0);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(HeapTest, AskingForAQuotaTakesNoneBesideTheLog) {
  platform_.is_admin = 1;
  EXPECT_EQ(Allocations([] { DORVDLQuotaCheck(1026, "/volume1", 5); }), 0);
  platform_.is_admin = -1;
  EXPECT_EQ(Allocations([] { DORVDLQuotaCheck(1026, "/volume1", 5); }), Allocations([] {
              syslog(LOG_ERR, "%s:%d %s", "file", 10, "Failed to check if uid 1026 is admingroup");
            }));
}

// The captured log line itself is the only thing that takes memory.
TEST_F(HeapTest, FailureTakesNoneBesideTheLog) {
  const auto log = [](const char* text) { syslog(LOG_ERR, "%s:%d %s", "file", 10, text); };

  files_.readlink_error = ENOENT;
  EXPECT_EQ(Allocations([] { GetTmpDownloadDirRealPath(nullptr, 1); }),
            Allocations([&] { log("Bad parameters"); }));
  EXPECT_EQ(Allocations([] { GetTmpDownloadDirVol(nullptr, 0); }),
            Allocations([&] { log("Failed to get download temporary directory"); }));
  EXPECT_EQ(Allocations([] { TmpVolumeSpaceCheck(); }),
            Allocations([&] { log("Failed to get TmpDownloadDir."); }));

  files_.readlink_error = 0;
  files_.statfs_error = EIO;
  platform_.parse_volume = -1;
  platform_.execl = -1;
  EXPECT_EQ(Allocations([] { GetTmpDownloadDirVol(nullptr, 0); }),
            Allocations([&] { log("Failed to parse path [/volume1/download] for volume info"); }));
  EXPECT_EQ(Allocations([] { TmpVolumeSpaceCheck(); }),
            Allocations([&] { log("statfs() failed [/volume1/download]"); }));
  EXPECT_EQ(Allocations([] { RemoveTaskTemp("/volume1/17", 1); }),
            Allocations([&] { log("Failed to remove path [/volume1/17]"); }));
}

}  // namespace
}  // namespace test_support
