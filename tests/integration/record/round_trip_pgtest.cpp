// Records with random content survive the way through the database, read in both ways.
#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/session.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <soci/soci.h>

#include <limits>
#include <string>

#include "support/database.h"

namespace dorvdl::record {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

// Texts that the database takes: UTF-8 without NUL, among them the empty one and what SQL, JSON and
// LIKE treat specially.
rc::Gen<std::string> Text() {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
                          "", "a", "Z", " ", "'", "\"", "\\", "%", "_", ";", "\n", "\x01", "{", "ü",
                          "日本", "😀", ":x", "$1", "NULL")),
                      [](const std::vector<std::string>& pieces) {
                        std::string text;
                        for (const std::string& piece : pieces) {
                          text += piece;
                        }
                        return text;
                      });
}

template <typename T>
rc::Gen<T> Number() {
  using Limits = std::numeric_limits<T>;
  return rc::gen::oneOf(rc::gen::element<T>(0, 1, -1, Limits::min(), Limits::max()),
                        rc::gen::arbitrary<T>());
}

// Sets a random choice of the message's fields other than its key.
void Randomize(Message& message, const std::string& key) {
  for (int i = 0; i < message.GetDescriptor()->field_count(); ++i) {
    const FieldDescriptor* const field = message.GetDescriptor()->field(i);
    if (field->name() == key || !*rc::gen::arbitrary<bool>()) {
      continue;
    }
    switch (field->cpp_type()) {
      case FieldDescriptor::CPPTYPE_INT32:
        message.GetReflection()->SetInt32(&message, field, *Number<std::int32_t>());
        break;
      case FieldDescriptor::CPPTYPE_INT64:
        message.GetReflection()->SetInt64(&message, field, *Number<std::int64_t>());
        break;
      default:
        message.GetReflection()->SetString(&message, field, *Text());
    }
  }
}

class RoundTripTest : public test_support::DatabaseTest {};

RC_GTEST_FIXTURE_PROP(RoundTripTest, ATaskIsReadAsItWasWritten, ()) {
  db::DBSession session;
  Task written;
  Randomize(written.mutable_proto(), "task_id");
  db::DownloadQueue queue(session, "");
  RC_ASSERT(queue.Create(written, ""));

  const Task read = queue.Get(written.primary_key());
  RC_ASSERT(read.GetInsertFields() == Task::GetSelectFields());
  Task through_soci;
  *session.session().handle() << "SELECT * FROM download_queue WHERE task_id = :id",
      soci::use(written.primary_key()), soci::into(through_soci);
  RC_ASSERT(through_soci.proto().SerializeAsString() == read.proto().SerializeAsString());

  // What was written is read again; the free-form data comes wrapped in a JSON text.
  Task expected;
  expected.mutable_proto().CopyFrom(read.proto());
  expected.mutable_proto().MergeFrom(written.proto());
  Json::Value wrapped;
  if (written.proto().has_extra_data()) {
    wrapped = written.proto().extra_data();
  } else {
    wrapped = "null";
  }
  expected.set_extra_data(wrapped);
  RC_ASSERT(expected.proto().SerializeAsString() == read.proto().SerializeAsString());
}

RC_GTEST_FIXTURE_PROP(RoundTripTest, AnUpdateChangesThePresentFieldsOnly, ()) {
  db::DBSession session;
  db::DownloadQueue queue(session, "");
  Task original;
  Randomize(original.mutable_proto(), "task_id");
  RC_ASSERT(queue.Create(original, ""));
  const Task before = queue.Get(original.primary_key());

  Task change;
  Randomize(change.mutable_proto(), "task_id");
  change.mutable_proto().clear_extra_data();
  change.set_primary_key(original.primary_key());
  RC_PRE(change.GetInsertFields().size() > 1);
  RC_ASSERT(queue.Update(change));

  Task expected = before;
  expected.mutable_proto().MergeFrom(change.proto());
  RC_ASSERT(queue.Get(original.primary_key()).proto().SerializeAsString() ==
            expected.proto().SerializeAsString());
}

}  // namespace
}  // namespace dorvdl::record
