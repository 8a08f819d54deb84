#pragma once

#include <string_view>

namespace tallyvox {

/// Writes a line of results to standard output, at once. A failure shows in `checkOutput`.
void print(std::string_view line);

/// Writes a line of diagnosis to standard error, as it is.
void diagnose(std::string_view line);

/// The same after the program's name.
void complain(std::string_view line);

/// Throws an `Error` of domain "Output", with the system's own number as its code, where a line of
/// results could not be written.
void checkOutput();

/// Whether somebody watches a terminal that can redraw a line: both outputs are terminals.
bool watched();

/// A line on standard error that is redrawn in place; nothing at all where nobody watches.
class LiveLine {
public:
    LiveLine() = default;
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;
    ~LiveLine() { clear(); }

    /// Shows `text` instead of what was shown before.
    void show(std::string_view text);

    /// Removes the line, so that other lines can be printed.
    void clear();

private:
    bool shown_ = false;
};

}
