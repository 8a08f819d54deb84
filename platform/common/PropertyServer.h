#pragma once

#include "audio/Hardware.h"
#include "platform/common/Layer.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tallyvox {

/// Answers the contract's property queries from the typed records of its layers. Devices are
/// listed layer by layer in the order given; layers that stand in for an absent server are asked
/// only when no other layer answers. The value of a property is the layer's at the time of the
/// query, the size and the data read each on its own. A device has one stream, of the device's own
/// id. Main thread only.
class PropertyServer : public Hardware {
public:
    /// `servers` are listed together; `fallback` only when none of them answers.
    explicit PropertyServer(std::vector<std::unique_ptr<Layer>> servers,
                            std::vector<std::unique_ptr<Layer>> fallback = {});
    ~PropertyServer() override;

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
    struct State;
    std::unique_ptr<State> state_;
};

}
