// The promises of the platform's headers that more than one implementation keeps: each is a subject
// of the same tests, so that a stand-in that answers for the platform cannot drift away from it.
#ifndef TESTS_CONTRACT_PLATFORM_CONTRACT_H_
#define TESTS_CONTRACT_PLATFORM_CONTRACT_H_

#include <dorv/hash.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <map>
#include <memory>
#include <ostream>
#include <string>

namespace test_support {

// An implementation, with what a test cannot arrange or see through the calls themselves.
class Subject {
 public:
  Subject() = default;
  virtual ~Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  // What a map holds, in the order of its keys: {"%DLTYPE%": "BT", "%SHARE%": "media"}.
  virtual std::string Contents(VLIBSZHASH* hash) = 0;

  // The name of a user, as it is spelt, and in another case; the name of nobody, until another one
  // is asked for. The id of an administrator; an id that nobody has, until another one is asked
  // for.
  virtual std::string User() = 0;
  virtual std::string UserInAnotherCase() = 0;
  virtual std::string Nobody() = 0;
  virtual uid_t Administrator() = 0;
  virtual uid_t NobodysId() = 0;

  // The path of something that does not exist, be it a file or a program.
  virtual std::string MissingPath() = 0;

  // The folder of a web application whose section "section" has these texts, and which has no
  // section of another name; a folder without texts.
  virtual std::string FolderWithTexts(const std::map<std::string, std::string>& texts) = 0;
  virtual std::string FolderWithoutTexts() = 0;

  // A section that FolderWithTexts() does not have.
  virtual std::string UnknownSection() = 0;
};

// How a subject is made, and what the tests of it are called.
struct SubjectMaker {
  const char* name;
  std::unique_ptr<Subject> (*make)();

  friend std::ostream& operator<<(std::ostream& out, const SubjectMaker& maker) {
    return out << maker.name;
  }
};

template <typename S>
std::unique_ptr<Subject> Make() {
  return std::make_unique<S>();
}

// To be instantiated with a subject in that subject's program.
class PlatformContractTest : public testing::TestWithParam<SubjectMaker> {
 protected:
  std::unique_ptr<Subject> subject_ = GetParam().make();
};

}  // namespace test_support

#endif  // TESTS_CONTRACT_PLATFORM_CONTRACT_H_
