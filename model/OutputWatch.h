#pragma once

namespace tallyvox {

class Model;

/// One step of the once-a-second watch over the output that plays: stops, and says so in the
/// status, when the output is gone or its channel count or rate is no longer the listed one.
/// Leaves `outputs` alone; does nothing while nothing is running. Main thread only.
void watchOutput(Model& model);

}
