/// @file
/// Shared folders. C++.
#ifndef DORV_SHARE_PATH_H_
#define DORV_SHARE_PATH_H_

#include <dorv/export.h>

#include <string>

namespace dorvdl::common {

/// Turns the path of a folder in a shared folder into its real path, for a user who may use it.
///
/// A fixed folder (the build option DORV_SHARE_ROOT, "/var/services/share" unless set) has one
/// link per shared folder, named like the share. Symbolic links on the way are followed as long as
/// they end up in the same share.
///
/// The user's account and groups must pass the mode bits: search permission on every folder of the
/// real path from "/" on, read and search permission on the folder itself. Root passes anyway.
/// Access control lists are not read: a list that grants or denies more than the mode bits show has
/// no influence. The answer holds for the moment of the call; it grants nothing.
///
/// @param path  "share/sub/folder", with or without a leading slash; doubled and trailing slashes
///              do not count.
/// @param user  name of the account; VLIBUserRealNameGet() tells which one is meant when none is
///              spelt so.
/// @return the absolute path without links, or the empty string: for an empty path, one with a "."
///         or ".." component, an embedded NUL in either text, an unknown share or user, a path that
///         does not exist, is no folder, leaves its share or that the calling process itself cannot
///         reach, for a user without access, and when the account database cannot be read. Nothing
///         is logged. May throw std::bad_alloc.
DORV_EXPORT std::string GetRealPathFromSharePath(const std::string& path, const std::string& user);

}  // namespace dorvdl::common

#endif  // DORV_SHARE_PATH_H_
