#include "tests/ui/Screen.h"

namespace tallyvox {
namespace {

/// Which controls the operator can use.
class Enabling : public Screen {
protected:
    bool enabled(Spoken::Role role, const char* name) {
        return find(role, QString::fromUtf8(name)).isEnabled();
    }
    bool outputRow() {
        const bool picker = enabled(Spoken::Picker, "Output device");
        EXPECT_EQ(enabled(Spoken::Button, "Refresh"), picker);
        return picker;
    }
    bool steppers() {
        const bool first = find(Spoken::Stepper, said(Spoken::Stepper).at(0)).isEnabled();
        EXPECT_EQ(find(Spoken::Stepper, said(Spoken::Stepper).at(1)).isEnabled(), first);
        return first;
    }
    bool allChannels() { return enabled(Spoken::CheckBox, "All Channels"); }
    bool sequential() { return enabled(Spoken::CheckBox, "Announce Numerically"); }
    bool sliders() {
        const bool level = enabled(Spoken::Slider, "Peak level");
        EXPECT_EQ(enabled(Spoken::Slider, "Repeat gap"), level);
        return level;
    }
    bool start() { return enabled(Spoken::Button, "Start announcing"); }
    bool stop() { return enabled(Spoken::Button, "Stop"); }
    bool cells() {
        std::vector<bool> states;
        for (const QString& name : said(Spoken::Button)) {
            if (name.startsWith(QStringLiteral("Channel ")))
                states.push_back(find(Spoken::Button, name).isEnabled());
        }
        EXPECT_FALSE(states.empty());
        EXPECT_EQ(std::count(states.begin(), states.end(), states.front()),
                  static_cast<std::ptrdiff_t>(states.size()));
        return states.front();
    }
};

TEST_F(Enabling, WithAnOutputAllButStopIsOn) {
    addOutput(7, "Card", 16);
    open();
    EXPECT_TRUE(outputRow());
    EXPECT_TRUE(steppers());
    EXPECT_TRUE(allChannels());
    EXPECT_TRUE(sequential());
    EXPECT_TRUE(sliders());
    EXPECT_TRUE(cells());
    EXPECT_TRUE(start());
    EXPECT_FALSE(stop());
}

TEST_F(Enabling, WithoutAnOutputOnlyTheOutputTheLevelAndTheGapAreOn) {
    open();
    for (const bool silent : {false, true}) {
        if (silent) {
            model().setOutputs({{7, "Silent", 0, 48000}});
            model().setSelected(7);
        }
        EXPECT_TRUE(outputRow());
        EXPECT_FALSE(steppers());
        EXPECT_FALSE(allChannels());
        EXPECT_FALSE(sequential());
        EXPECT_TRUE(sliders());
        EXPECT_FALSE(cells());
        EXPECT_FALSE(start());
        EXPECT_FALSE(stop());
    }
}

TEST_F(Enabling, WhileItRunsOnlyStopIsOn) {
    addOutput(7, "Card", 16);
    open();
    model().setRunning(true);
    EXPECT_FALSE(outputRow());
    EXPECT_FALSE(steppers());
    EXPECT_FALSE(allChannels());
    EXPECT_FALSE(sequential());
    EXPECT_FALSE(sliders());
    EXPECT_FALSE(cells());
    EXPECT_FALSE(start());
    EXPECT_TRUE(stop());
}

TEST_F(Enabling, WhileItPreparesNothingIsOn) {
    addOutput(7, "Card", 16);
    open();
    model().setBusy(true);
    EXPECT_FALSE(outputRow());
    EXPECT_FALSE(steppers());
    EXPECT_FALSE(allChannels());
    EXPECT_FALSE(sequential());
    EXPECT_FALSE(sliders());
    EXPECT_FALSE(cells());
    EXPECT_FALSE(start());
    EXPECT_FALSE(stop());
}

TEST_F(Enabling, AllChannelsTurnsTheSteppersOff) {
    addOutput(7, "Card", 16);
    open();
    click(find(Spoken::CheckBox, QStringLiteral("All Channels")));
    EXPECT_TRUE(model().allChannels());
    EXPECT_FALSE(steppers());
    EXPECT_TRUE(allChannels());
    EXPECT_TRUE(cells());
    EXPECT_TRUE(start());
}

TEST_F(Enabling, InTurnTheCellsAreOff) {
    addOutput(7, "Card", 16);
    open();
    click(find(Spoken::CheckBox, QStringLiteral("Announce Numerically")));
    EXPECT_TRUE(model().sequential());
    EXPECT_FALSE(cells());
    EXPECT_TRUE(steppers());
    EXPECT_TRUE(start());
}

TEST_F(Enabling, ADisabledCellDoesNotSolo) {
    addOutput(7, "Card", 16);
    open();
    model().setRunning(true);
    click(find(Spoken::Button, QStringLiteral("Channel 3, select solo")));
    EXPECT_EQ(model().solo(), 0);
}

}
}
