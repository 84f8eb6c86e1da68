/// @file
/// What can be done with preview pictures.
#ifndef DORVDL_CONTROL_INTERFACE_THUMBNAIL_INTERFACE_H_
#define DORVDL_CONTROL_INTERFACE_THUMBNAIL_INTERFACE_H_

#include <dorvdl/control/option/thumbnail.h>
#include <dorvdl/record/thumbnail.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::control::interface {

/// Operations on preview pictures; `ThumbnailControl`, which implements them, states what each does
/// and returns. Never owned through this type: it has no virtual destructor.
class DORVDL_EXPORT ThumbnailInterface {
 public:
  virtual bool Create(record::Thumbnail& thumbnail) = 0;
  virtual bool Update(const record::Thumbnail& thumbnail) = 0;
  virtual std::vector<record::Thumbnail> List(const option::thumbnail::ListOption& option) = 0;
  virtual bool Delete(const std::vector<int>& ids) = 0;
  virtual record::Thumbnail Get(int id) = 0;
  virtual std::vector<int> ListFileIndexByTaskID(int task_id) = 0;

 protected:
  ~ThumbnailInterface() = default;
};

}  // namespace dorvdl::control::interface

#endif  // DORVDL_CONTROL_INTERFACE_THUMBNAIL_INTERFACE_H_
