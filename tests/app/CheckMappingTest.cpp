#include "app/checkMapping.h"

#include "tests/app/FaultyRenderer.h"
#include "tests/support/death.h"

namespace tallyvox {
namespace {

void expectFound(Fault planted) {
    fault = planted;
    EXPECT_SILENT_STOP(checkMapping());
}

TEST(CheckMapping, PassesARendererThatFollowsItsRules) {
    fault = Fault::none;
    checkMapping();
}

TEST(CheckMapping, FindsSwappedVoices) { expectFound(Fault::voicesSwapped); }
TEST(CheckMapping, FindsSilenceThatIsNotWritten) { expectFound(Fault::silenceUnwritten); }
TEST(CheckMapping, FindsAMissingGain) { expectFound(Fault::gainForgotten); }
TEST(CheckMapping, FindsAGainThatIsSlightlyOff) { expectFound(Fault::slightlyLoud); }
TEST(CheckMapping, FindsAGapOfTheWrongLength) { expectFound(Fault::gapTooLong); }
TEST(CheckMapping, FindsAPhaseLostBetweenCalls) { expectFound(Fault::phaseLost); }
TEST(CheckMapping, FindsADisabledChannelThatSpeaks) { expectFound(Fault::disabledSpeaks); }
TEST(CheckMapping, FindsChannelsThatSpeakOutOfTurn) { expectFound(Fault::turnsForgotten); }
TEST(CheckMapping, FindsARoundThatEndsEarly) { expectFound(Fault::roundTooShort); }
TEST(CheckMapping, FindsBuffersThatAreNotWritten) { expectFound(Fault::nothingWritten); }

}
}
