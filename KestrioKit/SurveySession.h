#pragma once

#include <KestrioKit/KestrioKitExport.h>
#include <KestrioKit/SurveyPalette.h>
#include <KestrioKit/SurveyQuestion.h>
#include <KestrioKit/SurveyTexts.h>

#include <QColor>
#include <QObject>

#include <memory>

namespace KestrioKit {
class SurveySessionPrivate;
}

/// One survey while it is being answered. The session knows the questions and the answers so far,
/// and reports to the service. A host that draws surveys itself gets a session from
/// `Kestrio::startSurvey()`. The library's own screens use the same class.
///
///     if (std::unique_ptr<SurveySession> session = Kestrio::shared().startSurvey()) {
///         show(session->currentQuestion());
///         session->markSeen();
///     }
///
/// The session begins at the first question. Each accepted answer leads to another question or
/// completes the survey. `currentQuestionChanged` is emitted in both cases.
///
/// The survey ends when `finish()` or `close()` is called, when the session is destroyed, or when
/// the application quits. The answers are submitted once, as a queued record. A destroyed session
/// is finished if the survey is complete, and closed otherwise. A session that still exists when
/// the application quits is closed.
///
/// Only one session exists at a time. While it exists, no other survey begins or is shown.
///
/// Use it on the main thread only. The receiver of a session owns it.
class KESTRIOKIT_EXPORT SurveySession final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<SurveyQuestion> questions READ questions CONSTANT)
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY currentQuestionChanged)
    Q_PROPERTY(SurveyQuestion currentQuestion READ currentQuestion NOTIFY currentQuestionChanged)
    Q_PROPERTY(bool complete READ isComplete NOTIFY currentQuestionChanged)
    Q_PROPERTY(bool over READ isOver NOTIFY ended)
    Q_PROPERTY(QString language READ language CONSTANT)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection CONSTANT)
    Q_PROPERTY(SurveyTexts texts READ texts CONSTANT)
    Q_PROPERTY(QColor themeColor READ themeColor CONSTANT)
    Q_PROPERTY(SurveyPalette palette READ palette NOTIFY appearanceChanged)
    Q_DISABLE_COPY_MOVE(SurveySession)

public:
    /// The way in which a survey has ended.
    enum class Outcome {
        /// The answers were submitted, and nothing else was reported.
        Finished,
        /// The survey was reported as closed, and the answers so far were submitted.
        Closed,
    };
    Q_ENUM(Outcome)

    /// Ends the survey if it has not ended yet: finishes it if it is complete, and closes it
    /// otherwise.
    ~SurveySession() override;

    /// Returns all questions, in the order of the survey. Routing may skip some of them.
    QList<SurveyQuestion> questions() const;

    /// Returns the index of the question to show. Any number outside the list means that the survey
    /// is complete.
    int currentIndex() const;

    /// Returns the question to show, or a question without a text if the survey is complete.
    SurveyQuestion currentQuestion() const;

    /// Returns whether no question is left to answer. If so, show a page that thanks the visitor,
    /// then call `finish()`.
    bool isComplete() const;

    /// Returns whether the survey has ended. Answers are refused from then on.
    bool isOver() const;

    /// Returns the language of the questions as a locale name; "en" if the service does not give
    /// one.
    QString language() const;

    /// Returns the writing direction of that language.
    Qt::LayoutDirection layoutDirection() const;

    /// Returns the fixed texts in that language, or in English if the library has no translation.
    SurveyTexts texts() const;

    /// Returns the accent colour from the service's configuration; black by default.
    QColor themeColor() const;

    /// Returns the colours of the appearance that was set when the session began, see
    /// `Kestrio::setAppearance()`. With `SurveyAppearance::system` they follow the application's
    /// palette.
    SurveyPalette palette() const;

    /// Answers the current question and moves to the next one. The answer is
    /// - a text for `Open`, which may be empty;
    /// - a whole number from `firstValue` to `lastValue` for `Likert` and `Nps`;
    /// - a map with one entry for `MultipleChoice`: the option's id, as text, and its value;
    /// - a map for `MultiSelect`, with an entry for each chosen option: its id, as text, and true.
    ///
    /// Returns whether the answer was accepted. Other values are refused, and so is any answer once
    /// the survey is complete or has ended. A refused answer changes nothing.
    Q_INVOKABLE bool answer(const QVariant &value);

    /// Answers the question at `index`, which may be another one than the current one, and moves to
    /// the question that follows it. For screens that still show a page while it fades out. Returns
    /// whether the answer was accepted.
    Q_INVOKABLE bool answer(int index, const QVariant &value);

    /// Records the current time as the time at which the current question was shown, which is
    /// reported with the answer. Call it for every question or for none. If it is never called, the
    /// reported time is the one at which the question became current.
    Q_INVOKABLE void beginQuestion();

    /// Reports that the visitor sees the current question. Call it once each time a question
    /// appears on screen. Does nothing if the survey is complete.
    Q_INVOKABLE void markSeen();

    /// Ends a complete survey and submits its answers. Does nothing if the survey has ended.
    Q_INVOKABLE void finish();

    /// Ends a survey that the visitor closes. Reports it as closed at the current question, and
    /// submits the answers so far. Does nothing if the survey has ended.
    Q_INVOKABLE void close();

Q_SIGNALS:
    /// Emitted when an answer was accepted. The current question is then another one, the same one
    /// if the survey routes back to it, or none if the survey is complete.
    void currentQuestionChanged();

    /// Emitted when the question at `index` was answered, before `currentQuestionChanged`.
    void questionAnswered(int index);

    /// Emitted at the first call of `markSeen()`.
    void shown();

    /// Emitted when the application's palette or font has changed, and with it `palette()`. Only
    /// with `SurveyAppearance::system`.
    void appearanceChanged();

    /// Emitted when the survey has ended. The destructor does not emit this signal, but
    /// `Kestrio::surveyEnded` is emitted then, too.
    void ended(SurveySession::Outcome outcome);

private:
    friend class KestrioKit::SurveySessionPrivate;
    explicit SurveySession(std::unique_ptr<KestrioKit::SurveySessionPrivate> state);

    void tellEnd(Outcome outcome);

    std::unique_ptr<KestrioKit::SurveySessionPrivate> m_state;
};
