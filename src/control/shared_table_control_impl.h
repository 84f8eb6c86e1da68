// The bodies of SharedTableControl. A control's source includes this and instantiates them:
//   template class SharedTableControl<interface::ThumbnailInterface, db::Thumbnail,
//                                     record::Thumbnail>;
#ifndef SRC_CONTROL_SHARED_TABLE_CONTROL_IMPL_H_
#define SRC_CONTROL_SHARED_TABLE_CONTROL_IMPL_H_

#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/db/operator.h>

#include "control/operation.h"

namespace dorvdl::control {

template <typename Interface, typename Table, typename Record>
bool SharedTableControl<Interface, Table, Record>::Create(Record& record) {
  return OnTable<Table>(controller_, [&](auto& table) { return table.Create(record); });
}

template <typename Interface, typename Table, typename Record>
bool SharedTableControl<Interface, Table, Record>::Update(const Record& record) {
  return OnTable<Table>(controller_, [&](auto& table) {
    return table.Update(record, dorvdbquery::Condition::Null());
  });
}

template <typename Interface, typename Table, typename Record>
bool SharedTableControl<Interface, Table, Record>::Delete(const std::vector<int>& ids) {
  return ids.empty() ? NothingToDo(controller_) : OnTable<Table>(controller_, [&](auto& table) {
    return table.Delete(ids, dorvdbquery::Condition::Null());
  });
}

template <typename Interface, typename Table, typename Record>
Record SharedTableControl<Interface, Table, Record>::Get(int id) {
  return OnTable<Table>(controller_,
                        [&](auto& table) { return table.Get(id, dorvdbquery::Condition::Null()); });
}

}  // namespace dorvdl::control

#endif  // SRC_CONTROL_SHARED_TABLE_CONTROL_IMPL_H_
