/// @file
/// What a user may reach and write in a table.
#ifndef DORVDL_DB_BOUNDS_H_
#define DORVDL_DB_BOUNDS_H_

#include <dorvdl/dbquery/condition.h>
#include <dorvdl/dbquery/insert_query.h>
#include <dorvdl/dbquery/update_query.h>
#include <dorvdl/record/ownership.h>
#include <dorvdl/util/export.h>
#include <google/protobuf/message.h>

#include <string>
#include <utility>

namespace dorvdl::db {

/// The bounds of one user in a table of one kind. Each takes part in the statement that it bounds,
/// which stays one round trip.
class DORVDL_EXPORT Bounds {
 public:
  /// @param user  not empty; its case does not count.
  Bounds(const record::Ownership& ownership, const std::string& user);
  ~Bounds();

  /// That a row is the user's, by its parent; null for a kind that names its owners, whose
  /// accessors are made with the user's name.
  const dorvdbquery::Condition& rows() const { return rows_; }

  /// Lets the column that is withheld from users be written with @p value from here on.
  void Grant(dorvdbquery::Parameter value) { granted_ = std::move(value); }

  /// Lets @p query insert a row of the user's only: refused when it carries a key (that of its
  /// parent excepted), another owner, no parent, or in the withheld column anything but 0 or what
  /// was granted; done only when its parent is the user's. An owner that is absent becomes the
  /// user.
  void Apply(dorvdbquery::InsertQuery& query) const;

  /// Lets @p query, an update of the row @p key, leave it the user's: refused when it carries
  /// another owner, another key or the withheld column (but as granted), done only when the parent
  /// that it carries is the user's. Which rows it reaches is for its condition to say.
  void Apply(dorvdbquery::UpdateQuery& query, int key) const;

  /// Names the user as the owner in the message of a row that Apply() has let in, where its kind
  /// names owners and the message has none.
  void TellOwner(google::protobuf::Message& message) const;

 private:
  bool KeyIsParent() const { return ownership_.key == ownership_.column; }
  bool IsTheUser(const dorvdbquery::Parameter& name) const;
  template <typename Query>
  void DemandOwnParent(Query& query, const dorvdbquery::Parameter& parent) const;

  const record::Ownership& ownership_;
  const std::string user_;
  const dorvdbquery::Condition rows_;
  dorvdbquery::Parameter granted_;
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_BOUNDS_H_
