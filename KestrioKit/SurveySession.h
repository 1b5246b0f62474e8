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

/// One survey while it is being answered: its questions, the answers so far, and what is reported
/// to the service. A host that draws surveys itself gets a session from `Kestrio::startSurvey()`;
/// the library's own screens use the same class.
///
///     if (std::unique_ptr<SurveySession> session = Kestrio::shared().startSurvey()) {
///         show(session->currentQuestion());
///         session->markSeen();
///     }
///
/// The session begins at the first question. Each accepted answer leads to another question, or
/// completes the survey; `currentQuestionChanged` is emitted either way. The survey ends when
/// `finish()` or `close()` is called, when the session is destroyed, and when the application
/// quits. Whichever comes first, the answers are submitted once, with the library's guarantees for
/// queued records. A session that is destroyed is finished if the survey is complete, and closed
/// otherwise. One that is still there when the application quits is closed.
///
/// There is one session at a time: while it exists, no other survey starts or is shown.
///
/// For the main thread. Whoever gets a session owns it.
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
    /// How a survey ended.
    enum class Outcome {
        /// Its answers were submitted, and nothing else was reported.
        Finished,
        /// It was reported closed, and what had been answered was submitted.
        Closed,
    };
    Q_ENUM(Outcome)

    ~SurveySession() override;

    /// All questions, in the order of the survey. Routing may skip some of them.
    QList<SurveyQuestion> questions() const;

    /// The index of the question to show. Any number outside of the list says that the survey is
    /// complete.
    int currentIndex() const;

    /// The question to show; a question without a text when the survey is complete.
    SurveyQuestion currentQuestion() const;

    /// Whether there is nothing left to answer. Show a page of thanks, then call `finish()`.
    bool isComplete() const;

    /// Whether the survey has ended. Answers are refused from then on.
    bool isOver() const;

    /// The language of the questions, as a locale's name: "en" when the service names none.
    QString language() const;

    /// The direction in which that language is written.
    Qt::LayoutDirection layoutDirection() const;

    /// The fixed texts in that language; English where the library has none for it.
    SurveyTexts texts() const;

    /// The colour that the service's configuration sets for surveys; black by default.
    QColor themeColor() const;

    /// The colours of the appearance that was set when the session began, see
    /// `Kestrio::setAppearance()`. With `SurveyAppearance::system` they follow the application's.
    SurveyPalette palette() const;

    /// Answers the current question and goes on to the next one. The answer is
    /// - a text for `Open`, which may be empty;
    /// - a whole number from `firstValue` to `lastValue` for `Likert` and `Nps`;
    /// - a map with one entry for `MultipleChoice`: the option's id, as text, and its value;
    /// - a map for `MultiSelect`, with an entry for each chosen option: its id, as text, and true.
    ///
    /// Returns whether the answer was accepted. Other values are refused, and so is any answer once
    /// the survey is complete or over; a refused answer changes nothing.
    Q_INVOKABLE bool answer(const QVariant &value);

    /// Answers the question at `index`, which need not be the current one, and goes on to the
    /// question that follows it. For screens that still show a page while it fades out.
    Q_INVOKABLE bool answer(int index, const QVariant &value);

    /// Notes that the page of the current question has been made: the service gets this time as the
    /// one at which the question was shown. Without this call it gets the time at which the
    /// question became the current one.
    Q_INVOKABLE void beginQuestion();

    /// Reports that the visitor sees the current question. Call it when a question is on screen,
    /// once each time. Nothing is reported when the survey is complete.
    Q_INVOKABLE void markSeen();

    /// Ends a survey that is complete: submits its answers. Nothing when the survey is over.
    Q_INVOKABLE void finish();

    /// Ends a survey that the visitor closes: reports it closed at the current question, and
    /// submits what was answered. Nothing when the survey is over.
    Q_INVOKABLE void close();

Q_SIGNALS:
    /// An answer was accepted. The current question is another one, the same one again where the
    /// survey routes back to it, or none, which completes the survey.
    void currentQuestionChanged();

    /// The question at `index` was answered. Comes before `currentQuestionChanged`.
    void questionAnswered(int index);

    /// The first question has been seen.
    void shown();

    /// The application's palette or font has changed, and `palette()` with it. Emitted only with
    /// `SurveyAppearance::system`.
    void appearanceChanged();

    /// The survey is over. The destructor does not emit this signal; `Kestrio::surveyEnded` comes
    /// then, too.
    void ended(SurveySession::Outcome outcome);

private:
    friend class KestrioKit::SurveySessionPrivate;
    explicit SurveySession(std::unique_ptr<KestrioKit::SurveySessionPrivate> state);

    void tellEnd(Outcome outcome);

    std::unique_ptr<KestrioKit::SurveySessionPrivate> m_state;
};
