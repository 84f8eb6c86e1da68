/// @file
/// Visibility of the library's symbols: everything is hidden but what carries DORVDL_EXPORT.
/// Included from C and C++.
#ifndef DORVDL_UTIL_EXPORT_H_
#define DORVDL_UTIL_EXPORT_H_

/// Marks a class or function as part of the library's public interface.
#define DORVDL_EXPORT __attribute__((visibility("default")))

#endif  // DORVDL_UTIL_EXPORT_H_
