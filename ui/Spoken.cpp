#include "ui/Spoken.h"

namespace tallyvox {

Spoken::Spoken(QQuickItem* item) : QObject(item), item_(item) {
    const auto tell = [item](QAccessible::Event what) {
        QAccessibleEvent event(item, what);
        QAccessible::updateAccessibility(&event);
    };
    const auto tellState = [item](QAccessible::State changed) {
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    };
    QAccessible::State checkedState;
    checkedState.checked = true;
    QAccessible::State expandedState;
    expandedState.expanded = true;
    QAccessible::State disabledState;
    disabledState.disabled = true;

    connect(this, &Spoken::nameChanged, item, [tell] { tell(QAccessible::NameChanged); });
    connect(this, &Spoken::descriptionChanged, item,
            [tell] { tell(QAccessible::DescriptionChanged); });
    connect(this, &Spoken::checkedChanged, item, [=] { tellState(checkedState); });
    connect(this, &Spoken::expandedChanged, item, [=] { tellState(expandedState); });
    connect(item, &QQuickItem::enabledChanged, this, [=] { tellState(disabledState); });
    connect(this, &Spoken::focusedChanged, item, [this, tell] {
        if (focused) {
            tell(QAccessible::Focus);
        }
    });
    connect(this, &Spoken::valueChanged, item, [this, item] {
        QAccessibleValueChangeEvent event(item, value);
        QAccessible::updateAccessibility(&event);
    });
}

Spoken* Spoken::qmlAttachedProperties(QObject* item) {
    return new Spoken(qobject_cast<QQuickItem*>(item));
}

Spoken* Spoken::of(const QQuickItem* item) {
    return qobject_cast<Spoken*>(
        qmlAttachedPropertiesObject<Spoken>(const_cast<QQuickItem*>(item), false));
}

}
