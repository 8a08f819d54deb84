#include "ctl/ManualFormatter.h"

#include <sstream>

namespace tallyvox {
namespace {

constexpr std::size_t width = 79;
constexpr std::size_t column = 22;

/// `left` and beside it `right`.
std::string twoColumns(const std::string& left, const std::string& right) {
    const std::string name = "  " + left;
    if (name.size() >= column)
        return name + '\n' + std::string(column, ' ') + wrapped(right, column, column);
    return name + std::string(column - name.size(), ' ') + wrapped(right, column, column);
}

}

std::string wrapped(const std::string& text, std::size_t indent, std::size_t used) {
    std::istringstream words(text);
    std::string result;
    bool fresh = true;
    for (std::string word; words >> word; fresh = false) {
        if (!fresh && used + 1 + word.size() > width) {
            result += '\n' + std::string(indent, ' ');
            used = indent;
            fresh = true;
        }
        result += (fresh ? "" : " ") + word;
        used += (fresh ? 0 : 1) + word.size();
    }
    return result + '\n';
}

ManualFormatter::ManualFormatter() {
    label("OPTIONS", "OPTION...");
    label("SUBCOMMAND", "VERB");
    label("Positionals", "Arguments");
}

std::string ManualFormatter::make_description(const CLI::App* app) const {
    return wrapped(app->get_description(), 0, 0) + '\n';
}

std::string ManualFormatter::make_subcommand(const CLI::App* verb) const {
    return twoColumns(verb->get_name(), verb->get_description());
}

std::string ManualFormatter::make_option(const CLI::Option* option, bool positional) const {
    std::string name = make_option_name(option, positional);
    if (const auto comma = name.find(','); comma != std::string::npos)
        name.insert(comma + 1, " ");
    if (!positional && option->get_type_size() != 0)
        name += ' ' + option->get_type_name();
    return twoColumns(name, option->get_description());
}

}
