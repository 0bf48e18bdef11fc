#pragma once

/// Asks for the pass phrase of an encrypted key: writes it to `buffer`, which has room for `size`
/// bytes, without a NUL, and returns its length; 0 or less refuses. `rwflag` is 0 for reading.
/// `userData` is what the caller handed over beside the callback. Must not throw.
using UaPkiPasswordCallback = int (*)(char* buffer, int size, int rwflag, void* userData);
