#include <QAccessible>
#include <QFile>
#include <QGenericPlugin>
#include <QGuiApplication>
#include <QWindow>

// Answers a survey in a program that knows nothing of it, as assistive technology does. Each line
// of the file VISITOR_STEPS is the object name or the text of a button to press, or the
// object name of a text field, "=" and what to write there. After the last step it closes the
// windows, as soon as the file VISITOR_END exists.
class Visitor : public QObject {
public:
    Visitor() {
        QFile file(qEnvironmentVariable("VISITOR_STEPS"));
        if (file.open(QIODevice::ReadOnly))
            m_steps = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
        startTimer(interval);
    }

private:
    static constexpr std::chrono::milliseconds interval{10};

    void timerEvent(QTimerEvent *) override {
        // Controls that were created since know of it only now: this platform does not keep it.
        QAccessible::setActive(true);
        const QWindowList windows = QGuiApplication::topLevelWindows();
        if (m_steps.isEmpty() && QFile::exists(qEnvironmentVariable("VISITOR_END"))) {
            for (QWindow *const window : windows)
                window->close();
        }
        for (QWindow *const window : windows) {
            if (window->isVisible() && !m_steps.isEmpty() &&
                take(window->accessibleRoot(), m_steps.first()))
                m_steps.removeFirst();
        }
    }

    static bool take(QAccessibleInterface *item, const QString &step) {
        if (!item || item->state().invisible || item->state().disabled)
            return false;
        const QString name = step.section('=', 0, 0);
        if (step.contains('=') && isNamed(item->object(), name))
            return write(*item->object(), step.section('=', 1));
        if (item->actionInterface() && isNamed(item->object(), name)) {
            press(*item);
            return true;
        }
        for (int index = 0; index < item->childCount(); ++index) {
            if (take(item->child(index), step))
                return true;
        }
        return false;
    }

    // The buttons of Qt Quick Controls do nothing when assistive technology presses them.
    static void press(QAccessibleInterface &item) {
        QObject &button = *item.object();
        if (button.isWidgetType())
            QMetaObject::invokeMethod(&button, "click");
        else if (button.inherits("QQuickAbstractButton"))
            QMetaObject::invokeMethod(&button, "clicked");
        else
            item.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    static bool isNamed(const QObject *object, const QString &name) {
        return object && (object->objectName() == name || object->property("text") == name);
    }

    static bool write(QObject &field, const QString &text) {
        return field.setProperty("plainText", text) || field.setProperty("text", text);
    }

    QStringList m_steps;
};

class VisitorPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "visitor.json")

public:
    QObject *create(const QString &, const QString &) override { return new Visitor; }
};

#include "Visitor.moc"
