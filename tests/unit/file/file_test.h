// What the tests of the C functions share: a folder behind the link whose volume is writable.
#ifndef TESTS_UNIT_FILE_FILE_TEST_H_
#define TESTS_UNIT_FILE_FILE_TEST_H_

#include <gtest/gtest.h>
#include <syslog.h>

#include <string>
#include <vector>

#include "support/file_calls.h"
#include "support/recording_platform.h"
#include "support/syslog_capture.h"

namespace test_support {

class FileTest : public testing::Test {
 protected:
  FileTest() {
    TakeLog();
    platform_.exec = 1;  // the tool's word for "writable"
    files_.file_system.f_bsize = 4096;
    files_.file_system.f_bavail = 1U << 20U;
  }

  // The calls of the platform that find the folder.
  std::string ToolCall() const {
    return "VLIBCExec(\"/usr/dorv/bin/dorvfstool\", \"--check-volume-writable\", \"" +
           files_.target + "\", nullptr, nullptr)";
  }

  static LogLine Error(const std::string& text) { return {LOG_ERR, "file", text}; }

  FileCalls files_;
  RecordingPlatform platform_;
};

using Log = std::vector<LogLine>;
using Calls = std::vector<std::string>;

}  // namespace test_support

#endif  // TESTS_UNIT_FILE_FILE_TEST_H_
