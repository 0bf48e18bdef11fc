#pragma once

#include "platform/types.h"

#include <cstddef>

// Files that their owner alone may read. May be called from any thread.

/// Writes a file as a whole. A new file is readable and writable by its owner alone from its first
/// byte on; one that replaces another keeps the other's mode and, where the system lets it, its owner.
/// A symbolic link is followed, unless it leads nowhere: that is a failure.
///
/// `BadInvalidArgument` for null; `BadResourceUnavailable` when `path` names something that is no
/// regular file or may not be written, or when the system fails. What was there stays untouched then,
/// and no half-written file is left.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_PrivateFile_Write(const char* path, const void* bytes,
                                                         std::size_t size);
