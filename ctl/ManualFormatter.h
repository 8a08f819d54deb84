#pragma once

#include <CLI/App.hpp>
#include <CLI/Formatter.hpp>

#include <string>

namespace tallyvox {

/// Help as a page of a manual: two columns, no line longer than 80 characters.
class ManualFormatter : public CLI::Formatter {
public:
    ManualFormatter();

    std::string make_description(const CLI::App* app) const override;
    std::string make_subcommand(const CLI::App* verb) const override;
    std::string make_option(const CLI::Option* option, bool positional) const override;
};

/// `text` broken between words into lines that begin with `indent` spaces, the first as if it
/// already held `used` characters, and end before the 80th. Every line ends with a line feed.
std::string wrapped(const std::string& text, std::size_t indent, std::size_t used);

}
