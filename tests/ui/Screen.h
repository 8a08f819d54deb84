#pragma once

#include "tests/support/FakeHardware.h"
#include "tests/support/VoicesFolder.h"
#include "ui/Delegate.h"
#include "ui/Spoken.h"

#include <gtest/gtest.h>

#include <QtGui/QImage>

#include <functional>
#include <memory>

namespace tallyvox {

/// The toolkit's application object, drawing in software into memory; the same for the process.
void needApplication();

/// The window over a scripted hardware layer, seen and used as an operator does: by what it says
/// and draws, by mouse and keys. Without `addDevice` calls before `open` there are no outputs.
class Screen : public testing::Test {
public:
    ~Screen() override;

protected:
    Screen();

    /// An output with one buffer.
    void addOutput(std::uint32_t id, std::string name, std::uint32_t channels, double rate = 48000);
    void open();

    Model& model() { return delegate_->model(); }
    QQuickWindow& window() { return *delegate_->window(); }

    /// Lets everything under way finish, and answers what the window shows.
    QImage picture();
    /// The colour drawn at a point of the window.
    QColor at(QPointF point);
    /// The colour drawn at a point of an item.
    QColor at(const QQuickItem& item, QPointF point);

    /// The visible item that says `name` in this role; fails the test where there is none.
    QQuickItem& find(Spoken::Role role, const QString& name);
    /// All that the visible items in this role say, from top to bottom.
    QStringList said(Spoken::Role role);
    /// Where an item lies in the window.
    static QRectF place(const QQuickItem& item);

    void click(const QQuickItem& item);
    void click(const QQuickItem& item, QPointF point);
    void press(const QQuickItem& item);
    void release(const QQuickItem& item);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Starts the announcement and waits until it plays, or until the start has failed.
    void start();
    /// What the application object says before it ends.
    void terminate() { delegate_->applicationWillTerminate(); }
    /// Lets the window live until `done`; fails the test where that takes too long.
    void until(const std::function<bool()>& done);

    /// What has the keyboard.
    QString focus();

    FakeHardware hardware;

private:
    VoicesFolder voices_;
    std::unique_ptr<Delegate> delegate_;
};

}
