#include "rendering/complaint.h"

#include <gtest/gtest.h>

namespace dorvdl::ctl {
namespace {

using Kind = dorvdbquery::Failure::Kind;

const char* const kTurnedAway =
    "Cannot establish connection to the database.\n"
    "connection to server on socket \"/s\" failed: FATAL:  Peer authentication failed for user "
    "\"Tarnwick\"\n";

std::string KindFor(const Failure& failure) {
  return FailureToJson(failure)["error"]["kind"].asString();
}

TEST(ComplaintTest, TheServersMessageAndCodeFollowTheComplaint) {
  const Failure failure = DatabaseFailure("", {Kind::kServer, "42703", "no such column"});
  EXPECT_STREQ(failure.what(), "the database operation failed: no such column (42703)");
  EXPECT_STREQ(DatabaseFailure("nothing was added", {Kind::kServer, "23514", "no"}).what(),
               "nothing was added: no (23514)");
}

TEST(ComplaintTest, WhatIsNotSaidLeavesNoMark) {
  EXPECT_STREQ(DatabaseFailure("", {Kind::kServer, "22P02", ""}).what(),
               "the database operation failed (22P02)");
  EXPECT_STREQ(DatabaseFailure("", {Kind::kConnection, "", "the connection is lost"}).what(),
               "the database operation failed: the connection is lost");
  EXPECT_STREQ(DatabaseFailure("", {}).what(), "the database operation failed");
}

TEST(ComplaintTest, ARefusalIsNoFailureOfTheDatabase) {
  EXPECT_STREQ(DatabaseFailure("", {Kind::kRefused, "", "another's"}).what(), "refused: another's");
}

TEST(ComplaintTest, APatternThatIsNoneIsToldByItsCode) {
  for (const char* const code : {"2201B", "22025"}) {
    EXPECT_EQ(DatabaseFailure("", {Kind::kServer, code, ""}).what(),
              std::string("the pattern could not be tried: it is no valid one (") + code + ")");
  }
}

TEST(ComplaintTest, EachKindOfFailureHasItsWordAndStatus) {
  const struct {
    const char* word;
    Kind kind;
    ExitStatus status;
  } cases[] = {{"failed", Kind::kNone, kFailed},
               {"refused", Kind::kRefused, kRefused},
               {"unreachable", Kind::kConnection, kUnreachable},
               {"retry", Kind::kRetry, kFailed},
               {"server", Kind::kServer, kFailed},
               {"failed", Kind::kLocal, kFailed}};
  for (const auto& [word, kind, status] : cases) {
    const Failure failure = DatabaseFailure("", {kind, "", ""});
    EXPECT_EQ(KindFor(failure), word);
    EXPECT_EQ(StatusOf(failure), status) << word;
  }
  EXPECT_EQ(KindFor(WrongUsage("x")), "usage");
  EXPECT_EQ(StatusOf(WrongUsage("x")), kWrongUsage);
  EXPECT_EQ(KindFor(Failure("x", Reason::kNotFound)), "not-found");
  EXPECT_EQ(StatusOf(Failure("x", Reason::kNotFound)), kNotFound);
}

TEST(ComplaintTest, JsonHasACodeOnlyWhereThereIsOne) {
  Json::Value error = FailureToJson(DatabaseFailure("", {Kind::kServer, "42P01", "x"}))["error"];
  EXPECT_EQ(error["sqlstate"], "42P01");
  EXPECT_EQ(error["message"], "the database operation failed: x (42P01)");
  error = FailureToJson(Failure("x"))["error"];
  EXPECT_EQ(error.getMemberNames(), (std::vector<std::string>{"kind", "message"}));
}

TEST(ComplaintTest, WhoIsTurnedAwayIsToldToBeRootUnlessHeIs) {
  const std::string message = ConnectionFailure(kTurnedAway, false).what();
  EXPECT_EQ(message.substr(message.size() - 23), "\"Tarnwick\"; run as root");
  EXPECT_EQ(std::string(ConnectionFailure(kTurnedAway, true).what()).find("run as root"),
            std::string::npos);
  EXPECT_EQ(StatusOf(ConnectionFailure(kTurnedAway, false)), kUnreachable);
}

TEST(ComplaintTest, RootCouldNotReachAServerThatIsDownEither) {
  EXPECT_STREQ(ConnectionFailure("connection to server failed: No such file\n", false).what(),
               "connection to server failed: No such file");
}

}  // namespace
}  // namespace dorvdl::ctl
