#include "platform/common/PropertyServer.h"

#include "engine/AudioBufferList.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <map>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

namespace tallyvox {

namespace {

using Layers = std::vector<std::unique_ptr<Layer>>;
using Value = std::vector<std::byte>;

template<class T>
Value valueOf(const T& record) {
    Value value(sizeof record);
    std::memcpy(value.data(), &record, sizeof record);
    return value;
}

std::int64_t channelsOf(const DeviceRecord& device) {
    return std::accumulate(device.buffers.begin(), device.buffers.end(), std::int64_t{0});
}

Value streamConfiguration(const DeviceRecord& device) {
    OwnedBufferList list(device.buffers);
    Value value(audioBufferListSize(device.buffers.size()));
    std::memcpy(value.data(), list.get(), value.size());
    return value;
}

/// The one stream of a device: all its channels, interleaved only where they share a buffer.
AudioStreamBasicDescription virtualFormat(const DeviceRecord& device) {
    const bool interleaved = device.buffers.size() == 1;
    const auto channels = static_cast<std::uint32_t>(channelsOf(device));
    AudioStreamBasicDescription format{};
    format.mSampleRate = device.rate;
    format.mFormatID = kAudioFormatLinearPCM;
    format.mFormatFlags =
        kAudioFormatFlagIsFloat | (interleaved ? 0U : kAudioFormatFlagIsNonInterleaved) |
        (std::endian::native == std::endian::big ? kAudioFormatFlagIsBigEndian : 0U);
    format.mBytesPerFrame = 4 * (interleaved ? channels : 1);
    format.mBytesPerPacket = format.mBytesPerFrame;
    format.mFramesPerPacket = 1;
    format.mChannelsPerFrame = channels;
    format.mBitsPerChannel = 32;
    return format;
}

/// Hz. Whoever states more lies, and a second of sound at that rate would not fit the memory: the
/// device is told without a rate, which nothing starts on.
constexpr double kHighestRate = 1e6;

/// Size in bytes of a property that holds one string.
constexpr std::uint32_t kStringSize = sizeof(const void*);

/// Hands over a string as one reference.
std::int32_t copyString(std::string_view text, std::uint32_t& bytes, void* data) {
    if (bytes < kStringSize)
        return kAudioHardwareBadPropertySizeError;
    const void* const reference = new std::string(text);
    std::memcpy(data, &reference, kStringSize);
    bytes = kStringSize;
    return 0;
}

/// Copies a value that is cut only between whole items of `unit` bytes.
std::int32_t copyValue(const Value& value, std::size_t unit, std::uint32_t& bytes, void* data) {
    const std::size_t count = std::min<std::size_t>(bytes, value.size()) / unit * unit;
    if (count == 0 && !value.empty() && bytes < unit)
        return kAudioHardwareBadPropertySizeError;
    if (count > 0)
        std::memcpy(data, value.data(), count);
    bytes = static_cast<std::uint32_t>(count);
    return 0;
}

bool isString(std::uint32_t selector) {
    return selector == kAudioObjectPropertyName || selector == kDevicePropertyLayer;
}

}

struct PropertyServer::State {
    struct Proc {
        std::uint32_t device;
        std::unique_ptr<Stream> stream;
    };
    struct Found {
        Layer* layer;
        DeviceRecord record;
    };

    Layers servers;
    Layers fallback;
    std::map<IOProcId, Proc> procs;

    /// The devices of the `layers` that answer, or nothing where none does.
    static std::optional<std::vector<std::uint32_t>> list(const Layers& layers) {
        std::optional<std::vector<std::uint32_t>> ids;
        for (const auto& layer : layers) {
            const auto devices = layer->devices();
            if (!devices)
                continue;
            if (!ids)
                ids.emplace();
            for (const DeviceRecord& device : *devices)
                ids->push_back(device.id);
        }
        return ids;
    }

    std::vector<std::uint32_t> list() const {
        if (auto ids = list(servers))
            return *std::move(ids);
        return list(fallback).value_or(std::vector<std::uint32_t>{});
    }

    static std::optional<Found> find(const Layers& layers, std::uint32_t id) {
        for (const auto& layer : layers)
            if (auto record = layer->device(id)) {
                if (!(record->rate <= kHighestRate))
                    record->rate = 0;
                return Found{layer.get(), *std::move(record)};
            }
        return {};
    }

    std::optional<Found> find(std::uint32_t id) const {
        if (auto found = find(servers, id))
            return found;
        // A device that plays stays what it is when a server comes up beside it.
        return xruns(id) || !list(servers) ? find(fallback, id) : std::nullopt;
    }

    std::optional<std::uint64_t> xruns(std::uint32_t device) const {
        std::optional<std::uint64_t> sum;
        for (const auto& [id, proc] : procs)
            if (proc.device == device)
                sum = sum.value_or(0) + proc.stream->xruns();
        return sum;
    }

    /// The stream of `proc` if it was registered on `device`, or null.
    Stream* stream(std::uint32_t device, IOProcId proc) const {
        const auto found = procs.find(proc);
        return found != procs.end() && found->second.device == device ? found->second.stream.get()
                                                                      : nullptr;
    }

    /// Writes the value of a property that is not a string, and the bytes of one item of it.
    std::int32_t read(std::uint32_t object, const AudioObjectPropertyAddress& address, Value& value,
                      std::size_t& unit) const;
};

std::int32_t PropertyServer::State::read(std::uint32_t object,
                                         const AudioObjectPropertyAddress& address, Value& value,
                                         std::size_t& unit) const {
    if (address.mElement != kMainElement)
        return kAudioHardwareUnknownPropertyError;
    const bool output = address.mScope == kAudioObjectPropertyScopeOutput;
    if (!output && address.mScope != kAudioObjectPropertyScopeGlobal)
        return kAudioHardwareUnknownPropertyError;

    if (object == kAudioObjectSystemObject) {
        if (output || address.mSelector != kAudioHardwarePropertyDevices)
            return kAudioHardwareUnknownPropertyError;
        const auto ids = list();
        unit = sizeof(std::uint32_t);
        value.resize(ids.size() * unit);
        std::ranges::copy(std::as_bytes(std::span(ids)), value.begin());
        return 0;
    }

    if (!output && address.mSelector == kDevicePropertyXruns) {
        const auto count = xruns(object);
        if (!count)
            return kAudioHardwareUnknownPropertyError;
        value = valueOf(*count);
        unit = value.size();
        return 0;
    }

    const auto found = find(object);
    if (!found)
        return kAudioHardwareBadObjectError;
    if (output && address.mSelector == kAudioDevicePropertyStreamConfiguration)
        value = streamConfiguration(found->record);
    else if (output && address.mSelector == kAudioDevicePropertyStreams)
        value = valueOf(object);
    else if (!output && address.mSelector == kAudioDevicePropertyNominalSampleRate)
        value = valueOf(found->record.rate);
    else if (!output && address.mSelector == kAudioStreamPropertyVirtualFormat)
        value = valueOf(virtualFormat(found->record));
    else
        return kAudioHardwareUnknownPropertyError;
    unit = value.size();
    return 0;
}

PropertyServer::PropertyServer(std::vector<std::unique_ptr<Layer>> servers,
                               std::vector<std::unique_ptr<Layer>> fallback)
    : state_(new State{std::move(servers), std::move(fallback), {}}) {}

PropertyServer::~PropertyServer() = default;

std::int32_t PropertyServer::propertyDataSize(std::uint32_t object,
                                              const AudioObjectPropertyAddress& address,
                                              std::uint32_t& bytes) {
    if (isString(address.mSelector)) {
        if (address.mScope != kAudioObjectPropertyScopeGlobal || address.mElement != kMainElement)
            return kAudioHardwareUnknownPropertyError;
        if (!state_->find(object))
            return kAudioHardwareBadObjectError;
        bytes = kStringSize;
        return 0;
    }
    Value value;
    std::size_t unit = 0;
    const std::int32_t status = state_->read(object, address, value, unit);
    if (status == 0)
        bytes = static_cast<std::uint32_t>(value.size());
    return status;
}

std::int32_t PropertyServer::propertyData(std::uint32_t object,
                                          const AudioObjectPropertyAddress& address,
                                          std::uint32_t& bytes, void* data) {
    if (isString(address.mSelector)) {
        if (address.mScope != kAudioObjectPropertyScopeGlobal || address.mElement != kMainElement)
            return kAudioHardwareUnknownPropertyError;
        const auto found = state_->find(object);
        if (!found)
            return kAudioHardwareBadObjectError;
        return copyString(address.mSelector == kDevicePropertyLayer ? found->layer->name()
                                                                    : found->record.name,
                          bytes, data);
    }
    Value value;
    std::size_t unit = 0;
    const std::int32_t status = state_->read(object, address, value, unit);
    return status != 0 ? status : copyValue(value, unit, bytes, data);
}

std::string PropertyServer::takeString(const void* reference) {
    const std::unique_ptr<const std::string> text(static_cast<const std::string*>(reference));
    return text ? *text : std::string{};
}

std::int32_t PropertyServer::createIOProc(std::uint32_t device, IOCallback callback,
                                          IOProcId& proc) {
    const auto found = state_->find(device);
    if (!found)
        return kAudioHardwareBadDeviceError;
    std::unique_ptr<Stream> stream;
    const std::int32_t status = found->layer->open(device, std::move(callback), stream);
    if (status != 0)
        return status;
    proc = stream.get();
    state_->procs.emplace(proc, State::Proc{device, std::move(stream)});
    return 0;
}

std::int32_t PropertyServer::startDevice(std::uint32_t device, IOProcId proc) {
    Stream* const stream = state_->stream(device, proc);
    return stream != nullptr ? stream->start() : kAudioHardwareBadDeviceError;
}

std::int32_t PropertyServer::stopDevice(std::uint32_t device, IOProcId proc) {
    Stream* const stream = state_->stream(device, proc);
    if (stream == nullptr)
        return kAudioHardwareBadDeviceError;
    stream->stop();
    return 0;
}

std::int32_t PropertyServer::destroyIOProc(std::uint32_t device, IOProcId proc) {
    Stream* const stream = state_->stream(device, proc);
    if (stream == nullptr)
        return kAudioHardwareBadDeviceError;
    stream->stop();
    state_->procs.erase(proc);
    return 0;
}

}
