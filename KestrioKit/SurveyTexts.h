#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QMetaType>
#include <QString>

/// The fixed texts of a survey's screens, in the survey's language. A value; in QML a gadget.
struct KESTRIOKIT_EXPORT SurveyTexts {
    Q_GADGET
    Q_PROPERTY(QString close MEMBER close CONSTANT)
    Q_PROPERTY(QString placeholder MEMBER placeholder CONSTANT)
    Q_PROPERTY(QString thanks MEMBER thanks CONSTANT)

public:
    /// What assistive technology calls the button that closes the survey: "Close".
    QString close;
    /// The placeholder of an empty text field: "I think that...".
    QString placeholder;
    /// The text of the last page: "Thanks!".
    QString thanks;
    /// The text for a position, with "%1" and "%2" for its numbers: "%1 of %2".
    QString positionPattern = QStringLiteral("%1 of %2");

    /// The text for one of several, "2 of 5", for assistive technology. Both count from 1.
    Q_INVOKABLE QString position(qsizetype position, qsizetype count) const {
        return positionPattern.arg(QString::number(position), QString::number(count));
    }
};

Q_DECLARE_METATYPE(SurveyTexts)
