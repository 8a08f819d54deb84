#include "ctl/Rounds.h"

#include "base/checked.h"

#include <algorithm>

namespace tallyvox {

Rounds::Rounds(const Renderer& renderer) : cycle_(renderer.cycle()), frames_(cycle_) {
    if (!renderer.sequential())
        return;
    const auto& enabled = renderer.enabled();
    for (std::size_t index = 0; index < enabled.size(); ++index) {
        if (enabled[index])
            turns_.push_back(checkedCast<std::int64_t>(index) + 1);
    }
    frames_ = checkedMultiply(cycle_, std::max<std::int64_t>(std::ssize(turns_), 1));
}

std::int64_t Rounds::channelAt(std::int64_t frame) const noexcept {
    if (turns_.empty())
        return 0;
    return turns_[static_cast<std::size_t>(frame / cycle_ % std::ssize(turns_))];
}

}
