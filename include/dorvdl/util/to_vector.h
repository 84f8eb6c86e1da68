/// @file
/// Copying a message's repeated field.
#ifndef DORVDL_UTIL_TO_VECTOR_H_
#define DORVDL_UTIL_TO_VECTOR_H_

#include <google/protobuf/repeated_field.h>

#include <vector>

namespace dorvdl::util {

/// The elements of a repeated scalar field, in order, with one allocation.
template <typename T>
std::vector<T> ToVector(const google::protobuf::RepeatedField<T>& field) {
  return std::vector<T>(field.begin(), field.end());
}

/// The elements of a repeated string or message field, in order, with one allocation for the
/// vector itself.
template <typename T>
std::vector<T> ToVector(const google::protobuf::RepeatedPtrField<T>& field) {
  return std::vector<T>(field.begin(), field.end());
}

}  // namespace dorvdl::util

#endif  // DORVDL_UTIL_TO_VECTOR_H_
