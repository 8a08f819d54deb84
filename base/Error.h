#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace tallyvox {

/// A failure that the operator must see: a domain ("Audio", "Voice", …), a code within it, and one
/// readable line.
class Error : public std::exception {
public:
    Error(std::string_view domain, std::int64_t code, std::string_view message);

    /// An error without a message of its own: it reads as its domain and code.
    Error(std::string_view domain, std::int64_t code);

    const std::string& domain() const noexcept { return domain_; }
    std::int64_t code() const noexcept { return code_; }

    /// The readable message, UTF-8, one line.
    const char* what() const noexcept override { return message_.c_str(); }

private:
    std::string domain_;
    std::int64_t code_;
    std::string message_;
};

}
