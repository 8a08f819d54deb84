#include "tests/e2e/HostileWire.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <span>
#include <stdexcept>
#include <utility>

namespace tallyvox {
namespace {

/// How often a thread looks whether it is to end, in milliseconds.
constexpr int kLook = 10;
constexpr std::size_t kMostDescriptors = 253;

sockaddr_un addressOf(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string text = path.string();
    if (text.size() >= sizeof(address.sun_path))
        throw std::runtime_error("too long for a socket: " + text);
    std::ranges::copy(text, address.sun_path);
    return address;
}

int socket() { return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

/// What came in one piece: bytes, and descriptors that are closed with it.
struct Message {
    std::array<std::byte, 4096> bytes{};
    std::size_t size = 0;
    std::vector<int> descriptors{};

    Message() = default;
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
    ~Message() {
        for (const int descriptor : descriptors)
            close(descriptor);
    }

    bool receive(int from) {
        alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(kMostDescriptors * sizeof(int))>
            control{};
        iovec place{bytes.data(), bytes.size()};
        msghdr header{};
        header.msg_iov = &place;
        header.msg_iovlen = 1;
        header.msg_control = control.data();
        header.msg_controllen = control.size();
        const ssize_t got = recvmsg(from, &header, MSG_CMSG_CLOEXEC);
        if (got <= 0)
            return false;
        size = static_cast<std::size_t>(got);
        const cmsghdr* const rights = CMSG_FIRSTHDR(&header);
        if (rights != nullptr && rights->cmsg_type == SCM_RIGHTS) {
            descriptors.resize((rights->cmsg_len - CMSG_LEN(0)) / sizeof(int));
            std::memcpy(descriptors.data(), CMSG_DATA(rights), descriptors.size() * sizeof(int));
        }
        return true;
    }

    bool send(int to) const {
        alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(kMostDescriptors * sizeof(int))>
            control{};
        auto rest = std::span(bytes).first(size);
        for (bool first = true; !rest.empty(); first = false) {
            iovec place{const_cast<std::byte*>(rest.data()), rest.size()};
            msghdr header{};
            header.msg_iov = &place;
            header.msg_iovlen = 1;
            if (const std::size_t length = descriptors.size() * sizeof(int); first && length > 0) {
                header.msg_control = control.data();
                header.msg_controllen = CMSG_SPACE(length);
                cmsghdr* const rights = CMSG_FIRSTHDR(&header);
                rights->cmsg_level = SOL_SOCKET;
                rights->cmsg_type = SCM_RIGHTS;
                rights->cmsg_len = CMSG_LEN(length);
                std::memcpy(CMSG_DATA(rights), descriptors.data(), length);
            }
            const ssize_t sent = sendmsg(to, &header, MSG_NOSIGNAL);
            if (sent <= 0)
                return false;
            rest = rest.subspan(static_cast<std::size_t>(sent));
        }
        return true;
    }
};

}

HostileWire::HostileWire(std::filesystem::path server, Worst worst, std::int64_t after)
    : server_(std::move(server)), worst_(worst), after_(after), listening_(socket()) {
    const sockaddr_un address = addressOf(folder_.path() / "pipewire-0");
    if (bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listening_, 8) != 0)
        throw std::runtime_error("no socket to listen on");
    thread_ = std::jthread([this](const std::stop_token& stopping) {
        pollfd caller{listening_, POLLIN, 0};
        while (!stopping.stop_requested())
            if (poll(&caller, 1, kLook) > 0)
                connections_.emplace_back(
                    [this, client = accept(listening_, nullptr, nullptr)](
                        const std::stop_token& ending) { connect(ending, client); });
    });
}

HostileWire::~HostileWire() {
    thread_ = {};
    connections_.clear();
    close(listening_);
}

void HostileWire::connect(const std::stop_token& stopping, int client) {
    const int server = socket();
    const sockaddr_un address = addressOf(server_);
    std::int64_t said = 0;
    if (::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
        std::array<pollfd, 2> ends{{{client, POLLIN, 0}, {server, POLLIN, 0}}};
        bool open = true;
        while (open && !stopping.stop_requested()) {
            if (poll(ends.data(), ends.size(), kLook) <= 0)
                continue;
            open = (ends[0].revents == 0 || relay(client, server, nullptr)) &&
                   (ends[1].revents == 0 || relay(server, client, &said));
        }
    }
    close(server);
    close(client);
}

/// Hands one piece on; `said` counts what the server has said.
bool HostileWire::relay(int from, int to, std::int64_t* said) {
    Message message;
    if (!message.receive(from))
        return false;
    if (said == nullptr)
        return message.send(to);
    const std::int64_t before = *said;
    *said += static_cast<std::int64_t>(message.size);
    most_ = std::max(most_.load(), *said);
    if (*said <= after_)
        return message.send(to);

    // From here on it is hostile; what comes before is the server's own.
    const auto good = static_cast<std::size_t>(std::max<std::int64_t>(after_ - before, 0));
    switch (worst_) {
    case Worst::die:
    case Worst::hush:
        message.size = good;
        return message.send(to) && worst_ == Worst::hush;
    case Worst::flip:
        if (before <= after_)
            message.bytes[good] = ~message.bytes[good];
        return message.send(to);
    case Worst::garble: {
        std::minstd_rand random(static_cast<unsigned>(*said));
        for (auto& byte : std::span(message.bytes).subspan(good, message.size - good))
            byte = static_cast<std::byte>(random() & 0xFFU);
        return message.send(to);
    }
    case Worst::strip:
        for (const int descriptor : message.descriptors)
            close(descriptor);
        message.descriptors.clear();
        return message.send(to);
    }
    return false;
}

}
