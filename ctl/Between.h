#pragma once

#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>

namespace tallyvox {

/// Accepts decimal numbers from `least` to `most`, and rewrites them to plain decimals: what comes
/// after it takes an empty text for 0 and a leading 0 for an octal number.
class Between : public CLI::Validator {
public:
    Between(double least, double most);
};

}
