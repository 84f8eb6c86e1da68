#include <dorvdl/control/controller.h>

namespace dorvdl::control {

Controller::Controller() = default;

Controller::Controller(const std::shared_ptr<db::DBSession>& session) : db_session_(session) {}

Controller::~Controller() = default;

db::DBSession& Controller::db_session() {
  if (db_session_ == nullptr || !db_session_->session().Good()) {
    db_session_ = std::make_shared<db::DBSession>();
  }
  return *db_session_;
}

}  // namespace dorvdl::control
