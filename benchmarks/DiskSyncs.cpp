#include "benchmarks/DiskSyncs.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

namespace {

std::atomic<int> count = 0;

int counted(long systemCall, int file) {
    ++count;
    return int(syscall(systemCall, file));
}

} // namespace

// The dynamic linker finds the program's functions before those of the C library.
extern "C" {

[[gnu::visibility("default")]] int fsync(int file) {
    return counted(SYS_fsync, file);
}

[[gnu::visibility("default")]] int fdatasync(int file) {
    return counted(SYS_fdatasync, file);
}

} // extern "C"

int diskSyncs() {
    return count;
}
