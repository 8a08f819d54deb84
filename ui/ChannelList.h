#pragma once

#include <QtCore/QAbstractListModel>

#include <cstdint>

namespace tallyvox {

/// The cells of the grid, one a channel in ascending order. A change of the range inserts and
/// removes rows at its ends; cells that stay are not rebuilt.
class ChannelList : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { Number = Qt::UserRole, Caption, Label, Channel, Soloed, Dimmed };

    using QAbstractListModel::QAbstractListModel;

    /// Shows the channels `first` through the greater of `first` and `last`.
    void setRange(std::int64_t first, std::int64_t last);

    /// Marks the soloed channel; 0 marks none.
    void setSolo(std::int64_t solo);

    /// The channel of a row.
    std::int64_t channel(int row) const { return first_ + row; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::int64_t first_ = 1;
    std::int64_t count_ = 0;
    std::int64_t solo_ = 0;
};

}
