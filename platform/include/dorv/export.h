/// @file
/// Visibility of the platform's calls. Included from C and C++.
#ifndef DORV_EXPORT_H_
#define DORV_EXPORT_H_

/// Marks a function as part of the platform contract.
#define DORV_EXPORT __attribute__((visibility("default")))

#endif  // DORV_EXPORT_H_
