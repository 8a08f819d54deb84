#include "app/checkRecording.h"

#include "tests/support/death.h"

#include <cmath>
#include <limits>
#include <vector>

namespace tallyvox {
namespace {

using Samples = std::vector<float>;

TEST(CheckRecording, PassesANormalisedVoice) {
    checkRecording(Samples{0, 1, -0.5F});
    checkRecording(Samples{0, -1, 0.5F});
    checkRecording(Samples{1.001F});
    checkRecording(Samples{std::nextafter(0.99F, 1.0F)});
}

TEST(CheckRecording, FindsAnEmptyVoice) { EXPECT_SILENT_STOP(checkRecording({})); }

TEST(CheckRecording, FindsAPeakThatIsNotAboveItsFloor) {
    EXPECT_SILENT_STOP(checkRecording(Samples{0.99F, -0.99F}));
    EXPECT_SILENT_STOP(checkRecording(Samples{0, 0}));
}

TEST(CheckRecording, FindsASampleBeyondFullScale) {
    EXPECT_SILENT_STOP(checkRecording(Samples{1, 1.0011F}));
    EXPECT_SILENT_STOP(checkRecording(Samples{1, -1.0011F}));
}

TEST(CheckRecording, FindsASampleThatIsNotFinite) {
    EXPECT_SILENT_STOP(checkRecording(Samples{1, std::nanf("")}));
    EXPECT_SILENT_STOP(checkRecording(Samples{1, std::numeric_limits<float>::infinity()}));
}

}
}
