#pragma once

#include "model/Model.h"

#include <QtQml/qqml.h>

namespace tallyvox {

/// Makes the model known to QML, which it knows nothing of.
struct ModelType {
    Q_GADGET
    QML_FOREIGN(tallyvox::Model)
    QML_NAMED_ELEMENT(Model)
    QML_UNCREATABLE("The window brings it along.")
};

}
