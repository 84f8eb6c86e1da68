#include <dorv/hash.h>

#include <string>

#include "guarded.h"
#include "hash_map.h"

VLIBSZHASH* VLIBCSzHashAlloc(int /*size*/) {
  return dorv::Guarded(static_cast<VLIBSZHASH*>(nullptr), [] { return new VLIBSZHASH; });
}

int VLIBCSzHashSetValue(VLIBSZHASH** hash, const char* key, const char* value) {
  if (hash == nullptr || *hash == nullptr || key == nullptr || value == nullptr) {
    return -1;
  }
  return dorv::Guarded(-1, [=] {
    // Both texts are there before the map changes, or a value that memory is short for would leave
    // its key behind.
    (*hash)->pairs.insert_or_assign(std::string(key), std::string(value));
    return 0;
  });
}

void VLIBCSzHashFree(VLIBSZHASH* hash) { delete hash; }
