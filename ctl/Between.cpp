#include "ctl/Between.h"

#include <CLI/TypeTools.hpp>

#include <sstream>
#include <string>

namespace tallyvox {
namespace {

std::string plain(double number) {
    std::ostringstream text;
    text.precision(15);
    text << number;
    return text.str();
}

}

Between::Between(double least, double most)
    : Validator(
          [least, most](std::string& text) {
              double number = 0.0;
              // A NaN lies between nothing.
              if (!CLI::detail::lexical_cast(text, number) || (number >= least && number <= most))
                  return std::string();
              return text + " does not lie between " + plain(least) + " and " + plain(most);
          },
          "") {}

}
