#include "support/recording_platform.h"

#include <dorv/cgi.h>
#include <dorv/credentials.h>
#include <dorv/exec.h>
#include <dorv/notification.h>
#include <dorv/quota.h>
#include <dorv/share_path.h>
#include <dorv/user.h>
#include <dorv/volume.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

struct VLIBSZHASH {
  std::map<std::string, std::string> pairs;
};

namespace test_support {
namespace {

RecordingPlatform* current = nullptr;

// Every map that was handed out: callers may leave theirs behind.
std::vector<std::unique_ptr<VLIBSZHASH>> hashes;

VLIBSZHASH* KeepHash(std::map<std::string, std::string> pairs) {
  hashes.push_back(std::make_unique<VLIBSZHASH>(VLIBSZHASH{std::move(pairs)}));
  return hashes.back().get();
}

template <typename Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
std::string Show(Number value) {
  return std::to_string(value);
}
std::string Show(const std::string& text) { return '"' + text + '"'; }
std::string Show(const char* text) { return text == nullptr ? "nullptr" : Show(std::string(text)); }
std::string Show(const std::vector<const char*>& list) {
  std::string shown;
  for (const char* const item : list) {
    shown += (shown.empty() ? "" : ", ") + Show(item);
  }
  return shown;
}
std::string Show(const VLIBSZHASH* hash) {
  if (hash == nullptr) {
    return "nullptr";
  }
  std::string shown;
  for (const auto& [key, value] : hash->pairs) {
    shown += (shown.empty() ? "" : ", ") + Show(key) + ": " + Show(value);
  }
  return '{' + shown + '}';
}
std::string Show(const DorvCgiContext* context) {
  return context->texts == nullptr ? "{}" : "{texts}";
}
// "{}" when every byte is zero, as callers must leave it.
std::string Show(const DorvVolumeInfo* info) {
  const char* const bytes = info->path;
  const bool zeroed =
      std::all_of(bytes, bytes + sizeof info->path, [](char b) { return b == 0; }) &&
      std::all_of(info->device, info->device + sizeof info->device, [](char b) { return b == 0; });
  return zeroed ? "{}" : "{not zeroed}";
}

// What the loader of texts holds before a section is loaded.
std::map<std::string, std::string> no_texts;

// Fills a buffer as snprintf() does, which a test may have made fail; false when the text is cut.
bool CopyText(const std::string& text, char* to, std::size_t size) {
  if (size > 0) {
    to[text.copy(to, size - 1)] = '\0';
  }
  return text.size() < size;
}

// Records a call and says who is to answer it.
template <typename... Arguments>
RecordingPlatform& Record(const char* name, const Arguments&... arguments) {
  if (current == nullptr) {
    std::abort();
  }
  if (current->recording) {
    std::string call = std::string(name) + '(';
    const char* separator = "";
    ((call += separator + Show(arguments), separator = ", "), ...);
    current->calls.push_back(call + ')');
    if (current->on_call) {
      current->on_call(name);
    }
  }
  return *current;
}

}  // namespace

RecordingPlatform::RecordingPlatform() {
  if (current != nullptr) {
    std::abort();
  }
  current = this;
}

RecordingPlatform::~RecordingPlatform() {
  hashes.clear();
  current = nullptr;
}

std::vector<std::string> RecordingPlatform::TakeCalls() { return std::exchange(calls, {}); }

}  // namespace test_support

using test_support::CopyText;
using test_support::KeepHash;
using test_support::no_texts;
using test_support::Record;

int InitCredentialsByName(const char* user, int flag) {
  return Record("InitCredentialsByName", user, flag).init_credentials;
}

int VLIBUserRealNameGet(const char* user, char* buf, int size) {
  const auto& platform = Record("VLIBUserRealNameGet", user, size);
  if (platform.leaves_name_alone) {
    return platform.get_real_name;
  }
  const bool fits = CopyText(platform.real_name.empty() ? user : platform.real_name, buf,
                             size > 0 ? static_cast<std::size_t>(size) : 0);
  return fits ? platform.get_real_name : -1;
}

int VLIBGroupIsAdminGroupMemByUid(uid_t uid, int flag) {
  return Record("VLIBGroupIsAdminGroupMemByUid", uid, flag).is_admin;
}

VLIBSZHASH* VLIBCSzHashAlloc(int size) {
  return Record("VLIBCSzHashAlloc", size).alloc_hash ? KeepHash({}) : nullptr;
}

// Moves the map at every call: a caller that goes on with an old handle is found out.
int VLIBCSzHashSetValue(VLIBSZHASH** hash, const char* key, const char* value) {
  const auto& platform = Record("VLIBCSzHashSetValue", key, value);
  if (hash == nullptr || *hash == nullptr || key == nullptr || value == nullptr) {
    return -1;
  }
  if (platform.refused_hash_key == key) {
    *hash = platform.refusal_loses_hash ? nullptr : *hash;
    return -1;
  }
  auto pairs = std::exchange((*hash)->pairs, {});
  pairs[key] = value;
  *hash = KeepHash(std::move(pairs));
  return platform.set_hash_value;
}

void VLIBCSzHashFree(VLIBSZHASH* hash) { Record("VLIBCSzHashFree", hash); }

int DORVSendPersonalNotifiction(const char* event, const char* user, const char* application,
                                VLIBSZHASH* hash) {
  return Record("DORVSendPersonalNotifiction", event, user, application, hash).send_notification;
}

int DorvCgiInit(const char* dir, DorvCgiContext* context) {
  auto& platform = Record("DorvCgiInit", dir, context);
  context->texts = platform.init_texts != 0 ? &no_texts : nullptr;
  return platform.init_texts;
}

int DorvCgiLoadText(DorvCgiContext* context, const char* section, int flag) {
  auto& platform = Record("DorvCgiLoadText", context, section, flag);
  if (context->texts == nullptr || platform.load_text == 0) {
    return 0;
  }
  context->texts = &platform.texts;
  return platform.load_text;
}

const char* DorvCgiGetText(DorvCgiContext* context, const char* key, const char* def) {
  Record("DorvCgiGetText", context, key, def);
  const auto* const loaded = static_cast<const decltype(no_texts)*>(context->texts);
  if (loaded == nullptr) {
    return def;
  }
  const auto found = loaded->find(key);
  return found != loaded->end() ? found->second.c_str() : def;
}

void DorvCgiFree(DorvCgiContext* context) {
  Record("DorvCgiFree", context);
  *context = {};
}

int VolumePathParseEx(const char* path, DorvVolumeInfo* info) {
  const auto& platform = Record("VolumePathParseEx", path, info);
  const bool fits = CopyText(platform.volume_path, info->path, sizeof info->path) &&
                    CopyText(platform.volume_device, info->device, sizeof info->device);
  return fits ? platform.parse_volume : -1;
}

int VLIBCExec(const char* program, const char* a1, const char* a2, const char* a3, const char* a4) {
  return Record("VLIBCExec", program, a1, a2, a3, a4).exec;
}

int VLIBCExecl(const char* program, int options, const char* arg, ...) {
  if (test_support::current != nullptr && !test_support::current->recording) {
    return test_support::current->execl;
  }
  std::vector<const char*> arguments;
  va_list rest;
  va_start(rest, arg);
  for (const char* next = arg; next != nullptr; next = va_arg(rest, const char*)) {
    arguments.push_back(next);
  }
  va_end(rest);
  arguments.push_back(nullptr);
  return Record("VLIBCExecl", program, options, arguments).execl;
}

int DORVQuotaIsEnough(uid_t uid, const char* path, unsigned long long bytes) {
  return Record("DORVQuotaIsEnough", uid, path, bytes).quota_is_enough;
}

namespace dorvdl::common {

std::string GetRealPathFromSharePath(const std::string& path, const std::string& user) {
  return Record("GetRealPathFromSharePath", path, user).real_share_path;
}

}  // namespace dorvdl::common
