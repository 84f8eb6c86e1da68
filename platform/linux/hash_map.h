// What a VLIBSZHASH is, for the calls of this library that read one.
#ifndef DORV_LINUX_HASH_MAP_H_
#define DORV_LINUX_HASH_MAP_H_

#include <dorv/hash.h>

#include <map>
#include <string>

struct VLIBSZHASH {
  std::map<std::string, std::string> pairs;
};

#endif  // DORV_LINUX_HASH_MAP_H_
