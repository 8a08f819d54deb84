#pragma once

namespace tallyvox {

/// Whether the calling thread is inside a section.
bool isForbidden() noexcept;

/// Ends the process because the calling thread, inside a section, called `name`.
[[noreturn]] void breakRule(const char* name) noexcept;

}
