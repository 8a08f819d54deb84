#include "ui/Spoken.h"

#include <QtGui/QAccessibleObject>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include <algorithm>

namespace tallyvox {

namespace {

/// The nearest items below `item` that have something attached and are visible, in reading order
/// of their declaration.
void collect(const QQuickItem* item, QList<QQuickItem*>& found) {
    for (QQuickItem* child : item->childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        if (Spoken::of(child) != nullptr) {
            found.append(child);
        } else {
            collect(child, found);
        }
    }
}

/// The children of a list in the order in which they lie on the screen: the toolkit keeps them in
/// the order in which it made them.
void sortByPlace(QList<QQuickItem*>& items) {
    std::stable_sort(items.begin(), items.end(), [](const QQuickItem* a, const QQuickItem* b) {
        const QPointF left = a->mapToScene({});
        const QPointF right = b->mapToScene({});
        return left.y() < right.y() || (left.y() == right.y() && left.x() < right.x());
    });
}

QAccessibleInterface* interfaceAt(const QList<QQuickItem*>& items, int place) {
    return place >= 0 && place < items.size()
               ? QAccessible::queryAccessibleInterface(items.at(place))
               : nullptr;
}

QAccessibleInterface* topmostAt(const QList<QQuickItem*>& items, int x, int y) {
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        QAccessibleInterface* found = QAccessible::queryAccessibleInterface(*item);
        if (found->rect().contains(x, y)) {
            QAccessibleInterface* inner = found->childAt(x, y);
            return inner != nullptr ? inner : found;
        }
    }
    return nullptr;
}

/// What is common to a window and an item: children, and how they are found.
class Node : public QAccessibleObject {
public:
    using QAccessibleObject::QAccessibleObject;

    int childCount() const override { return static_cast<int>(children().size()); }
    QAccessibleInterface* child(int place) const override { return interfaceAt(children(), place); }
    QAccessibleInterface* childAt(int x, int y) const override {
        return topmostAt(children(), x, y);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(children().indexOf(qobject_cast<QQuickItem*>(child->object())));
    }

protected:
    virtual QList<QQuickItem*> children() const = 0;
};

class ItemNode : public Node, public QAccessibleActionInterface, public QAccessibleValueInterface {
public:
    explicit ItemNode(QQuickItem* item) : Node(item) {}

    QWindow* window() const override { return item()->window(); }

    QAccessibleInterface* parent() const override {
        for (QQuickItem* above = item()->parentItem(); above; above = above->parentItem()) {
            if (Spoken::of(above) != nullptr) {
                return QAccessible::queryAccessibleInterface(above);
            }
        }
        return QAccessible::queryAccessibleInterface(item()->window());
    }

    QRect rect() const override {
        const QPointF corner = item()->mapToGlobal(QPointF());
        return QRectF(corner, item()->size()).toAlignedRect();
    }

    QAccessible::Role role() const override {
        return static_cast<QAccessible::Role>(spoken().role);
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        const Spoken& told = spoken();
        state.disabled = !item()->isEnabled();
        state.invisible = !item()->isVisible();
        state.readOnly = told.role == Spoken::Text || told.role == Spoken::Heading;
        state.focusable = item()->activeFocusOnTab() || told.role == Spoken::ListItem;
        state.focused = told.focused;
        state.checkable = told.role == Spoken::CheckBox;
        state.checked = told.checked;
        state.expandable = told.role == Spoken::Picker;
        state.expanded = told.expanded;
        state.collapsed = state.expandable && !told.expanded;
        return state;
    }

    QString text(QAccessible::Text which) const override {
        switch (which) {
        case QAccessible::Name:
            return spoken().name;
        case QAccessible::Description:
            return spoken().description;
        default:
            return {};
        }
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface && !actionNames().isEmpty()) {
            return static_cast<QAccessibleActionInterface*>(this);
        }
        if (type == QAccessible::ValueInterface && hasValue()) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return nullptr;
    }

    QStringList actionNames() const override {
        switch (spoken().role) {
        case Spoken::Button:
        case Spoken::CheckBox:
        case Spoken::Picker:
        case Spoken::ListItem:
            return {pressAction()};
        default:
            return {};
        }
    }
    void doAction(const QString& name) override {
        if (name == pressAction() && item()->isEnabled()) {
            emit spoken().pressed();
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    QVariant currentValue() const override { return spoken().value; }
    QVariant minimumValue() const override { return spoken().least; }
    QVariant maximumValue() const override { return spoken().most; }
    QVariant minimumStepSize() const override { return spoken().step; }
    void setCurrentValue(const QVariant& value) override {
        if (item()->isEnabled()) {
            const Spoken& told = spoken();
            emit spoken().valueRequested(
                std::min(std::max(value.toDouble(), told.least), told.most));
        }
    }

protected:
    QList<QQuickItem*> children() const override {
        QList<QQuickItem*> found;
        collect(item(), found);
        if (spoken().role == Spoken::List) {
            sortByPlace(found);
        }
        return found;
    }

private:
    QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }
    Spoken& spoken() const { return *Spoken::of(item()); }
    bool hasValue() const {
        return spoken().role == Spoken::Slider || spoken().role == Spoken::Stepper;
    }
};

class WindowNode : public Node {
public:
    explicit WindowNode(QQuickWindow* window) : Node(window) {}

    QWindow* window() const override { return quick(); }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(qApp);
    }
    QAccessibleInterface* focusChild() const override {
        for (QQuickItem* item : children()) {
            if (QAccessibleInterface* found =
                    focused(QAccessible::queryAccessibleInterface(item))) {
                return found;
            }
        }
        return nullptr;
    }
    QRect rect() const override { return quick()->geometry(); }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.active = quick()->isActive();
        state.focusable = true;
        state.invisible = !quick()->isVisible();
        return state;
    }
    QString text(QAccessible::Text which) const override {
        return which == QAccessible::Name ? quick()->title() : QString();
    }

protected:
    QList<QQuickItem*> children() const override {
        QList<QQuickItem*> found;
        collect(quick()->contentItem(), found);
        return found;
    }

private:
    static QAccessibleInterface* focused(QAccessibleInterface* node) {
        if (node->state().focused) {
            return node;
        }
        for (int place = 0; place < node->childCount(); ++place) {
            if (QAccessibleInterface* found = focused(node->child(place))) {
                return found;
            }
        }
        return nullptr;
    }

    QQuickWindow* quick() const { return static_cast<QQuickWindow*>(object()); }
};

QAccessibleInterface* make(const QString&, QObject* object) {
    if (auto* window = qobject_cast<QQuickWindow*>(object)) {
        return new WindowNode(window);
    }
    if (auto* item = qobject_cast<QQuickItem*>(object); item && Spoken::of(item)) {
        return new ItemNode(item);
    }
    return nullptr;
}

}

void installSpoken() { QAccessible::installFactory(make); }

}
