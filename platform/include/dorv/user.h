/// @file
/// System users and their groups. C linkage.
#ifndef DORV_USER_H_
#define DORV_USER_H_

#include <dorv/export.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Writes the account's real (canonical) name for @p user into @p buf: the name as the account
/// database spells it. That is @p user where there is an account of this name, otherwise the first
/// account of the database whose name differs in case only (UTF-8, as the package's database lowers
/// it). To find that, the database is gone through with getpwent(), which disturbs a program that
/// goes through it in another thread.
///
/// @param user  zero-terminated user name; must not be null.
/// @param buf   receives the zero-terminated name; owned by the caller, must not be null.
/// @param size  bytes in @p buf, the terminating zero included.
/// @return 0 on success; -1 when there is no such user, when the name does not fit, when the
///         account database cannot be read and when memory is short, and then the contents of
///         @p buf do not count. A name with a "/" is no user's,
///         so that no real name leads to another folder when it becomes a part of a path.
DORV_EXPORT int VLIBUserRealNameGet(const char* user, char* buf, int size);

/// Tells whether the user with the id @p uid is a member of the administrators' group (the build
/// option DORV_ADMIN_GROUP, "sudo" unless set), be it as the primary group or another. The user id
/// 0 counts as a member, whatever the account database says.
///
/// @param uid   the user's id.
/// @param flag  1 for callers of the package; other values are the platform's own.
/// @return 1 for a member, 0 for a non-member, -1 when it could not be found out: there is no such
///         user or no such group, the account database cannot be read, or memory is short.
DORV_EXPORT int VLIBGroupIsAdminGroupMemByUid(uid_t uid, int flag);

#ifdef __cplusplus
}
#endif

#endif  // DORV_USER_H_
