// Which files a process may touch.
#pragma once

namespace veltrace::cli {

/// From now on this thread, and those that it starts, may read files and directories and do nothing
/// else to them: no writing, truncating, creating, removing or executing. Where the kernel can, TCP
/// connections, abstract sockets and signals to other processes are refused as well. Descriptors
/// that are open stay as they are. Needs `renouncePrivileges`. Gives the version of the kernel's
/// Landlock interface that is used; 0 when it has none or refuses.
int confineFileSystem();

}  // namespace veltrace::cli
