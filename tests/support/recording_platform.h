// A stand-in for every call of the platform contract: each call is recorded with its arguments and
// answers what the test has set. Only for programs that ask for it, see tests/CMakeLists.txt.
#ifndef TESTS_SUPPORT_RECORDING_PLATFORM_H_
#define TESTS_SUPPORT_RECORDING_PLATFORM_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace test_support {

// While an object lives the platform's calls go to it; one at a time, and a call while there is
// none ends the program. Not for several threads at once.
struct RecordingPlatform {
  RecordingPlatform();
  ~RecordingPlatform();
  RecordingPlatform(const RecordingPlatform&) = delete;
  RecordingPlatform& operator=(const RecordingPlatform&) = delete;

  // The calls since the last time, in order, as C++ would write them: text in quotes, nullptr
  // without. Structures and maps show what they hold: {}, {"%DLTYPE%": "BT"}.
  std::vector<std::string> TakeCalls();

  // What the calls answer.
  int init_credentials = 0;
  int exec = 0;
  int execl = 0;
  int parse_volume = 0;
  std::string volume_path = "/volume1";
  std::string volume_device = "/dev/vg1/volume_1";
  std::string real_share_path;  // empty: no access
  int get_real_name = 0;
  std::string real_name;           // empty: the name that was asked for
  bool leaves_name_alone = false;  // the buffer stays as the caller made it
  int is_admin = 0;
  int quota_is_enough = 1;
  int send_notification = 0;
  bool alloc_hash = true;
  int set_hash_value = 0;           // for every key but this one:
  std::string refused_hash_key;     // the key for which VLIBCSzHashSetValue() fails
  bool refusal_loses_hash = false;  // and whether it leaves a null handle behind
  int init_texts = 1;
  int load_text = 1;
  std::map<std::string, std::string> texts;

  // Called at every call, after it was recorded, with the call's name: a place to look at ids and
  // environment or to set errno.
  std::function<void(const std::string& name)> on_call;

  // False: calls are answered without a record (and without memory from the heap) or on_call.
  bool recording = true;

  std::vector<std::string> calls;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_RECORDING_PLATFORM_H_
