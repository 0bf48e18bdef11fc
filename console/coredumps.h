#pragma once

/// Keeps a crash of a release build from writing the process memory, which may hold private keys,
/// to disk. Debug builds keep their core dumps.
void disableCoreDumps();
