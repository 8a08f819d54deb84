#pragma once

#include "audio/Hardware.h"
#include "platform/common/PropertyServer.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace tallyvox {

/// A hardware layer that breaks its word wherever `data` says so: any query may fail, state a size
/// that is none, answer short, long by its own word, or with other bytes than a moment ago. Where
/// `data` has ended it is honest. It never writes beyond the memory that it is given.
class HostileHardware : public Hardware {
public:
    explicit HostileHardware(FuzzedDataProvider& data);
    /// Releases the strings that nobody could have known of.
    ~HostileHardware() override;

    std::int32_t propertyDataSize(std::uint32_t object, const AudioObjectPropertyAddress& address,
                                  std::uint32_t& bytes) override;
    std::int32_t propertyData(std::uint32_t object, const AudioObjectPropertyAddress& address,
                              std::uint32_t& bytes, void* data) override;
    std::string takeString(const void* reference) override;
    std::int32_t createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) override;
    std::int32_t startDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t stopDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) override;

    std::size_t registered() const { return procs_.size(); }
    /// Calls every callback that is registered, started or not.
    void call(AudioBufferList* list);

private:
    std::int32_t anyStatus();
    void spoil(std::uint32_t selector, std::uint32_t bytes, void* value);

    FuzzedDataProvider& data_;
    PropertyServer honest_;
    std::set<const void*> strings_;
    std::map<IOProcId, IOCallback> procs_;
    std::uintptr_t lastProc_ = 0;
};

}
