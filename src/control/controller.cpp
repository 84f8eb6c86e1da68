#include <dorvdl/control/controller.h>

#include <utility>

namespace dorvdl::control {

Controller::Controller() = default;

Controller::Controller(const std::shared_ptr<db::DBSession>& session) : db_session_(session) {}

Controller Controller::ForUser(const std::string& username,
                               std::shared_ptr<db::DBSession> session) {
  Controller controller;
  controller.db_session_ = std::move(session);
  controller.username_ = username;
  controller.is_users_ = true;
  return controller;
}

Controller::Controller(const Controller& other)
    : db_session_(other.db_session_), username_(other.username_), is_users_(other.is_users_) {}

Controller& Controller::operator=(const Controller& other) {
  if (this != &other) {
    db_session_ = other.db_session_;
    username_ = other.username_;
    is_users_ = other.is_users_;
    failure_ = {};
  }
  return *this;
}

Controller::~Controller() = default;

db::DBSession& Controller::db_session() {
  const bool is_pinned = units_ > 0;
  if (!is_pinned && (db_session_ == nullptr || !db_session_->session().Good())) {
    db_session_ = std::make_shared<db::DBSession>();
  }
  return *db_session_;
}

}  // namespace dorvdl::control
