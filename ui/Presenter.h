#pragma once

#include "model/Model.h"
#include "ui/ChannelList.h"
#include "ui/Range.h"

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

namespace tallyvox {

/// What the view needs beyond the model's own properties: the facts derived from them, what the
/// operator can do, and the reactions to a change. It keeps nothing of its own. Main thread only.
class Presenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window brings it along.")
    Q_PROPERTY(bool locked READ locked NOTIFY lockedChanged FINAL)
    Q_PROPERTY(bool unplayable READ unplayable NOTIFY unplayableChanged FINAL)
    Q_PROPERTY(QStringList outputs READ outputs NOTIFY outputsChanged FINAL)
    Q_PROPERTY(int output READ output NOTIFY outputChanged FINAL)
    Q_PROPERTY(tallyvox::Range firstRange READ firstRange NOTIFY rangesChanged FINAL)
    Q_PROPERTY(tallyvox::Range lastRange READ lastRange NOTIFY rangesChanged FINAL)
    Q_PROPERTY(QAbstractItemModel* channels READ channels CONSTANT FINAL)

public:
    /// `model` outlives the presenter.
    explicit Presenter(Model& model, QObject* parent = nullptr);

    /// Running or busy.
    bool locked() const;
    /// Locked, or no output chosen that has channels.
    bool unplayable() const;

    /// A line for every output, in order.
    QStringList outputs() const;
    /// The chosen one's place among them, or -1.
    int output() const;

    Range firstRange() const;
    Range lastRange() const;

    /// The cells of the grid.
    QAbstractItemModel* channels() { return &channels_; }

    /// Chooses the output at `place`.
    Q_INVOKABLE
    void choose(int place);
    /// Moves the first channel by `by`, inside its range.
    Q_INVOKABLE
    void moveFirst(qlonglong by);
    /// Moves the last channel by `by`, inside its range.
    Q_INVOKABLE
    void moveLast(qlonglong by);
    Q_INVOKABLE
    void flipAllChannels();
    Q_INVOKABLE
    void flipSequential();
    /// Sets the level to the nearest whole decibel.
    Q_INVOKABLE
    void setLevel(double db);
    /// Sets the gap to the nearest tenth of a second.
    Q_INVOKABLE
    void setGap(double seconds);
    /// Solos `channel`, or clears the solo if it is the one.
    Q_INVOKABLE
    void flipSolo(qlonglong channel);

signals:
    void lockedChanged();
    void unplayableChanged();
    void outputsChanged();
    void outputChanged();
    void rangesChanged();

private:
    qlonglong channelCount() const;

    Model& model_;
    ChannelList channels_;
};

}
