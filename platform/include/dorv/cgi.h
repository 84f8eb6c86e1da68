/// @file
/// Localised texts of a web application. C linkage.
///
/// An application keeps its texts in the files `texts/<language>/strings` below its folder, one for
/// each language, which has a lower-case code such as "en" or "de". They are UTF-8 in INI form:
/// sections, and one text per key and line. Each text that a language lacks is taken from English.
///
/// A user's language is the first of these that the application has texts in:
///   - what the user chose: the line `language=de` of the INI file that is named like the user (by
///     the real name that VLIBUserRealNameGet() gives, where there is such an account), in the
///     folder of the build option DORV_USER_SETTINGS ("/var/lib/tarnwick/users" unless set);
///   - the locale's, from the first of LC_ALL, LC_MESSAGES and LANG that is set and not empty
///     ("de_DE.UTF-8" means "de");
///   - English.
/// A settings file that is missing, unreadable or malformed, a name that is no plain file name (an
/// empty one, a leading dot, a slash or a control character) and a language that is no two or three
/// lower-case letters count as no choice.
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
/// user whom the environment variable USERNAME names; without one nobody has chosen any.
///
/// @param dir      zero-terminated path of the folder; must not be null.
/// @param context  zeroed, or released by DorvCgiFree(); must not be null.
/// @return non-zero on success; 0 when there are no texts, or when those of the language or the
///         English ones cannot be read, are malformed, or are cut short (empty, or without an end
///         to the last line). Then one line in the system log says why, and @p context is
///         unchanged.
DORV_EXPORT int DorvCgiInit(const char* dir, DorvCgiContext* context);

/// Loads one section of texts; its keys join those that are loaded already, whose texts stay.
///
/// @param context  prepared by DorvCgiInit(); a zeroed one has no sections. Must not be null.
/// @param section  zero-terminated name of the section; must not be null.
/// @param flag     0 for callers of the package; other values are the platform's own.
/// @return non-zero on success; 0 when there is no such section.
DORV_EXPORT int DorvCgiLoadText(DorvCgiContext* context, const char* section, int flag);

/// The loaded text of a key.
///
/// @param context  prepared by DorvCgiInit(), or zeroed; must not be null.
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
