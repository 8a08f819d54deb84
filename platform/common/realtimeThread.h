#pragma once

namespace tallyvox {

/// Gives the calling thread a real-time priority where the system allows it; where not, the thread
/// runs on as it is.
void requestRealtimePriority() noexcept;

}
