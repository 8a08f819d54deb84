#include "model/OutputWatch.h"

#include "model/Model.h"

namespace tallyvox {

void watchOutput(Model& model) {
    if (!model.running())
        return;
    const auto now = findOutput(model.currentOutputs(), model.selected());
    const auto listed = model.selectedDevice();
    if (now && listed && now->channels == listed->channels && now->rate == listed->rate)
        return;
    model.stop();
    model.setStatus(
        QStringLiteral("Output changed or disconnected. Refresh outputs before restarting."));
}

}
