#pragma once

#include "KestrioKit/Core/Platform/LanguageBundle.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Service/KestrioSurveyResponder.h"
#include "KestrioKit/Widgets/Overlay/KeyboardObserver.h"
#include "KestrioKit/Widgets/Overlay/ModalOverlay.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <memory>

namespace KestrioKit {

class Animation;
class BackgroundView;

/// Holds the survey that is to be shown.
class SurveyViewControllerDelegate {
public:
    virtual ~SurveyViewControllerDelegate() = default;

    virtual std::optional<Survey> survey() const = 0;
    /// Called without a survey once one has been shown and is gone.
    virtual void setSurvey(std::optional<Survey> survey) = 0;
};

/// The language that a survey is shown in: its locale, or English without one.
QString languageOf(const Survey &survey);

/// A survey on screen: dims a window, slides a card in over it, records the answers, and says which
/// question comes next. Keys and taps count from the end of that entry on. What was answered is
/// submitted once, however the survey ends: dismissed, by the end of its window, or of the
/// application. Unless it has been completed, it is reported closed, too. For the main thread.
class SurveyViewController final : public ModalOverlay, public SurveyViewDelegate {
    Q_OBJECT

public:
    /// Without a `submitter` nothing is reported. `clock` must outlive the controller.
    SurveyViewController(Survey survey, const QColor &themeColor,
                         std::shared_ptr<KestrioSurveyResponder> submitter, const Clock &clock);
    ~SurveyViewController() override;

    /// The one that is on screen; null when none is.
    static SurveyViewController *presented();

    void setDelegate(std::weak_ptr<SurveyViewControllerDelegate> delegate);

    /// Comes up over the window of `from`, which must be shown, and belongs to that window from
    /// now on. Deletes itself when it has gone. To be called once.
    void present(QWidget *from);

    /// Submits the answers and goes. Animated, after the entry: nothing more when it is going
    /// already. Not animated: immediately, whatever is under way.
    void dismiss(bool animated);

    void surveyViewDidPresentQuestion(qint64 index) override;
    std::optional<qint64>
    surveyViewDidFinishQuestion(qint64 index, const std::optional<CodableDynamicType> &response,
                                double seenAt) override;
    void surveyViewDidFinish() override;
    void userInitiatedClose(qint64 index) override;

protected:
    void layOut() override;
    void keyPressed(const QKeyEvent &event) override;
    void windowGone() override;
    void visibilityChanged() override;
    void focusMoved(QWidget *view) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void loadView();
    void setAnswerable(bool isAnswerable);
    void animateEntry();
    void springIn();
    void entryEnded();
    void abandon();
    void keyboardChanged();
    std::optional<qint64> questionId(qint64 index) const;
    int bottomOffset() const;
    void slideCardOut();
    void dissolve();
    void end();
    void tellEnd();
    void submit();

    Survey m_survey;
    AnyLanguageBundle::Hold m_language;
    std::shared_ptr<KestrioSurveyResponder> m_submitter;
    const Clock &m_clock;
    std::weak_ptr<SurveyViewControllerDelegate> m_delegate;
    ApplicationLifecycle::Observation m_willTerminateObserver;
    KeyboardObserver m_keyboardObserver;
    BackgroundView *m_backgroundView;
    SurveyView *m_surveyView;
    /// Where the card is on its way from below the window, 0, to its place, 1.
    qreal m_cardPosition = 0;
    /// By how much the keyboard has lifted it.
    qreal m_keyboardOffset = 0;
    QPointer<Animation> m_keyboardAnimation;
    /// The question on the card while the window does not show it.
    std::optional<qint64> m_unseen;
    /// From the end of the entry on.
    bool m_isAnswerable = false;
    bool m_isDismissing = false;
};

} // namespace KestrioKit
