#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <optional>

/// One of the answers that a question offers. A value type, and a gadget in QML.
struct KESTRIOKIT_EXPORT SurveyOption {
    Q_GADGET
    Q_PROPERTY(QVariant id READ idOrNull CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString value MEMBER value CONSTANT)

public:
    /// Identifies the option in an answer. Only faulty surveys have options without an id; they
    /// cannot be chosen.
    std::optional<qint64> id;
    /// The text to show.
    QString label;
    /// The value that is submitted if the option is chosen.
    QString value;

    /// Returns the id, or a null variant if there is none. For QML.
    QVariant idOrNull() const { return id ? QVariant(*id) : QVariant(); }
};

/// One question of a survey, with the texts to show. A value type, and a gadget in QML.
struct KESTRIOKIT_EXPORT SurveyQuestion {
    Q_GADGET
    Q_PROPERTY(Type type MEMBER type CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(QList<SurveyOption> options MEMBER options CONSTANT)
    Q_PROPERTY(int firstValue MEMBER firstValue CONSTANT)
    Q_PROPERTY(int lastValue MEMBER lastValue CONSTANT)
    Q_PROPERTY(QString firstLabel MEMBER firstLabel CONSTANT)
    Q_PROPERTY(QString lastLabel MEMBER lastLabel CONSTANT)
    Q_PROPERTY(QString actionText MEMBER actionText CONSTANT)

public:
    /// The kind of answer that the question asks for. `SurveySession::answer()` describes the value
    /// for each type.
    enum class Type {
        /// A type that this version does not know. Show the text only; it cannot be answered.
        Other,
        /// A text.
        Open,
        /// A number on a rating scale.
        Likert,
        /// One of the options.
        MultipleChoice,
        /// Any number of the options.
        MultiSelect,
        /// A number on the net-promoter scale.
        Nps,
    };
    Q_ENUM(Type)

    /// The type of the question; `Other` by default.
    Type type = Type::Other;
    /// The text of the question.
    QString text;
    /// The options of `MultipleChoice` and `MultiSelect`; empty for other types.
    QList<SurveyOption> options;
    /// The first and last number of a scale: 1 and 5 for `Likert`, 0 and 10 for `Nps`, 0 for other
    /// types.
    int firstValue = 0;
    int lastValue = 0;
    /// The labels at the ends of a scale; may be empty.
    QString firstLabel;
    QString lastLabel;
    /// The text of the button that submits an `Open` or `MultiSelect` answer, in the survey's
    /// language: "Next", or "Finish" for the last question.
    QString actionText;
};

Q_DECLARE_METATYPE(SurveyOption)
Q_DECLARE_METATYPE(SurveyQuestion)
