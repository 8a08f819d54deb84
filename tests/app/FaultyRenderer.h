#pragma once

namespace tallyvox {

/// What is wrong with every renderer of this test program.
enum class Fault {
    none,
    voicesSwapped,    ///< two channels speak each other's number
    silenceUnwritten, ///< a sample of silence leaves what was there
    gainForgotten,
    gapTooLong,
    phaseLost, ///< every call begins at the cycle's first frame
    disabledSpeaks,
    turnsForgotten, ///< all speak together where they should take turns
    roundTooShort,  ///< the position wraps a cycle before the round ends
    nothingWritten,
    slightlyLoud, ///< by less than anyone can hear, by more than is allowed
};

extern Fault fault;

}
