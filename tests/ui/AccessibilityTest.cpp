#include "tests/ui/Screen.h"

#include <QtGui/QAccessible>

namespace tallyvox {
namespace {

/// The window as assistive technology meets it.
class Accessibility : public Screen {
protected:
    void SetUp() override {
        addOutput(7, "Card", 16);
        addOutput(9, "Wall", 200);
        open();
    }

    QAccessibleInterface& root() { return *QAccessible::queryAccessibleInterface(&window()); }

    std::vector<QAccessibleInterface*> below(QAccessibleInterface& node) {
        std::vector<QAccessibleInterface*> all;
        for (int place = 0; place < node.childCount(); ++place) {
            QAccessibleInterface* child = node.child(place);
            EXPECT_EQ(child->parent(), &node);
            EXPECT_EQ(node.indexOfChild(child), place);
            all.push_back(child);
            const auto inner = below(*child);
            all.insert(all.end(), inner.begin(), inner.end());
        }
        return all;
    }

    QAccessibleInterface& node(QAccessible::Role role, const char* name) {
        for (QAccessibleInterface* found : below(root())) {
            if (found->role() == role && found->text(QAccessible::Name) == QString::fromUtf8(name))
                return *found;
        }
        throw std::runtime_error(std::string("nobody tells of ") + name);
    }
    void press(QAccessibleInterface& node) {
        node.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        picture();
    }
};

TEST_F(Accessibility, TheWindowTellsItsTitleAndPlace) {
    EXPECT_EQ(root().role(), QAccessible::Window);
    EXPECT_EQ(root().text(QAccessible::Name), QStringLiteral("ORBELKNOLL Tallyvox V3"));
    EXPECT_EQ(root().rect(), window().geometry());
    EXPECT_EQ(root().window(), &window());
}

TEST_F(Accessibility, TellsEverythingFromTopToBottom) {
    QStringList names;
    for (QAccessibleInterface* child : below(root()))
        names.append(child->text(QAccessible::Name));
    QStringList expected{QStringLiteral("TALLYVOX"),
                         QStringLiteral("STOPPED"),
                         QStringLiteral("Every output speaks its own number."),
                         QStringLiteral("Output device"),
                         QStringLiteral("Output device"),
                         QStringLiteral("Refresh"),
                         QStringLiteral("First: 1"),
                         QStringLiteral("Last: 8"),
                         QStringLiteral("All Channels"),
                         QStringLiteral("Announce Numerically"),
                         QStringLiteral("All selected channels together"),
                         QStringLiteral("Peak level"),
                         QStringLiteral("Peak level"),
                         QStringLiteral("-24 dBFS"),
                         QStringLiteral("Repeat gap"),
                         QStringLiteral("Repeat gap"),
                         QStringLiteral("0.7 sec"),
                         QStringLiteral("CHANNELS 1–8"),
                         QStringLiteral("Click a channel to solo it"),
                         QStringLiteral("Channels")};
    for (int channel = 1; channel <= 8; ++channel)
        expected.append(QStringLiteral("Channel %1, select solo").arg(channel));
    expected += {QStringLiteral("Stopped. Choose an output and press Start."),
                 QStringLiteral("Start announcing"),
                 QStringLiteral("Stop"),
                 QStringLiteral("Channel 1 → one  ·  Channel 2 → two"),
                 QStringLiteral("ORBELKNOLL"),
                 QStringLiteral("V3")};
    EXPECT_EQ(names, expected);
}

TEST_F(Accessibility, AllCellsOf128ChannelsAreInTheTreeInOrder) {
    model().setSelected(9);
    model().setAllChannels(true);
    picture();
    QAccessibleInterface& grid = node(QAccessible::List, "Channels");
    until([&grid] { return grid.childCount() == 128; });
    for (int place = 0; place < grid.childCount(); ++place) {
        EXPECT_EQ(grid.child(place)->text(QAccessible::Name),
                  QStringLiteral("Channel %1, select solo").arg(place + 1));
    }
    press(*grid.child(127));
    EXPECT_EQ(model().solo(), 128);
}

TEST_F(Accessibility, PlacesAreThoseOnTheScreen) {
    QAccessibleInterface& refresh = node(QAccessible::Button, "Refresh");
    const QRectF drawn = place(find(Spoken::Button, QStringLiteral("Refresh")));
    EXPECT_EQ(refresh.rect(), drawn.translated(window().position()).toAlignedRect());
    const QPoint middle = refresh.rect().center();
    EXPECT_EQ(root().childAt(middle.x(), middle.y()), &refresh);
    QAccessibleInterface& cell = node(QAccessible::Button, "Channel 5, select solo");
    const QPoint inCell = cell.rect().center();
    EXPECT_EQ(root().childAt(inCell.x(), inCell.y()), &cell);
    EXPECT_EQ(root().childAt(-5, -5), nullptr);
}

TEST_F(Accessibility, PressingWorksWhereTheControlIsEnabled) {
    press(node(QAccessible::CheckBox, "All Channels"));
    EXPECT_TRUE(model().allChannels());
    press(node(QAccessible::Button, "Channel 2, select solo"));
    EXPECT_EQ(model().solo(), 2);
    EXPECT_EQ(node(QAccessible::Button, "Channel 2, solo selected").state().checked, 1U);
    model().setRunning(true);
    press(node(QAccessible::CheckBox, "All Channels"));
    EXPECT_TRUE(model().allChannels());
    press(node(QAccessible::Button, "Stop"));
    EXPECT_FALSE(model().running());
}

TEST_F(Accessibility, ACheckBoxTellsItsStateTwice) {
    QAccessibleInterface& box = node(QAccessible::CheckBox, "Announce Numerically");
    EXPECT_EQ(box.text(QAccessible::Description), QStringLiteral("Unchecked"));
    EXPECT_TRUE(box.state().checkable);
    EXPECT_FALSE(box.state().checked);
    model().setSequential(true);
    EXPECT_EQ(box.text(QAccessible::Description), QStringLiteral("Checked"));
    EXPECT_TRUE(box.state().checked);
}

TEST_F(Accessibility, DisabledControlsAreToldAsDisabled) {
    EXPECT_TRUE(node(QAccessible::Button, "Stop").state().disabled);
    EXPECT_FALSE(node(QAccessible::Button, "Start announcing").state().disabled);
    model().setSequential(true);
    EXPECT_TRUE(node(QAccessible::Button, "Channel 2, select solo").state().disabled);
}

TEST_F(Accessibility, ValuesHaveTheirLimits) {
    QAccessibleValueInterface& level = *node(QAccessible::Slider, "Peak level").valueInterface();
    EXPECT_EQ(level.currentValue(), -24);
    EXPECT_EQ(level.minimumValue(), -60);
    EXPECT_EQ(level.maximumValue(), -6);
    EXPECT_EQ(level.minimumStepSize(), 1);
    level.setCurrentValue(-30.2);
    EXPECT_EQ(model().db(), -30);
    level.setCurrentValue(50);
    EXPECT_EQ(model().db(), -6);
    QAccessibleValueInterface& last = *node(QAccessible::SpinBox, "Last: 8").valueInterface();
    EXPECT_EQ(last.minimumValue(), 1);
    EXPECT_EQ(last.maximumValue(), 16);
    last.setCurrentValue(12);
    EXPECT_EQ(model().last(), 12);
    EXPECT_EQ(node(QAccessible::SpinBox, "Last: 12").valueInterface()->currentValue(), 12);
    EXPECT_EQ(node(QAccessible::Button, "Refresh").valueInterface(), nullptr);
}

TEST_F(Accessibility, AnOutputIsChosenFromTheOpenedList) {
    QAccessibleInterface& picker = node(QAccessible::ComboBox, "Output device");
    EXPECT_EQ(picker.text(QAccessible::Description), QStringLiteral("Card — 16 outputs"));
    EXPECT_TRUE(picker.state().collapsed);
    press(picker);
    EXPECT_TRUE(picker.state().expanded);
    press(node(QAccessible::ListItem, "Wall — 200 outputs"));
    EXPECT_EQ(model().selected(), 9U);
    EXPECT_TRUE(picker.state().collapsed);
    EXPECT_EQ(picker.text(QAccessible::Description), QStringLiteral("Wall — 200 outputs"));
}

TEST_F(Accessibility, TheFocusIsTold) {
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_EQ(root().focusChild(), &node(QAccessible::Button, "Refresh"));
    EXPECT_TRUE(node(QAccessible::Button, "Refresh").state().focused);
    EXPECT_FALSE(node(QAccessible::ComboBox, "Output device").state().focused);
}

TEST_F(Accessibility, TheStatusIsToldAsItIs) {
    model().setStatus(QStringLiteral("<b>100 %1 & more</b>"));
    EXPECT_TRUE(node(QAccessible::StaticText, "<b>100 %1 & more</b>").state().readOnly);
}

}
}
