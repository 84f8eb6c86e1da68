// The deliverer of notifications: sends those that are pending to the owners of their tasks, and
// deletes what it has sent. What cannot be sent stays for the next run, and so does what comes in
// meanwhile: it deletes by the keys that it has read.
//
// usage: notification
#include <dorvdl/control/notification_control.h>
#include <dorvdl/control/task_control.h>

#include <exception>
#include <iostream>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

bool Send(const record::Notification& notification, const record::Task& task) {
  const int time = static_cast<int>(notification.proto().create_time());
  switch (notification.getType()) {
    case 0:
      return task.SendNotificationComplete(time);
    case 1:
      return task.SendNotificationFailed(time);
    case 2:
      return task.SendNotificationCaptcha(time);
    default:
      return true;  // of no kind that anybody could be told: it goes away
  }
}

}  // namespace

int main() try {
  control::Controller controller;  // it delivers to all users
  control::NotificationControl notifications(controller);
  const std::vector<record::Notification> pending = notifications.ListFromView();
  if (controller.failure()) {
    return Tell("the notifications cannot be listed", controller);
  }

  std::vector<int> done;
  for (const record::Notification& notification : pending) {
    const record::Task task = control::TaskControl(controller).Get(notification.proto().task_id());
    if (controller.failure()) {
      Tell("a task cannot be read", controller);
      break;  // what has been sent is to be deleted all the same
    }
    if (!task.IsValid() || Send(notification, task)) {  // nobody is told of a task that is gone
      done.push_back(notification.primary_key());
    }
  }
  if (!done.empty() && !notifications.Delete(done)) {
    return Tell("what has been sent will be sent again", controller);
  }
  std::cout << done.size() << " of " << pending.size() << " are done\n";
  return done.size() == pending.size() ? 0 : 1;
} catch (const std::exception& error) {  // no connection, or a row that cannot be read
  std::cerr << "notification: " << error.what() << '\n';
  return 1;
}
