#pragma once

#include "audio/Hardware.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace tallyvox {

/// A hardware layer whose every answer is scripted and whose I/O cycles are driven by hand.
///
/// `addDevice` gives a device that behaves; `property` changes any single answer of it.
class FakeHardware : public Hardware {
public:
    /// What one property answers.
    struct Property {
        std::vector<std::byte> value;
        std::optional<std::string> text; ///< set: a fresh reference to it instead of `value`
        std::int32_t sizeStatus = 0;
        std::int32_t dataStatus = 0;             ///< a status other than 0 copies nothing
        std::optional<std::uint32_t> statedSize; ///< what the size query says, where it lies
    };

    FakeHardware() { setDevices({}); }
    /// Fails the test when a string reference was never taken.
    ~FakeHardware() override;

    /// A device that behaves, at the end of the list: `buffers` holds the channels of each buffer
    /// of an I/O cycle, each served by one interleaved float stream at `rate`.
    void addDevice(std::uint32_t id, std::string name, const std::vector<std::uint32_t>& buffers,
                   double rate);
    /// Takes the device out of the list and forgets its properties.
    void removeDevice(std::uint32_t id);
    /// The nominal rate, and that of the streams.
    void setRate(std::uint32_t id, double rate);
    /// The channels of each buffer, and as many streams.
    void setBuffers(std::uint32_t id, const std::vector<std::uint32_t>& buffers);
    void setDevices(std::vector<std::uint32_t> ids);

    /// The answer of one property, made where it was missing.
    Property& property(std::uint32_t object, std::uint32_t selector,
                       std::uint32_t scope = kAudioObjectPropertyScopeGlobal);
    template<typename T>
    void setValue(std::uint32_t object, std::uint32_t selector, std::uint32_t scope,
                  const std::vector<T>& values) {
        const auto bytes = std::as_bytes(std::span(values));
        property(object, selector, scope).value.assign(bytes.begin(), bytes.end());
    }
    /// Id of the device's stream with this index.
    static std::uint32_t streamId(std::uint32_t device, std::uint32_t index) {
        return device * 1000 + index;
    }
    void setFormat(std::uint32_t stream, const AudioStreamBasicDescription& format);
    /// Interleaved 32-bit floats in native order.
    static AudioStreamBasicDescription floatFormat(std::uint32_t channels, double rate);

    std::int32_t createStatus = 0;
    std::int32_t startStatus = 0;
    std::int32_t stopStatus = 0;
    std::int32_t destroyStatus = 0;

    /// Every operation in order, for instance "size 1 dev# glob", "data 7 lnam glob 8" (the bytes
    /// offered), "create 7", "start 7", "stop 7", "destroy 7".
    std::vector<std::string> log;
    /// Called with each line of the log before the operation is carried out.
    std::function<void(const std::string&)> before;
    /// Adds a line to the log, for operations that the contract does not have.
    void note(std::string line);
    /// The lines of the log that are not property queries.
    std::vector<std::string> streamLog() const;

    /// Registered callbacks, running or not.
    std::size_t registered() const { return procs_.size(); }
    /// Whether a registered callback is started on `device`.
    bool running(std::uint32_t device) const;
    /// One I/O cycle of `frames` on `device`: calls the started callbacks with buffers of the
    /// device's shape; answers the samples of each channel.
    std::vector<std::vector<float>> cycle(std::uint32_t device, std::size_t frames);
    /// Calls the started callbacks of `device` with this very list.
    void call(std::uint32_t device, AudioBufferList* list);
    /// A copy of the callback registered last on `device`, as a late call would use it.
    IOCallback callback(std::uint32_t device) const;

    std::int32_t propertyDataSize(std::uint32_t object, const AudioObjectPropertyAddress& address,
                                  std::uint32_t& bytes) override;
    std::int32_t propertyData(std::uint32_t object, const AudioObjectPropertyAddress& address,
                              std::uint32_t& bytes, void* data) override;
    std::string takeString(const void* reference) override;
    std::int32_t createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) override;
    std::int32_t startDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t stopDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) override;

private:
    struct Proc {
        std::uint32_t device;
        IOCallback callback;
        bool running = false;
    };
    using Key = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;

    Property* find(std::uint32_t object, const AudioObjectPropertyAddress& address);
    Proc* find(std::uint32_t device, IOProcId proc);

    std::vector<std::uint32_t> ids_;
    std::map<std::uint32_t, std::vector<std::uint32_t>> buffers_;
    std::map<Key, Property> properties_;
    std::set<const std::string*> handedOut_;
    std::map<IOProcId, std::unique_ptr<Proc>> procs_;
};

}
