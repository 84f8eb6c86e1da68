// The files that are stored with tasks, as large objects.
#ifndef BENCH_FILES_H_
#define BENCH_FILES_H_

#include <string>

#include "connection.h"

namespace bench {

// Makes a file of this size, which cannot be compressed, and returns its path.
std::string MakeFile(const std::string& folder, int mebibytes);

bool AreSameFiles(const std::string& path, const std::string& other);

// Removes the large objects that no task has, and their room in the table.
void DropUnusedFiles(Connection& database);

}  // namespace bench

#endif  // BENCH_FILES_H_
