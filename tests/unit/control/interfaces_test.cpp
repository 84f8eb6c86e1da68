// The shape of the interfaces and of the controls behind them, which programs are compiled against.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/file_hosting_control.h>
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/plugin_control.h>
#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/rss_filter_control.h>
#include <dorvdl/control/rss_item_control.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/thumbnail_control.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/slot.h"

namespace dorvdl::control {
namespace {

using namespace interface;
using test_support::Slot;

// Whether the operations have the places from 0 on, in their order.
template <typename... Operations>
bool AreSlotsInOrder(Operations... operations) {
  int next = 0;
  return ((Slot(operations) == next++) && ...);
}

TEST(InterfacesTest, OperationsHaveTheirSlots) {
  EXPECT_TRUE(AreSlotsInOrder(&TaskInterface::Create, &TaskInterface::Update, &TaskInterface::List,
                              &TaskInterface::Delete, &TaskInterface::Get, &TaskInterface::LoExport,
                              &TaskInterface::LoImport));
  EXPECT_TRUE(AreSlotsInOrder(&RssFeedInterface::Create, &RssFeedInterface::Update,
                              &RssFeedInterface::List, &RssFeedInterface::Delete,
                              &RssFeedInterface::Get, &RssFeedInterface::Count));
  EXPECT_TRUE(AreSlotsInOrder(&RssFilterInterface::Create, &RssFilterInterface::Update,
                              &RssFilterInterface::List, &RssFilterInterface::Delete,
                              &RssFilterInterface::Get, &RssFilterInterface::Count));
  EXPECT_TRUE(AreSlotsInOrder(&RssItemInterface::Create, &RssItemInterface::Update,
                              &RssItemInterface::List, &RssItemInterface::Delete,
                              &RssItemInterface::Get, &RssItemInterface::Count));
  EXPECT_TRUE(AreSlotsInOrder(&ThumbnailInterface::Create, &ThumbnailInterface::Update,
                              &ThumbnailInterface::List, &ThumbnailInterface::Delete,
                              &ThumbnailInterface::Get,
                              &ThumbnailInterface::ListFileIndexByTaskID));
  EXPECT_TRUE(AreSlotsInOrder(&PluginInterface::Create, &PluginInterface::Update,
                              &PluginInterface::Delete, &PluginInterface::Get));
  EXPECT_TRUE(AreSlotsInOrder(&NotificationInterface::Create, &NotificationInterface::Update,
                              &NotificationInterface::List, &NotificationInterface::Delete,
                              &NotificationInterface::Get));
  EXPECT_TRUE(AreSlotsInOrder(&CaptchaInterface::RestartCaptchaTask,
                              &CaptchaInterface::RestartAllCaptchaTask));
  EXPECT_TRUE(AreSlotsInOrder(&FileHostingInterface::RestartHostWaitingTask,
                              &FileHostingInterface::RestartAllHostWaitingTask));
}

TEST(InterfacesTest, WhatAControlAddsIsNotVirtual) {
  EXPECT_EQ(Slot(&RssFeedControl::ListId), -1);
  EXPECT_EQ(Slot(&RssFilterControl::TestLike), -1);
  EXPECT_EQ(Slot(&RssFilterControl::TestRegexp), -1);
  EXPECT_EQ(Slot(&RssItemControl::DeleteByFeedId), -1);
  EXPECT_EQ(Slot(&RssItemControl::UpdateAllNew), -1);
  EXPECT_EQ(Slot(&PluginControl::ListActivePlugin), -1);
  EXPECT_EQ(Slot(&NotificationControl::ListFromView), -1);
  EXPECT_EQ(Slot(&NotificationControl::DeleteEarlierThan), -1);
  EXPECT_EQ(Slot(&NotificationControl::ListAll), -1);
  EXPECT_EQ(Slot(&NotificationControl::Count), -1);
  EXPECT_EQ(Slot(&PluginControl::ListAll), -1);
  EXPECT_EQ(Slot(&PluginControl::Count), -1);
  EXPECT_EQ(Slot(&ThumbnailControl::Count), -1);
  EXPECT_EQ(Slot(&TaskControl::Count), -1);
}

template <typename InterfaceType, typename ControlType>
struct Pair {
  using Interface = InterfaceType;
  using Control = ControlType;
};

template <typename Pair>
class ControlShapeTest : public testing::Test {};

using Pairs = testing::Types<
    Pair<TaskInterface, TaskControl>, Pair<RssFeedInterface, RssFeedControl>,
    Pair<RssFilterInterface, RssFilterControl>, Pair<RssItemInterface, RssItemControl>,
    Pair<ThumbnailInterface, ThumbnailControl>, Pair<PluginInterface, PluginControl>,
    Pair<NotificationInterface, NotificationControl>, Pair<CaptchaInterface, CaptchaControl>,
    Pair<FileHostingInterface, FileHostingControl>>;
TYPED_TEST_SUITE(ControlShapeTest, Pairs);

TYPED_TEST(ControlShapeTest, AnInterfaceHasNoDataAndNoDestructorToCallThroughIt) {
  using Interface = typename TypeParam::Interface;
  EXPECT_TRUE(std::is_abstract_v<Interface>);
  EXPECT_FALSE(std::has_virtual_destructor_v<Interface>);
  EXPECT_FALSE(std::is_destructible_v<Interface>);
  EXPECT_EQ(sizeof(Interface), sizeof(void*));
}

TYPED_TEST(ControlShapeTest, AControlIsItsInterfaceAndAReference) {
  using Control = typename TypeParam::Control;
  EXPECT_TRUE((std::is_base_of_v<typename TypeParam::Interface, Control>));
  EXPECT_FALSE(std::is_abstract_v<Control>);
  EXPECT_EQ(sizeof(Control), 2 * sizeof(void*));
  EXPECT_TRUE((std::is_constructible_v<Control, Controller&>));
  EXPECT_FALSE((std::is_convertible_v<Controller&, Control>));
}

// The operations that a control has, whatever they take.
template <typename Control, typename = void>
inline constexpr bool kHasList = false;
template <typename Control>
inline constexpr bool kHasList<Control, std::void_t<decltype(&Control::List)>> = true;
template <typename Control, typename = void>
inline constexpr bool kHasCount = false;
template <typename Control>
inline constexpr bool kHasCount<Control, std::void_t<decltype(&Control::Count)>> = true;

static_assert(kHasList<TaskControl> && kHasCount<TaskControl>);
static_assert(kHasList<RssFeedControl> && kHasCount<RssFeedControl>);
static_assert(kHasList<RssFilterControl> && kHasCount<RssFilterControl>);
static_assert(kHasList<RssItemControl> && kHasCount<RssItemControl>);
static_assert(kHasList<ThumbnailControl> && kHasCount<ThumbnailControl>);
static_assert(!kHasList<PluginControl> && kHasCount<PluginControl>);
static_assert(kHasList<NotificationControl> && kHasCount<NotificationControl>);

}  // namespace
}  // namespace dorvdl::control
