/// @file
/// What can be done with pending notifications.
#ifndef DORVDL_CONTROL_INTERFACE_NOTIFICATION_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_NOTIFICATION_INTERFACE_H_

#include <dorvdl/record/notification.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on pending notifications; `NotificationControl`, which implements them, states what
/// each does and returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT NotificationInterface {
 public:
  virtual bool Create(record::Notification& notification) = 0;
  virtual bool Update(const record::Notification& notification) = 0;
  virtual std::vector<record::Notification> List() = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::Notification Get(int id) = 0;

 protected:
  ~NotificationInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_NOTIFICATION_INTERFACE_H_
