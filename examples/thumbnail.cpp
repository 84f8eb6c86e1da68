// A worker's pictures: replaces those of one file of a task, ten seconds of the video apart, and
// tells which files of the task have some.
//
// usage: thumbnail TASK_ID FILE_INDEX PICTURE...
#include <dorvdl/control/thumbnail_control.h>
#include <dorvdl/control/unit.h>

#include <ctime>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

// Removes the file's pictures. False when that failed.
bool Clear(control::Controller& controller, int task_id, int file_index) {
  control::ThumbnailControl thumbnails(controller);
  control::option::thumbnail::ListOption of_file;
  of_file.task_id = task_id;
  of_file.file_index = file_index;
  std::vector<int> ids;
  for (const record::Thumbnail& thumbnail : thumbnails.List(of_file)) {
    ids.push_back(thumbnail.primary_key());
  }
  return ids.empty() ? !controller.failure() : thumbnails.Delete(ids);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) {
    return TellUsage("thumbnail TASK_ID FILE_INDEX PICTURE...");
  }
  const int task_id = std::stoi(argv[1]);
  control::Controller controller;  // a worker works for all users
  control::ThumbnailControl thumbnails(controller);

  control::Unit unit(controller);
  record::Thumbnail thumbnail;
  thumbnail.mutable_proto().set_task_id(task_id);
  thumbnail.mutable_proto().set_file_index(std::stoi(argv[2]));
  thumbnail.mutable_proto().set_create_time(std::time(nullptr));
  bool good = Clear(controller, task_id, thumbnail.proto().file_index());
  for (int i = 3; good && i < argc; ++i) {
    record::Thumbnail picture = thumbnail;
    picture.mutable_proto().set_thumbnail_index(i - 3);
    picture.mutable_proto().set_thumbnail_second((i - 3) * 10);
    picture.mutable_proto().set_thumbnail_filename(argv[i]);
    good = thumbnails.Create(picture);
  }
  if (unit.Commit() != control::Unit::Outcome::kCommitted) {
    return Tell("the pictures are not stored", controller);
  }

  const std::vector<int> files = thumbnails.ListFileIndexByTaskID(task_id);
  if (controller.failure()) {
    return Tell("the files cannot be listed", controller);
  }
  for (const int file : files) {
    std::cout << "file " << file << '\n';
  }
  return 0;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "thumbnail: " << error.what() << '\n';
  return 1;
}
