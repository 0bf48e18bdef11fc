#pragma once

struct OpcUa_ProxyStubConfiguration;

/// The one door through which a program brings up and takes down everything below the value
/// classes: timers, crypto provider, system random source, and the stack with its trace, network
/// module and tables. A library and the application that uses it may both call it: the calls are
/// counted. Call it from the start and the end of the main thread; the count is not safe against two
/// threads.
class UaPlatformLayer
{
public:
    UaPlatformLayer() = delete;

    /// Counts a user and, for the first one, runs the start sequence. Returns 0, or -1 when the
    /// sequence failed; the count is not taken back then.
    static int init();

    /// Takes a user away and, for the last one, runs the stop sequence. Does nothing without a user.
    static void cleanup();

    /// The limits and tuning values that the stack was given, or, before any were set, a record that
    /// leaves every choice to it.
    [[nodiscard]] static OpcUa_ProxyStubConfiguration stackConfiguration();

    /// Hands a changed record to the stack, before the first init() or between it and the last
    /// cleanup(), and keeps it for later starts. Returns 0, or -1 when the stack refuses it because a
    /// proxy or stub exists; the old record stays then.
    static int setStackConfiguration(const OpcUa_ProxyStubConfiguration& configuration);
};
