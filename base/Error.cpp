#include "base/Error.h"

namespace tallyvox {

Error::Error(std::string_view domain, std::int64_t code, std::string_view message)
    : domain_(domain), code_(code), message_(message) {}

Error::Error(std::string_view domain, std::int64_t code)
    : Error(domain, code, std::string(domain) + " error " + std::to_string(code)) {}

}
