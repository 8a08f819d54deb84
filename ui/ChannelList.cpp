#include "ui/ChannelList.h"

#include "base/checked.h"
#include "ui/Texts.h"

#include <algorithm>

namespace tallyvox {

void ChannelList::setRange(std::int64_t first, std::int64_t last) {
    const std::int64_t end = checkedAdd(std::max(first, last), 1);
    const std::int64_t shownEnd = first_ + count_;
    if (end <= first_ || first >= shownEnd) {
        beginResetModel();
        first_ = first;
        count_ = end - first;
        endResetModel();
        return;
    }
    if (first < first_) {
        beginInsertRows({}, 0, checkedCast<int>(first_ - first - 1));
        first_ = first;
        count_ = shownEnd - first;
        endInsertRows();
    } else if (first > first_) {
        beginRemoveRows({}, 0, checkedCast<int>(first - first_ - 1));
        first_ = first;
        count_ = shownEnd - first;
        endRemoveRows();
    }
    if (end > shownEnd) {
        beginInsertRows({}, rowCount(), checkedCast<int>(end - first_ - 1));
        count_ = end - first_;
        endInsertRows();
    } else if (end < shownEnd) {
        beginRemoveRows({}, checkedCast<int>(end - first_), rowCount() - 1);
        count_ = end - first_;
        endRemoveRows();
    }
}

void ChannelList::setSolo(std::int64_t solo) {
    if (solo_ == solo) {
        return;
    }
    solo_ = solo;
    emit dataChanged(index(0), index(rowCount() - 1), {Caption, Label, Soloed, Dimmed});
}

int ChannelList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : checkedCast<int>(count_);
}

QVariant ChannelList::data(const QModelIndex& index, int role) const {
    const std::int64_t channel = this->channel(index.row());
    const bool soloed = channel == solo_;
    switch (role) {
    case Number:
        return Texts::cellNumber(channel);
    case Caption:
        return Texts::cellCaption(channel, soloed);
    case Label:
        return Texts::cellLabel(channel, soloed);
    case Channel:
        return QVariant::fromValue<qlonglong>(channel);
    case Soloed:
        return soloed;
    case Dimmed:
        return solo_ != 0 && !soloed;
    default:
        return {};
    }
}

QHash<int, QByteArray> ChannelList::roleNames() const {
    return {{Number, "number"},   {Caption, "caption"}, {Label, "label"},
            {Channel, "channel"}, {Soloed, "soloed"},   {Dimmed, "dimmed"}};
}

}
