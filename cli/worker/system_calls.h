// What a process may ask of the kernel.
#pragma once

namespace veltrace::cli {

/// From now on this thread may only do what reading files takes: open files for reading, read and
/// write what is open, get memory that holds no code, tell the time, and end itself, by a signal
/// too. Every other system call fails with EPERM: no writing to further files, no programs,
/// processes, threads or sockets, no signals to others, no libraries loaded. Needs
/// `renouncePrivileges`. Gives whether the kernel took it.
bool confineSystemCalls();

}  // namespace veltrace::cli
