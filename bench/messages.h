// The messages that are written.
#ifndef BENCH_MESSAGES_H_
#define BENCH_MESSAGES_H_

#include "columns.h"

namespace bench {

// A new task of kCreator, with BENCH_NEW_TASK_COLUMNS or with all columns.
Task NewTask();
Task WholeTask();

// What the program that downloads a task writes of it every few seconds, changed from moment to
// moment; and the part of it that Peer::UpdateShort() writes.
Task Progress(int id, int moment);
Task ShortProgress(int id, int moment);

}  // namespace bench

#endif  // BENCH_MESSAGES_H_
