#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <optional>

/// One of the answers that a question offers. A value; in QML a gadget.
struct KESTRIOKIT_EXPORT SurveyOption {
    Q_GADGET
    Q_PROPERTY(QVariant id READ idOrNull CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString value MEMBER value CONSTANT)

public:
    /// Identifies the option in an answer. An option without an id, which only a faulty survey has,
    /// cannot be chosen.
    std::optional<qint64> id;
    /// The text to show.
    QString label;
    /// What is submitted when the option is chosen.
    QString value;

    /// The id, or a null variant.
    QVariant idOrNull() const { return id ? QVariant(*id) : QVariant(); }
};

/// One question of a survey, with the texts to show. A value; in QML a gadget.
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
    /// What kind of answer the question asks for. `SurveySession::answer()` says how each is
    /// answered.
    enum class Type {
        /// A kind that this version does not know: show the text alone. It cannot be answered.
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

    Type type = Type::Other;
    /// The question itself.
    QString text;
    /// The options of `MultipleChoice` and `MultiSelect`; empty for other types.
    QList<SurveyOption> options;
    /// The ends of a scale: 1 and 5 for `Likert`, 0 and 10 for `Nps`; 0 for other types.
    int firstValue = 0;
    int lastValue = 0;
    /// The captions at the ends of a scale; may be empty.
    QString firstLabel;
    QString lastLabel;
    /// The text of the button that sends an `Open` or `MultiSelect` answer, in the survey's
    /// language: "Next", or "Finish" for the last question.
    QString actionText;
};

Q_DECLARE_METATYPE(SurveyOption)
Q_DECLARE_METATYPE(SurveyQuestion)
