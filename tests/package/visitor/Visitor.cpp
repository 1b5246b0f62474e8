#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QGenericPlugin>
#include <QPlainTextEdit>
#include <QTextEdit>

// Answers a survey in a program that knows nothing of it. Each line of the file VISITOR_STEPS is
// the name or the text of a button to press, or the name of a text field, "=" and what to write
// there. After the last step it closes the windows, as soon as the file VISITOR_END exists.
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
        if (m_steps.isEmpty() && QFile::exists(qEnvironmentVariable("VISITOR_END")))
            QApplication::closeAllWindows();
        else if (!m_steps.isEmpty() && take(m_steps.first()))
            m_steps.removeFirst();
    }

    static bool take(const QString &step) {
        const QString name = step.section('=', 0, 0);
        for (QWidget *const widget : QApplication::allWidgets()) {
            auto *const button = qobject_cast<QAbstractButton *>(widget);
            const bool isNamed = widget->objectName() == name || (button && button->text() == name);
            if (isNamed && widget->isVisible() && widget->isEnabled())
                return button ? press(*button)
                              : widget->setProperty("plainText", step.section('=', 1));
        }
        return false;
    }

    static bool press(QAbstractButton &button) {
        button.click();
        return true;
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
