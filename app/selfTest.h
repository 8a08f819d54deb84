#pragma once

namespace tallyvox {

/// The acceptance test of the recordings and the renderer: prints its PASS line, or throws the
/// error of a recording that cannot be loaded. Any other failure stops the process in silence.
void selfTest();

}
