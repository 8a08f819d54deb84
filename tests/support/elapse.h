#pragma once

#include "model/Model.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QTimer>

namespace tallyvox {

/// Starts of `model` that were accepted and still wait.
inline qsizetype waitingStarts(const Model& model) {
    qsizetype waiting = 0;
    for (const auto* timer : model.findChildren<QTimer*>())
        waiting += timer->isActive() ? 1 : 0;
    return waiting;
}

/// Lets the delay of every waiting start pass at once: they run in their order.
inline void elapse(Model& model) {
    while (waitingStarts(model) > 0) {
        for (auto* timer : model.findChildren<QTimer*>())
            timer->setInterval(0);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

}
