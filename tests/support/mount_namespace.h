// A mount namespace of the test's own, for tests of fixed absolute paths: what is mounted in it is
// seen by this process and its children only and is gone with them. Needs root.
//
// Every function throws std::system_error when it cannot do what it says.
#ifndef TESTS_SUPPORT_MOUNT_NAMESPACE_H_
#define TESTS_SUPPORT_MOUNT_NAMESPACE_H_

#include <cstddef>
#include <string>

namespace test_support {

// Moves the process, which must have no other threads, into a namespace of its own. All else here
// changes mounts and is for after that.
void EnterMountNamespace();

// Makes it possible to add entries to a folder of the machine such as /var: puts a small file
// system over it that shows the folder's entries. Additions stay in the namespace; the entries
// themselves are the machine's own.
void MakeExtendable(const std::string& folder);

// Mounts an empty file system in memory at an existing folder; "bytes" is a multiple of the page.
void MountTmpfs(const std::string& folder, std::size_t bytes);

// Makes a file system that was mounted here read-only.
void MakeReadOnly(const std::string& folder);

// Shows an existing file of the machine such as /etc/passwd with another content.
void ReplaceFile(const std::string& file, const std::string& content);

// The namespace of a process that uses the platform's folders: enters one in which /usr, /var/lib
// and /var/spool can be extended and the users are root, alice (2001), bob (2002) and the package's
// own (2003), and chooses the language "C".
void EnterPlatformNamespace();

}  // namespace test_support

#endif  // TESTS_SUPPORT_MOUNT_NAMESPACE_H_
