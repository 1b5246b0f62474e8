#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QMetaType>
#include <QString>

/// The fixed texts of a survey's screens, in the survey's language. A value type, and a gadget in
/// QML.
struct KESTRIOKIT_EXPORT SurveyTexts {
    Q_GADGET
    Q_PROPERTY(QString close MEMBER close CONSTANT)
    Q_PROPERTY(QString placeholder MEMBER placeholder CONSTANT)
    Q_PROPERTY(QString thanks MEMBER thanks CONSTANT)

public:
    /// The accessible name of the button that closes the survey: "Close".
    QString close;
    /// The placeholder of an empty text field: "I think that...".
    QString placeholder;
    /// The text of the last page: "Thanks!".
    QString thanks;
    /// The pattern for `position()`: "%1 of %2". "%1" stands for the position, "%2" for the count.
    QString positionPattern = QStringLiteral("%1 of %2");

    /// Returns the text for one item of several, such as "2 of 5", for assistive technology.
    /// Positions count from 1.
    Q_INVOKABLE QString position(qsizetype position, qsizetype count) const {
        return positionPattern.arg(QString::number(position), QString::number(count));
    }
};

Q_DECLARE_METATYPE(SurveyTexts)
