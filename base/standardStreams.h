#pragma once

namespace tallyvox {

/// Occupies the standard streams that are closed, so that no file or pipe opened later is taken for
/// one of them. Reading from them and writing to them fails as before.
void occupyStandardStreams();

}
