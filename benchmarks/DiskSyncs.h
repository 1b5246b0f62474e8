#pragma once

/// Returns how often this process has asked the disk to store a file's content. Counts the calls of
/// `fsync()` and `fdatasync()` by every library of the process.
int diskSyncs();
