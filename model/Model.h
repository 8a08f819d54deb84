#pragma once

#include "audio/AudioOutput.h"
#include "audio/devices.h"
#include "model/Published.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <cstdint>
#include <optional>
#include <vector>

namespace tallyvox {

/// The first of `outputs` whose id is `id`, or nothing.
std::optional<OutputDevice> findOutput(const std::vector<OutputDevice>& outputs, std::uint32_t id);

/// The one observable object behind the window and the companion: what the operator sees and sets,
/// the rules of the channel range, and the lifecycle of an announcement. Main thread only.
///
/// An assignment to a published property, also of an equal value, emits `objectWillChange`, then
/// the property's change stream `…WillBecome` with the new value, then stores it; `…Changed`
/// follows when it really changed. Assignments have no other effect: who changes `selected` calls
/// `clamp`, who changes `sequential` clears `solo`, who changes `allChannels` calls
/// `selectAllChannels`, each after the store.
class Model : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList outputs READ outputRecords NOTIFY outputsChanged)
    Q_PROPERTY(quint32 selected READ selected WRITE setSelected NOTIFY selectedChanged)
    Q_PROPERTY(qint64 first READ first WRITE setFirst NOTIFY firstChanged)
    Q_PROPERTY(qint64 last READ last WRITE setLast NOTIFY lastChanged)
    Q_PROPERTY(qint64 solo READ solo WRITE setSolo NOTIFY soloChanged)
    Q_PROPERTY(double db READ db WRITE setDb NOTIFY dbChanged)
    Q_PROPERTY(double gap READ gap WRITE setGap NOTIFY gapChanged)
    Q_PROPERTY(bool sequential READ sequential WRITE setSequential NOTIFY sequentialChanged)
    Q_PROPERTY(bool allChannels READ allChannels WRITE setAllChannels NOTIFY allChannelsChanged)
    Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged)
    Q_PROPERTY(bool busy READ busy WRITE setBusy NOTIFY busyChanged)
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(QVariant selectedDevice READ selectedRecord NOTIFY selectedDeviceChanged)
    Q_PROPERTY(qint64 maximum READ maximum NOTIFY selectedDeviceChanged)

public:
    /// Lists the outputs and chooses the first whose name contains "Dante" in any case, else the
    /// first of all; `last` becomes at most 8. Does not clamp.
    explicit Model(Hardware& hardware = tallyvox::hardware(), QObject* parent = nullptr);

    /// The outputs offered, as last enumerated.
    const std::vector<OutputDevice>& outputs() const noexcept { return outputs_(); }
    void setOutputs(std::vector<OutputDevice> value) { outputs_ = std::move(value); }
    /// The same as records with `id`, `name`, `channels` and `rate`, for QML.
    QVariantList outputRecords() const;

    /// Id of the chosen output, 0 for none.
    quint32 selected() const noexcept { return selected_(); }
    void setSelected(quint32 value) { selected_ = value; }

    /// First channel of the range, 1-based.
    qint64 first() const noexcept { return first_(); }
    void setFirst(qint64 value) { first_ = value; }

    /// Last channel of the range, 1-based, inclusive.
    qint64 last() const noexcept { return last_(); }
    void setLast(qint64 value) { last_ = value; }

    /// The only channel that speaks, 0 for no solo.
    qint64 solo() const noexcept { return solo_(); }
    void setSolo(qint64 value) { solo_ = value; }

    /// Peak level in dBFS.
    double db() const noexcept { return db_(); }
    void setDb(double value) { db_ = value; }

    /// Silence between repetitions in seconds.
    double gap() const noexcept { return gap_(); }
    void setGap(double value) { gap_ = value; }

    /// One channel after another instead of all together.
    bool sequential() const noexcept { return sequential_(); }
    void setSequential(bool value) { sequential_ = value; }

    /// The range is forced to all channels of the output.
    bool allChannels() const noexcept { return allChannels_(); }
    void setAllChannels(bool value) { allChannels_ = value; }

    /// An announcement is playing.
    bool running() const noexcept { return running_(); }
    void setRunning(bool value) { running_ = value; }

    /// A start was accepted and its preparation has not finished.
    bool busy() const noexcept { return busy_(); }
    void setBusy(bool value) { busy_ = value; }

    /// The one line that the operator reads.
    const QString& status() const noexcept { return status_(); }
    void setStatus(QString value) { status_ = std::move(value); }

    /// The operator's own range, kept while `allChannels` is on; not published.
    std::int64_t manualFirst = 1;
    std::int64_t manualLast = 8;

    /// The stream, the same for the model's life.
    AudioOutput& audio() noexcept { return audio_; }

    /// The chosen output as last enumerated, or nothing.
    std::optional<OutputDevice> selectedDevice() const;
    /// The same as a record with `id`, `name`, `channels` and `rate`, or undefined, for QML.
    QVariant selectedRecord() const;
    /// The chosen output's channels, at most 128; 0 without one.
    qint64 maximum() const;

    /// The outputs that exist now, asked afresh; changes nothing.
    std::vector<OutputDevice> currentOutputs() const;

    /// Brings the range into the chosen output, or widens it to all of it, and clears `solo`.
    Q_INVOKABLE
    void clamp();
    /// Applies a change of `allChannels`: on saves the range and widens it, off brings it back as
    /// far as the output reaches. Clears `solo`.
    Q_INVOKABLE
    void selectAllChannels();

    /// Checks the request against the outputs present now and refuses it in `status`, or prepares
    /// and plays 0.05 s later with the values of that moment.
    Q_INVOKABLE
    void start();
    /// Stops what plays. A start under way is not called back.
    Q_INVOKABLE
    void stop();
    /// Stops and lists the outputs again; keeps the selection where it is still there, else takes
    /// the first.
    Q_INVOKABLE
    void refresh();

signals:
    /// Before every assignment to any published property.
    void objectWillChange();

    void outputsWillBecome(std::vector<tallyvox::OutputDevice> value);
    void selectedWillBecome(quint32 value);
    void firstWillBecome(qint64 value);
    void lastWillBecome(qint64 value);
    void soloWillBecome(qint64 value);
    void dbWillBecome(double value);
    void gapWillBecome(double value);
    void sequentialWillBecome(bool value);
    void allChannelsWillBecome(bool value);
    void runningWillBecome(bool value);
    void busyWillBecome(bool value);
    void statusWillBecome(QString value);

    void outputsChanged();
    void selectedChanged();
    void firstChanged();
    void lastChanged();
    void soloChanged();
    void dbChanged();
    void gapChanged();
    void sequentialChanged();
    void allChannelsChanged();
    void runningChanged();
    void busyChanged();
    void statusChanged();
    /// `outputs` or `selected` has changed, and with it maybe what is derived from them.
    void selectedDeviceChanged();

private:
    template<typename T>
    using Property = Published<Model, T>;

    std::int64_t ceiling() const;
    void startNow(const OutputDevice& output);

    Hardware& hardware_;
    Property<std::vector<OutputDevice>> outputs_;
    Property<quint32> selected_;
    Property<qint64> first_;
    Property<qint64> last_;
    Property<qint64> solo_;
    Property<double> db_;
    Property<double> gap_;
    Property<bool> sequential_;
    Property<bool> allChannels_;
    Property<bool> running_;
    Property<bool> busy_;
    Property<QString> status_;
    AudioOutput audio_;
};

}
