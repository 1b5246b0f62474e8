#pragma once

#include "KestrioKit/Widgets/Survey/SurveyViewController.h"
#include "tests/support/SurveyFixture.h"
#include "tests/Widgets/StillStyle.h"

#include <QLineEdit>
#include <QPointingDevice>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace KestrioKit {

/// Counts the events of a type that are sent to an object.
struct EventCounter final : QObject {
    EventCounter(QObject &object, QEvent::Type counted) : type(counted) {
        object.installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == type;
        return false;
    }

    const QEvent::Type type;
    int count = 0;
};

/// A host's window with a field and a button, and surveys over it that the service sends and is
/// told about. Nothing moves: each state is there at once, but for `finishDelay`.
class SurveyScreenTest : public SurveyFixture {
protected:
    SurveyScreenTest();
    /// Lets the survey that is still up end, and what it submits go out.
    void TearDown() override;

    /// Presents a survey of these questions; over `window`, if there is no other host.
    void present(const QByteArray &questions, const QByteArray &locale = "en",
                 QWidget *host = nullptr);
    /// The survey on screen; null when none is.
    SurveyViewController *survey() const { return SurveyViewController::presented(); }

    /// The visible control with that accessibility identifier.
    QWidget *control(const QString &identifier) const;
    /// Its frame in the window.
    QRect frame(const QString &identifier) const;
    QRect frame(const QWidget *view) const;
    template <typename View>
    View *view() const {
        return survey() ? survey()->findChild<View *>() : nullptr;
    }

    /// Through the window, as the system delivers them.
    void click(const QPoint &position);
    void click(const QString &identifier);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void tap(const QPoint &position);
    QString focused() const;
    /// Lets the two seconds pass for which a survey waits for its hidden window.
    void letTheWaitPass();

    QWidget window;
    QLineEdit field{&window};
    QPushButton button{&window};
    const QSignalSpy presses{&button, &QPushButton::clicked};
    const std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
};

} // namespace KestrioKit
