#include "platform/virtual/virtualLayer.h"

#include <charconv>
#include <system_error>

namespace tallyvox {

namespace {

template<class Number>
bool read(std::string_view text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stopped == end;
}

std::optional<VirtualDevice> parseDevice(std::string_view word) {
    const auto at = word.find('@');
    if (at == std::string_view::npos)
        return {};
    VirtualDevice device{};
    if (!read(word.substr(0, at), device.channels) || !read(word.substr(at + 1), device.rate))
        return {};
    const bool paced = device.rate == 0 || (device.rate >= 1 && device.rate <= 1e6);
    const bool served = device.channels >= 1 && device.channels <= 1024 && paced;
    return served ? std::optional(device) : std::nullopt;
}

}

std::optional<std::vector<VirtualDevice>> parseVirtualDevices(std::string_view list) {
    std::vector<VirtualDevice> devices;
    for (;;) {
        const auto comma = list.find(',');
        const auto device = parseDevice(list.substr(0, comma));
        if (!device)
            return {};
        devices.push_back(*device);
        if (comma == std::string_view::npos)
            return devices;
        list.remove_prefix(comma + 1);
    }
}

}
