// The portable platform.
#include <filesystem>

#include "contract/platform_contract.h"
#include "hash_map.h"
#include "support/temporary_folder.h"

namespace test_support {
namespace {

class PortableSubject : public Subject {
 public:
  std::string Contents(VLIBSZHASH* hash) override {
    std::string contents;
    for (const auto& [key, value] : hash->pairs) {
      contents += contents.empty() ? "" : ", ";
      contents.append("\"").append(key).append("\": \"").append(value).append("\"");
    }
    return '{' + contents + '}';
  }
  std::string User() override { return "root"; }
  std::string UserInAnotherCase() override { return "Root"; }
  std::string Nobody() override { return "no such user"; }
  uid_t Administrator() override { return 0; }
  uid_t NobodysId() override { return static_cast<uid_t>(-1); }
  std::string MissingPath() override { return folder_.Path("missing"); }
  std::string FolderWithTexts(const std::map<std::string, std::string>& texts) override {
    std::filesystem::create_directories(folder_.Path("application/texts/en"));
    std::string content = "[section]\n";
    for (const auto& [key, text] : texts) {
      content += key;
      content += '=' + text + '\n';
    }
    folder_.Write("application/texts/en/strings", content);
    return folder_.Path("application");
  }
  std::string FolderWithoutTexts() override { return folder_.Path("none"); }
  std::string UnknownSection() override { return "unknown"; }

 private:
  TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Platform, PlatformContractTest,
                         testing::Values(SubjectMaker{"portable", &Make<PortableSubject>}));

}  // namespace
}  // namespace test_support
