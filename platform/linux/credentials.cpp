#include <dorv/credentials.h>

// On a plain Linux machine there is nothing to prepare: the database server recognises the caller
// by the effective user id of the socket's other end, and its map lets root in under the package's
// role. No ids, groups or environment may change here, for the caller restores none but the
// effective ids.
int InitCredentialsByName(const char* user, int /*flag*/) { return user != nullptr ? 0 : -1; }
