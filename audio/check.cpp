#include "audio/check.h"

#include "base/Error.h"

namespace tallyvox {

std::string failureMessage(std::int32_t status, std::string_view what) {
    return std::string(what) + " failed (" + std::to_string(status) +
           "). Check that the output device is running.";
}

void check(std::int32_t status, std::string_view what) {
    if (status != 0)
        throw Error("Audio", status, failureMessage(status, what));
}

}
