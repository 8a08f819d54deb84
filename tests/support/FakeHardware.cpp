#include "tests/support/FakeHardware.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace tallyvox {
namespace {

std::string fourCharacters(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFFU);
    return text;
}

std::string query(const char* verb, std::uint32_t object,
                  const AudioObjectPropertyAddress& address) {
    return std::string(verb) + ' ' + std::to_string(object) + ' ' +
           fourCharacters(address.mSelector) + ' ' + fourCharacters(address.mScope);
}

std::string operation(const char* verb, std::uint32_t device) {
    return std::string(verb) + ' ' + std::to_string(device);
}

}

FakeHardware::~FakeHardware() {
    EXPECT_TRUE(handedOut_.empty()) << handedOut_.size() << " strings were never released";
    for (const auto* text : handedOut_)
        delete text;
}

void FakeHardware::addDevice(std::uint32_t id, std::string name,
                             const std::vector<std::uint32_t>& buffers, double rate) {
    ids_.push_back(id);
    setDevices(ids_);
    property(id, kAudioObjectPropertyName).text = std::move(name);
    setValue(id, kAudioDevicePropertyNominalSampleRate, kAudioObjectPropertyScopeGlobal,
             std::vector{rate});
    setBuffers(id, buffers);
}

void FakeHardware::removeDevice(std::uint32_t id) {
    std::erase(ids_, id);
    setDevices(ids_);
    std::erase_if(properties_, [id](const auto& entry) { return std::get<0>(entry.first) == id; });
    buffers_.erase(id);
}

void FakeHardware::setRate(std::uint32_t id, double rate) {
    setValue(id, kAudioDevicePropertyNominalSampleRate, kAudioObjectPropertyScopeGlobal,
             std::vector{rate});
    for (std::uint32_t i = 0; i < buffers_[id].size(); ++i)
        setFormat(streamId(id, i), floatFormat(buffers_[id][i], rate));
}

void FakeHardware::setBuffers(std::uint32_t id, const std::vector<std::uint32_t>& buffers) {
    buffers_[id] = buffers;
    OwnedBufferList list(buffers);
    const auto bytes = std::as_bytes(std::span(list.get(), 1)).data();
    property(id, kAudioDevicePropertyStreamConfiguration, kAudioObjectPropertyScopeOutput)
        .value.assign(bytes, bytes + audioBufferListSize(buffers.size()));

    double rate = 0;
    std::memcpy(&rate, property(id, kAudioDevicePropertyNominalSampleRate).value.data(),
                sizeof rate);
    std::vector<std::uint32_t> streams;
    for (std::uint32_t i = 0; i < buffers.size(); ++i) {
        streams.push_back(streamId(id, i));
        setFormat(streams.back(), floatFormat(buffers[i], rate));
    }
    setValue(id, kAudioDevicePropertyStreams, kAudioObjectPropertyScopeOutput, streams);
}

void FakeHardware::setDevices(std::vector<std::uint32_t> ids) {
    ids_ = std::move(ids);
    setValue(kAudioObjectSystemObject, kAudioHardwarePropertyDevices,
             kAudioObjectPropertyScopeGlobal, ids_);
}

FakeHardware::Property& FakeHardware::property(std::uint32_t object, std::uint32_t selector,
                                               std::uint32_t scope) {
    return properties_[{object, selector, scope, kMainElement}];
}

void FakeHardware::setFormat(std::uint32_t stream, const AudioStreamBasicDescription& format) {
    setValue(stream, kAudioStreamPropertyVirtualFormat, kAudioObjectPropertyScopeGlobal,
             std::vector{format});
}

AudioStreamBasicDescription FakeHardware::floatFormat(std::uint32_t channels, double rate) {
    return {rate,
            kAudioFormatLinearPCM,
            kAudioFormatFlagIsFloat | 8,
            4 * channels,
            1,
            4 * channels,
            channels,
            32,
            0};
}

std::vector<std::string> FakeHardware::streamLog() const {
    std::vector<std::string> lines;
    std::copy_if(log.begin(), log.end(), std::back_inserter(lines), [](const std::string& line) {
        return !line.starts_with("size ") && !line.starts_with("data ");
    });
    return lines;
}

bool FakeHardware::running(std::uint32_t device) const {
    return std::any_of(procs_.begin(), procs_.end(), [device](const auto& entry) {
        return entry.second->device == device && entry.second->running;
    });
}

std::vector<std::vector<float>> FakeHardware::cycle(std::uint32_t device, std::size_t frames) {
    constexpr float stale = 99;
    const auto& shape = buffers_.at(device);
    OwnedBufferList list(shape);
    std::vector<std::vector<float>> memory;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        auto& samples = memory.emplace_back(frames * shape[i], stale);
        list.buffers()[i].mData = samples.data();
        list.buffers()[i].mDataByteSize = static_cast<std::uint32_t>(samples.size() * 4);
    }
    call(device, list.get());

    std::vector<std::vector<float>> channels;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        for (std::size_t k = 0; k < shape[i]; ++k) {
            auto& channel = channels.emplace_back();
            for (std::size_t frame = 0; frame < frames; ++frame)
                channel.push_back(memory[i][frame * shape[i] + k]);
        }
    }
    return channels;
}

void FakeHardware::call(std::uint32_t device, AudioBufferList* list) {
    for (const auto& [id, proc] : procs_) {
        if (proc->device == device && proc->running)
            proc->callback(list);
    }
}

Hardware::IOCallback FakeHardware::callback(std::uint32_t device) const {
    IOCallback found;
    for (const auto& [id, proc] : procs_) {
        if (proc->device == device)
            found = proc->callback;
    }
    return found;
}

std::int32_t FakeHardware::propertyDataSize(std::uint32_t object,
                                            const AudioObjectPropertyAddress& address,
                                            std::uint32_t& bytes) {
    note(query("size", object, address));
    const auto* property = find(object, address);
    if (property == nullptr)
        return kAudioHardwareUnknownPropertyError;
    if (property->sizeStatus == 0)
        bytes = property->statedSize.value_or(static_cast<std::uint32_t>(
            property->text ? sizeof(const void*) : property->value.size()));
    return property->sizeStatus;
}

std::int32_t FakeHardware::propertyData(std::uint32_t object,
                                        const AudioObjectPropertyAddress& address,
                                        std::uint32_t& bytes, void* data) {
    note(query("data", object, address) + ' ' + std::to_string(bytes));
    const auto* property = find(object, address);
    if (property == nullptr)
        return kAudioHardwareUnknownPropertyError;
    if (property->dataStatus != 0)
        return property->dataStatus;
    if (property->text) {
        const auto* text = new std::string(*property->text);
        handedOut_.insert(text);
        const void* const reference = text;
        std::memcpy(data, &reference, sizeof reference);
        return 0;
    }
    bytes = std::min(bytes, static_cast<std::uint32_t>(property->value.size()));
    if (bytes > 0)
        std::memcpy(data, property->value.data(), bytes);
    return 0;
}

std::string FakeHardware::takeString(const void* reference) {
    const auto* text = static_cast<const std::string*>(reference);
    if (handedOut_.erase(text) == 0) {
        ADD_FAILURE() << "a string was released that was not handed out";
        return {};
    }
    std::string copy = *text;
    delete text;
    return copy;
}

std::int32_t FakeHardware::createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) {
    note(operation("create", device));
    if (createStatus != 0)
        return createStatus;
    auto made = std::make_unique<Proc>(Proc{device, std::move(callback)});
    proc = made.get();
    procs_.emplace(proc, std::move(made));
    return 0;
}

std::int32_t FakeHardware::startDevice(std::uint32_t device, IOProcId proc) {
    note(operation("start", device));
    auto* found = find(device, proc);
    if (found == nullptr)
        return kAudioHardwareBadObjectError;
    found->running = startStatus == 0;
    return startStatus;
}

std::int32_t FakeHardware::stopDevice(std::uint32_t device, IOProcId proc) {
    note(operation("stop", device));
    auto* found = find(device, proc);
    if (found == nullptr)
        return kAudioHardwareBadObjectError;
    found->running = false;
    return stopStatus;
}

std::int32_t FakeHardware::destroyIOProc(std::uint32_t device, IOProcId proc) {
    note(operation("destroy", device));
    if (find(device, proc) == nullptr)
        return kAudioHardwareBadObjectError;
    procs_.erase(proc);
    return destroyStatus;
}

void FakeHardware::note(std::string line) {
    log.push_back(std::move(line));
    if (before) {
        // The hook may write further lines: the reference must not move.
        const std::string copy = log.back();
        before(copy);
    }
}

FakeHardware::Property* FakeHardware::find(std::uint32_t object,
                                           const AudioObjectPropertyAddress& address) {
    const auto entry =
        properties_.find({object, address.mSelector, address.mScope, address.mElement});
    return entry == properties_.end() ? nullptr : &entry->second;
}

FakeHardware::Proc* FakeHardware::find(std::uint32_t device, IOProcId proc) {
    const auto entry = procs_.find(proc);
    if (entry == procs_.end() || entry->second->device != device) {
        ADD_FAILURE() << "no such callback is registered on device " << device;
        return nullptr;
    }
    return entry->second.get();
}

}
