#pragma once

/// While it lives, the process has no more rights on files than any user: root, whom no permission
/// bits hold back, acts as the user "nobody". The files of a test must lie in a directory that others
/// may enter. For others than root it does nothing.
class Unprivileged
{
public:
    Unprivileged();
    ~Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    bool m_isDropped = false;
};
