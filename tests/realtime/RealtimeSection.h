#pragma once

namespace tallyvox {

/// While one lives, its thread must neither allocate, free, lock, wait nor enter the system: the
/// first such call ends the process by SIGABRT, after one line on standard error that names it.
/// Sections may be nested. A program that links this proof replaces the C library's allocation and
/// locks by ones that look.
class RealtimeSection {
public:
    RealtimeSection() noexcept;
    RealtimeSection(const RealtimeSection&) = delete;
    RealtimeSection& operator=(const RealtimeSection&) = delete;
    ~RealtimeSection();

    /// Whether every system call is seen, by whatever way it is made; elsewhere only the calls of
    /// the C library that sleep, wait, or work on files.
    static bool seesSystemCalls() noexcept;

private:
    bool outermost_;
};

}
