#include "ui/ChannelList.h"

#include <gtest/gtest.h>

#include <QtCore/QStringList>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

namespace tallyvox {
namespace {

class Channels : public testing::Test {
protected:
    QVariant told(int row, int role) const { return list.data(list.index(row), role); }
    std::vector<qlonglong> shown() const {
        std::vector<qlonglong> channels;
        for (int row = 0; row < list.rowCount(); ++row)
            channels.push_back(told(row, ChannelList::Channel).toLongLong());
        return channels;
    }

    ChannelList list;
    // Aborts where the list breaks a rule of the toolkit's models.
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(Channels, AscendFromTheFirstToTheLast) {
    list.setRange(3, 6);
    EXPECT_EQ(shown(), (std::vector<qlonglong>{3, 4, 5, 6}));
}

TEST_F(Channels, AreTheFirstAloneWhereTheLastLiesBelow) {
    list.setRange(1, 0);
    EXPECT_EQ(shown(), (std::vector<qlonglong>{1}));
    list.setRange(10, 4);
    EXPECT_EQ(shown(), (std::vector<qlonglong>{10}));
}

TEST_F(Channels, AreAddedAndRemovedAtTheEndsWithoutARebuild) {
    list.setRange(5, 8);
    const QSignalSpy rebuilt(&list, &QAbstractItemModel::modelReset);
    const QSignalSpy added(&list, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(&list, &QAbstractItemModel::rowsRemoved);
    for (const auto& [first, last] :
         {std::pair{5, 9}, {4, 9}, {6, 9}, {6, 7}, {1, 128}, {128, 128}, {1, 2}}) {
        const bool apart = list.channel(list.rowCount() - 1) < first || list.channel(0) > last;
        const auto before = rebuilt.size();
        list.setRange(first, last);
        EXPECT_EQ(shown().front(), first);
        EXPECT_EQ(shown().back(), last);
        EXPECT_EQ(shown().size(), static_cast<std::size_t>(last - first + 1));
        EXPECT_EQ(rebuilt.size() - before, apart ? 1 : 0);
    }
    EXPECT_EQ(rebuilt.size(), 1);
    EXPECT_EQ(added.size(), 4);
    EXPECT_EQ(removed.size(), 3);
}

TEST_F(Channels, StayAsTheyAreWhereTheRangeDoes) {
    list.setRange(1, 8);
    const QSignalSpy added(&list, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(&list, &QAbstractItemModel::rowsRemoved);
    list.setRange(1, 8);
    EXPECT_EQ(added.size() + removed.size(), 0);
}

TEST_F(Channels, SayWhichOfThemIsSoloedAndDimTheOthers) {
    list.setRange(1, 3);
    EXPECT_FALSE(told(1, ChannelList::Dimmed).toBool());
    const QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
    list.setSolo(2);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(told(1, ChannelList::Caption), QStringLiteral("SOLO"));
    EXPECT_EQ(told(1, ChannelList::Label), QStringLiteral("Channel 2, solo selected"));
    EXPECT_TRUE(told(1, ChannelList::Soloed).toBool());
    EXPECT_FALSE(told(1, ChannelList::Dimmed).toBool());
    EXPECT_TRUE(told(0, ChannelList::Dimmed).toBool());
    EXPECT_TRUE(told(2, ChannelList::Dimmed).toBool());
    EXPECT_EQ(told(2, ChannelList::Number), QStringLiteral("03"));
    list.setSolo(0);
    EXPECT_FALSE(told(0, ChannelList::Dimmed).toBool());
    EXPECT_EQ(told(1, ChannelList::Caption), QStringLiteral("CH 2"));
}

TEST_F(Channels, DimAllForASoloThatIsNotAmongThem) {
    list.setRange(1, 2);
    list.setSolo(9);
    EXPECT_TRUE(told(0, ChannelList::Dimmed).toBool());
    EXPECT_TRUE(told(1, ChannelList::Dimmed).toBool());
}

}
}
