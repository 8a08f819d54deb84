#include "platform/virtual/virtualLayer.h"

#include "platform/virtual/VirtualStream.h"

#include <utility>

namespace tallyvox {

namespace {

/// Serial of the first device: an id below it is no device.
constexpr std::uint32_t kFirst = 2;

class VirtualLayer : public Layer {
public:
    VirtualLayer(std::vector<VirtualDevice> devices, std::filesystem::path record)
        : devices_(std::move(devices)), record_(std::move(record)) {}

    std::string_view name() const override { return "virtual"; }

    std::optional<std::vector<DeviceRecord>> devices() override {
        std::vector<DeviceRecord> records;
        for (std::size_t index = 0; index < devices_.size(); ++index)
            records.push_back(record(index));
        return records;
    }

    std::optional<DeviceRecord> device(std::uint32_t id) override {
        const std::size_t index = id - std::size_t{kFirst};
        return index < devices_.size() ? std::optional(record(index)) : std::nullopt;
    }

    std::int32_t open(std::uint32_t device, Hardware::IOCallback callback,
                      std::unique_ptr<Stream>& stream) override {
        const std::size_t index = device - std::size_t{kFirst};
        if (index >= devices_.size() || !(devices_[index].rate > 0))
            return kAudioHardwareBadDeviceError;
        stream = makeVirtualStream(devices_[index], std::move(callback), record_);
        return 0;
    }

private:
    DeviceRecord record(std::size_t index) const {
        const VirtualDevice& device = devices_[index];
        return {deviceId(LayerTag::virtualDevices, kFirst + index),
                "Virtual " + std::to_string(device.channels) + " channels",
                {static_cast<std::uint32_t>(device.channels)},
                device.rate};
    }

    std::vector<VirtualDevice> devices_;
    std::filesystem::path record_;
};

}

std::unique_ptr<Layer> makeVirtualLayer(std::vector<VirtualDevice> devices,
                                        std::filesystem::path record) {
    return std::make_unique<VirtualLayer>(std::move(devices), std::move(record));
}

}
