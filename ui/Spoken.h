#pragma once

#include <QtGui/QAccessible>
#include <QtQml/qqml.h>
#include <QtQuick/QQuickItem>

namespace tallyvox {

/// What assistive technology is told of an item. Attaching it makes the item part of the
/// accessibility tree; an item without it is passed over, its children are not.
class Spoken : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It is attached to items.")
    QML_ATTACHED(tallyvox::Spoken)
    Q_PROPERTY(Role role MEMBER role NOTIFY roleChanged FINAL)
    Q_PROPERTY(QString name MEMBER name NOTIFY nameChanged FINAL)
    Q_PROPERTY(QString description MEMBER description NOTIFY descriptionChanged FINAL)
    Q_PROPERTY(bool checked MEMBER checked NOTIFY checkedChanged FINAL)
    Q_PROPERTY(bool expanded MEMBER expanded NOTIFY expandedChanged FINAL)
    Q_PROPERTY(bool focused MEMBER focused NOTIFY focusedChanged FINAL)
    Q_PROPERTY(double value MEMBER value NOTIFY valueChanged FINAL)
    Q_PROPERTY(double least MEMBER least NOTIFY limitsChanged FINAL)
    Q_PROPERTY(double most MEMBER most NOTIFY limitsChanged FINAL)
    Q_PROPERTY(double step MEMBER step NOTIFY limitsChanged FINAL)

public:
    enum Role {
        Text = QAccessible::StaticText,
        Heading = QAccessible::Heading,
        Button = QAccessible::Button,
        CheckBox = QAccessible::CheckBox,
        Picker = QAccessible::ComboBox,
        List = QAccessible::List,
        ListItem = QAccessible::ListItem,
        Slider = QAccessible::Slider,
        Stepper = QAccessible::SpinBox,
    };
    Q_ENUM(Role)

    explicit Spoken(QQuickItem* item);

    static Spoken* qmlAttachedProperties(QObject* item);

    /// What is attached to `item`, or null.
    static Spoken* of(const QQuickItem* item);

    QQuickItem* item() const { return item_; }

    Role role = Text;
    QString name;
    QString description; ///< also the state in words
    bool checked = false;
    bool expanded = false;
    bool focused = false; ///< holds the keyboard focus
    double value = 0;     ///< of sliders and steppers, like the three that follow
    double least = 0;
    double most = 0;
    double step = 1;

signals:
    /// Assistive technology presses the item; never while it is disabled.
    void pressed();
    /// Assistive technology sets the value, brought inside the limits; never while it is disabled.
    void valueRequested(double wanted);

    void roleChanged();
    void nameChanged();
    void descriptionChanged();
    void checkedChanged();
    void expandedChanged();
    void focusedChanged();
    void valueChanged();
    void limitsChanged();

private:
    QQuickItem* item_;
};

/// Lets the windows and their items answer assistive technology by what is attached to the items.
/// Call once, before the first window.
void installSpoken();

}
