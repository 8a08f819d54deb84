#include "ctl/chooseOutput.h"

#include "base/Error.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <iterator>

namespace tallyvox {
namespace {

std::string listed(const std::vector<OutputDevice>& outputs) {
    std::string text;
    for (const OutputDevice& output : outputs)
        text += (text.empty() ? "" : ", ") + std::to_string(output.id) + " (" + output.name + ")";
    return text;
}

}

OutputDevice chooseOutput(const std::vector<OutputDevice>& outputs, const std::string& wanted) {
    const auto part = QString::fromStdString(wanted);
    const std::function<bool(const OutputDevice&)> ways[] = {
        [&](const OutputDevice& output) { return std::to_string(output.id) == wanted; },
        [&](const OutputDevice& output) { return output.name == wanted; },
        [&](const OutputDevice& output) {
            return QString::fromStdString(output.name).contains(part, Qt::CaseInsensitive);
        }};
    for (const auto& way : ways) {
        std::vector<OutputDevice> found;
        std::copy_if(outputs.begin(), outputs.end(), std::back_inserter(found), way);
        if (found.size() == 1)
            return found.front();
        if (found.size() > 1)
            throw Error("Output choice", 2,
                        "\"" + wanted +
                            "\" names more than one output; choose by id: " + listed(found) + ".");
    }
    throw Error("Output choice", 1,
                "There is no output \"" + wanted + "\"." +
                    (outputs.empty() ? std::string(" No output is there at all.")
                                     : " There are: " + listed(outputs) + "."));
}

}
