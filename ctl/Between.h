#pragma once

#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>

namespace tallyvox {

/// Accepts numbers from `least` to `most`; what is no number at all is left to the conversion.
class Between : public CLI::Validator {
public:
    Between(double least, double most);
};

}
