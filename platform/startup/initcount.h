#pragma once

/// Counts the users of a facility that is brought up once and taken down once. Not safe against two
/// threads: it is driven from the start and the end of the main thread.
class InitCount
{
public:
    /// Brings the facility up and returns 0 or a negative value.
    using Start = int (*)();
    /// Takes the facility down again.
    using Stop = void (*)();

    constexpr InitCount(Start start, Stop stop)
        : m_start(start)
        , m_stop(stop)
    {
    }

    /// Adds a user. The first one runs the start and gets its result; every later one gets 0. A
    /// start that fails leaves the user counted.
    int init();

    /// Removes a user. The last one runs the stop; without a user nothing happens.
    void cleanup();

    /// The number of users.
    [[nodiscard]] unsigned count() const { return m_count; }

private:
    Start m_start;
    Stop m_stop;
    unsigned m_count = 0;
};
