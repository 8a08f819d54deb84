#pragma once

namespace tallyvox {

/// Drives the renderer over five shapes of buffer lists in both modes, every channel's voice a
/// constant of its own, and stops the process at the first sample that is not what its absolute
/// frame number demands.
void checkMapping();

}
