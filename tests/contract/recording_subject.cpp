// The stand-in that records.
#include <dorv/notification.h>

#include <cerrno>

#include "contract/platform_contract.h"
#include "support/recording_platform.h"

namespace test_support {
namespace {

class RecordingSubject : public Subject {
 public:
  std::string Contents(VLIBSZHASH* hash) override {
    platform_.TakeCalls();
    DORVSendPersonalNotifiction("", "", "", hash);
    const std::string call = platform_.TakeCalls().at(0);
    const std::string before = "DORVSendPersonalNotifiction(\"\", \"\", \"\", ";
    return call.substr(before.size(), call.size() - before.size() - 1);
  }
  std::string User() override {
    platform_.get_real_name = 0;
    return "alice";
  }
  std::string UserInAnotherCase() override {
    platform_.real_name = User();
    return "Alice";
  }
  std::string Nobody() override {
    platform_.get_real_name = -1;
    platform_.send_notification = ESRCH;
    return "nobody";
  }
  uid_t Administrator() override {
    platform_.is_admin = 1;
    return 1000;
  }
  uid_t NobodysId() override {
    platform_.is_admin = -1;
    return 1001;
  }
  std::string MissingPath() override {
    platform_.parse_volume = platform_.quota_is_enough = -1;
    platform_.exec = platform_.execl = -1;
    return "/missing";
  }
  std::string FolderWithTexts(const std::map<std::string, std::string>& texts) override {
    platform_.init_texts = 1;
    platform_.load_text = 1;
    platform_.texts = texts;
    return "/application";
  }
  std::string FolderWithoutTexts() override {
    platform_.init_texts = 0;
    return "/none";
  }
  std::string UnknownSection() override {
    platform_.load_text = 0;
    return "unknown";
  }

 private:
  RecordingPlatform platform_;
};

INSTANTIATE_TEST_SUITE_P(Platform, PlatformContractTest,
                         testing::Values(SubjectMaker{"recording", &Make<RecordingSubject>}));

}  // namespace
}  // namespace test_support
