/// @file
/// How the rows of a kind come to belong to users.
#ifndef DORVDL_RECORD_OWNERSHIP_H_
#define DORVDL_RECORD_OWNERSHIP_H_

#include <string>

namespace dorvdl::record {

/// What makes a row a user's: its owner's name in a column of its own, or the row of another table,
/// its parent, that it names and that is the user's. Each kind of record states its own where it
/// states its columns; the names are plain identifiers.
struct Ownership {
  /// Where the owner's name stands, or the parent's key; empty for a kind that belongs to nobody.
  std::string column;
  /// The parent's table and its key column; empty for a kind that names its owners.
  std::string parent_table, parent_key;
  /// The kind's own key column.
  std::string key;
  /// A column that is not for a user to write, though the row is the user's; empty for none.
  std::string withheld;

  /// Whether rows belong to a parent.
  bool HasParent() const { return !parent_table.empty(); }
};

}  // namespace dorvdl::record

#endif  // DORVDL_RECORD_OWNERSHIP_H_
