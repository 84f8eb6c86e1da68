// What holds for the options of every kind.
#include <dorvdl/proto/list_request/common.pb.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/boost.h>

#include <ostream>
#include <type_traits>

#include "unit/control_option/criteria.h"

namespace boost {

// How a failing property shows a criterion.
template <typename T>
void showValue(const optional<T>& value, std::ostream& out) {
  if (value) {
    rc::show(*value, out);
  } else {
    out << "unset";
  }
}

}  // namespace boost

namespace dorvdl::control::option {
namespace {

template <typename OptionType, typename RequestType>
struct Kind {
  using Option = OptionType;
  using Request = RequestType;
};

using Common = Kind<common::ListOption, rpc::proto::common::ListRequest>;
using Task = Kind<task::ListOption, rpc::proto::task::ListRequest>;
using RssFeed = Kind<rss_feed::ListOption, rpc::proto::rss_feed::ListRequest>;
using RssFilter = Kind<rss_filter::ListOption, rpc::proto::rss_filter::ListRequest>;
using RssItem = Kind<rss_item::ListOption, rpc::proto::rss_item::ListRequest>;
using Thumbnail = Kind<thumbnail::ListOption, rpc::proto::thumbnail::ListRequest>;

template <typename Option>
Option ArbitraryOption() {
  Option option;
  std::apply(
      [](auto&... criterion) {
        ((criterion = *rc::gen::arbitrary<std::decay_t<decltype(criterion)>>()), ...);
      },
      Criteria(option));
  return option;
}

// What is to come back after a trip through a request.
template <typename Option>
void ForgetWhatDoesNotTravel(Option&) {}
void ForgetWhatDoesNotTravel(task::ListOption& option) {
  if (option.status && option.status->empty()) {
    option.status = boost::none;
  }
}

template <typename T>
class EveryKindTest : public testing::Test {};
using EveryKind = testing::Types<Common, Task, RssFeed, RssFilter, RssItem, Thumbnail>;
TYPED_TEST_SUITE(EveryKindTest, EveryKind);

TYPED_TEST(EveryKindTest, IsAPlainValue) {
  using Option = typename TypeParam::Option;
  EXPECT_TRUE(std::is_copy_constructible_v<Option>);
  EXPECT_TRUE(std::is_copy_assignable_v<Option>);
  EXPECT_FALSE(std::is_polymorphic_v<Option>);
}

TYPED_TEST(EveryKindTest, ANewOptionIsUnset) {
  typename TypeParam::Option option;
  EXPECT_EQ(CountOfSetCriteria(option), 0);
}

TYPED_TEST(EveryKindTest, ClearUnsetsEveryCriterion) {
  typename TypeParam::Option option;
  SetToDefaultValues(option);
  option.Clear();
  EXPECT_EQ(CountOfSetCriteria(option), 0);
}

TYPED_TEST(EveryKindTest, AnEmptyRequestUnsetsEveryCriterion) {
  typename TypeParam::Option option;
  SetToDefaultValues(option);
  option.fromProto(typename TypeParam::Request());
  EXPECT_EQ(CountOfSetCriteria(option), 0);
}

TYPED_TEST(EveryKindTest, DefaultValuesTravelAsPresentFields) {
  typename TypeParam::Option option;
  SetToDefaultValues(option);
  typename TypeParam::Option expected = option;
  ForgetWhatDoesNotTravel(expected);

  typename TypeParam::Request request;
  option.toProto(request);
  typename TypeParam::Option returned;
  returned.fromProto(request);
  EXPECT_TRUE(Criteria(returned) == Criteria(expected));
}

TYPED_TEST(EveryKindTest, AnyOptionComesBackAsItWas) {
  EXPECT_TRUE(rc::check([] {
    auto option = ArbitraryOption<typename TypeParam::Option>();
    auto request = typename TypeParam::Request();
    ArbitraryOption<typename TypeParam::Option>().toProto(request);  // to be overwritten
    auto returned = ArbitraryOption<typename TypeParam::Option>();   // likewise

    option.toProto(request);
    returned.fromProto(request);

    ForgetWhatDoesNotTravel(option);
    RC_ASSERT(Criteria(returned) == Criteria(option));
  }));
}

template <typename T>
class KindWithCommonPartTest : public testing::Test {};
using KindWithCommonPart = testing::Types<Task, RssFeed, RssFilter, RssItem, Thumbnail>;
TYPED_TEST_SUITE(KindWithCommonPartTest, KindWithCommonPart);

TYPED_TEST(KindWithCommonPartTest, AnUnsetOptionMakesARequestOfAnEmptyCommonPart) {
  typename TypeParam::Option other;
  SetToDefaultValues(other);
  typename TypeParam::Request request;
  other.toProto(request);

  typename TypeParam::Option().toProto(request);
  EXPECT_EQ(request.ShortDebugString(), "common { }");
}

TYPED_TEST(KindWithCommonPartTest, ARequestWithoutCommonPartLeavesPagingUnset) {
  typename TypeParam::Option option;
  SetToDefaultValues(option);
  typename TypeParam::Request request;
  option.toProto(request);
  request.clear_common();

  option.fromProto(request);
  EXPECT_EQ(CountOfSetCriteria(option.common), 0);
  EXPECT_GT(CountOfSetCriteria(option), 0);
}

}  // namespace
}  // namespace dorvdl::control::option
