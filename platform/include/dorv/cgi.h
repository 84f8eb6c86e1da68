/// @file
/// Localised texts of a web application. C linkage.
#ifndef DORV_CGI_H_
#define DORV_CGI_H_

#include <dorv/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A loader of localised texts. The caller provides the storage and must zero it before first use;
/// after that DorvCgiFree() is right at any time, whether or not the other calls were made or
/// succeeded. Not safe for use by several threads at once.
typedef struct DorvCgiContext {
  void* texts; /**< The loader's own; null while it holds nothing. */
} DorvCgiContext;

/// Prepares the loader for the web application in the folder @p dir. The language is that of the
/// user whom the environment variable USERNAME names.
///
/// @param dir      zero-terminated path of the folder; must not be null.
/// @param context  zeroed, or released by DorvCgiFree(); must not be null.
/// @return non-zero on success, 0 on failure.
DORV_EXPORT int DorvCgiInit(const char* dir, DorvCgiContext* context);

/// Loads one section of texts; its keys join those that are loaded already.
///
/// @param context  prepared by DorvCgiInit(); must not be null.
/// @param section  zero-terminated name of the section; must not be null.
/// @param flag     0 for callers of the package; other values are the platform's own.
/// @return non-zero on success, 0 when there is no such section or it could not be read.
DORV_EXPORT int DorvCgiLoadText(DorvCgiContext* context, const char* section, int flag);

/// The loaded text of a key.
///
/// @param context  prepared by DorvCgiInit(); must not be null.
/// @param key      zero-terminated; must not be null.
/// @param def      returned as it is when no loaded section has the key; may be null.
/// @return a zero-terminated text that lives until DorvCgiFree(), or @p def.
DORV_EXPORT const char* DorvCgiGetText(DorvCgiContext* context, const char* key, const char* def);

/// Releases what the loader holds and zeroes @p context, which must not be null; the texts that it
/// gave out are gone. Harmless for a zeroed context.
DORV_EXPORT void DorvCgiFree(DorvCgiContext* context);

#ifdef __cplusplus
}
#endif

#endif  // DORV_CGI_H_
