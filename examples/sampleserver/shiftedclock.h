#pragma once

/// While it lives, the library's clock is so many days ahead or, with a negative number, behind. What
/// is made meanwhile begins its lifetime there. One counts at a time: the last one made.
class ShiftedClock
{
public:
    explicit ShiftedClock(int days);
    ~ShiftedClock();
    ShiftedClock(const ShiftedClock&) = delete;
    ShiftedClock& operator=(const ShiftedClock&) = delete;

private:
    long long m_former;
};
