#pragma once

/// The one door through which a program brings up and takes down everything below the value
/// classes. A library and the application that uses it may both call it: the calls are counted. Call
/// it from the start and the end of the main thread; the count is not safe against two threads.
class UaPlatformLayer
{
public:
    UaPlatformLayer() = delete;

    /// Counts a user and, for the first one, runs the start sequence. Returns 0, or -1 when the
    /// sequence failed; the count is not taken back then.
    static int init();

    /// Takes a user away and, for the last one, runs the stop sequence. Does nothing without a user.
    static void cleanup();
};
