#pragma once

#include "KestrioKit/Core/Session/Animation.h"
#include "KestrioKit/KestrioKitExport.h"
#include "KestrioKit/SurveySession.h"

#include <QPointer>

#include <functional>
#include <memory>

namespace KestrioKit {

/// The course of a survey on a screen: the dimming and the card come in, pages follow each other,
/// and the card goes. It moves nothing itself. It tells a front end where things are, and receives
/// what the visitor does. The session ends with the flow.
///
/// Positions, opacities and progress are from 0 to 1. Use it on the main thread only.
class KESTRIOKIT_EXPORT SurveyFlow final : public QObject {
    Q_OBJECT
    Q_PROPERTY(qreal dimming READ dimming NOTIFY dimmingChanged)
    Q_PROPERTY(qreal cardPosition READ cardPosition NOTIFY cardMoved)
    Q_PROPERTY(qreal keyboardOffset READ keyboardOffset NOTIFY cardMoved)
    Q_PROPERTY(qreal pageOpacity READ pageOpacity NOTIFY pageOpacityChanged)
    Q_PROPERTY(qreal containerOpacity READ containerOpacity NOTIFY containerOpacityChanged)
    Q_PROPERTY(qreal growth READ growth NOTIFY growthChanged)
    Q_PROPERTY(qreal thanksLabel READ thanksLabel NOTIFY thanksLabelChanged)
    Q_PROPERTY(qreal thanksImage READ thanksImage NOTIFY thanksImageChanged)
    Q_PROPERTY(bool answerable READ isAnswerable NOTIFY answerableChanged)
    Q_PROPERTY(bool pageAnswerable READ isPageAnswerable NOTIFY answerableChanged)
    Q_PROPERTY(bool finished READ isFinished NOTIFY pageChanged)
    Q_PROPERTY(SurveyQuestion question READ question NOTIFY pageChanged)
    Q_PROPERTY(int pageCount READ pageCount CONSTANT)
    Q_PROPERTY(int currentPage READ currentPage NOTIFY currentPageChanged)

public:
    /// `isAnimated` returns whether the visitor can see movements and wants them. Otherwise each
    /// movement ends immediately.
    SurveyFlow(std::unique_ptr<SurveySession> session, std::function<bool()> isAnimated);
    /// Closes the session if the survey is still on screen.
    ~SurveyFlow() override;

    /// Returns the session, or null after the survey has ended.
    SurveySession *session() const { return m_session.get(); }

    /// The strength of the dimming.
    qreal dimming() const { return m_dimming; }
    /// The card's way from below the window (0) to its place (1). The entry overshoots.
    qreal cardPosition() const { return m_cardPosition; }
    /// How far the card is raised above the on-screen keyboard, in device-independent pixels.
    qreal keyboardOffset() const { return m_keyboardOffset; }
    /// The opacity of the page, which fades out when the visitor has answered it.
    qreal pageOpacity() const { return m_pageOpacity; }
    /// The opacity of the page's container. It fades in with each page but the first, and the
    /// visitor may answer meanwhile, so that the page also fades out.
    qreal containerOpacity() const { return m_containerOpacity; }
    /// The way from the height of the previous page (0) to that of the current page (1).
    qreal growth() const { return m_growth; }
    /// The way of the thank-you page's text and picture to their full size. Both overshoot.
    qreal thanksLabel() const { return m_thanksLabel; }
    qreal thanksImage() const { return m_thanksImage; }

    /// Returns whether the entry has ended.
    bool hasEntered() const { return m_hasEntered; }
    /// Returns whether the survey accepts input. It does not while it enters, since a visitor who
    /// was typing or clicking then did not mean to answer it, nor while it leaves.
    bool isAnswerable() const { return m_hasEntered && !m_isDismissing; }
    /// Returns whether the page accepts input, too. It does not while it is not visible yet.
    bool isPageAnswerable() const { return isAnswerable() && m_isPageShown; }
    /// Returns whether the page thanks the visitor.
    bool isFinished() const { return m_isFinished; }
    /// Returns the question of the page. It has no text on the thank-you page.
    SurveyQuestion question() const { return m_question; }
    /// Returns the number of questions, and the index of the current one for the dots. While a page
    /// fades out, the index is already that of the next one.
    int pageCount() const { return m_pageCount; }
    int currentPage() const { return m_currentPage; }

    /// Makes the dimming and the card come in. Call it once.
    void begin();
    /// Answers the question of the page, also while the page fades out.
    Q_INVOKABLE void answer(const QVariant &value);
    /// The visitor closes the survey.
    Q_INVOKABLE void close();
    /// The window of the survey has disappeared.
    void windowGone();
    /// The survey became visible to the visitor, or may have. Reports a question as seen once.
    void appear();
    /// The thank-you page has appeared. Makes its text and picture come in, the first time.
    Q_INVOKABLE void thank();
    /// Moves the card to another height above its place.
    void raise(qreal keyboardOffset);
    /// Finishes the session and makes the card and the dimming go. With `animated` it is ignored if
    /// that has already begun. Without, the survey ends immediately.
    void dismiss(bool animated);

Q_SIGNALS:
    void dimmingChanged();
    /// Emitted when the card's position or its keyboard offset has changed.
    void cardMoved();
    void pageOpacityChanged();
    void containerOpacityChanged();
    void growthChanged();
    void thanksLabelChanged();
    void thanksImageChanged();
    void answerableChanged();
    void currentPageChanged();
    /// Emitted when the page is about to be replaced, and when another page has replaced it.
    void pageLeft();
    void pageChanged();
    /// Emitted when the page has become answerable. Assistive technology is told of the page then,
    /// and the focus moves to its first control.
    void pageBegun();
    /// Emitted when another question may have become visible. The front end calls `appear()`.
    void questionPresented();
    /// Emitted when the entry has ended.
    void entered();
    /// Emitted when the dismissal begins, before the survey stops accepting input.
    void leaving();
    /// Emitted when the card is about to slide out. It does not if the survey ends immediately.
    void slidingOut();
    /// Emitted when the survey is to disappear. `session()` is null. The session is destroyed after
    /// the signal.
    void over();

private:
    using Changed = void (SurveyFlow::*)();

    Animation *move(qreal &position, qreal end, Changed changed, const AnimationTiming &timing,
                    std::function<void()> finished = {});
    void setPageShown(bool isPageShown);
    void springIn();
    void leavePage();
    void replacePage();
    void adoptPage();
    void growToPage();
    void showPage();
    void slideOut();
    void dissolve();
    void end();

    std::unique_ptr<SurveySession> m_session;
    std::function<bool()> m_isAnimated;
    qreal m_dimming = 0;
    qreal m_cardPosition = 0;
    qreal m_keyboardOffset = 0;
    qreal m_pageOpacity = 1;
    qreal m_containerOpacity = 1;
    qreal m_growth = 1;
    qreal m_thanksLabel = 0;
    qreal m_thanksImage = 0;
    QPointer<Animation> m_keyboardAnimation;
    SurveyQuestion m_question;
    int m_pageCount;
    int m_currentPage = 0;
    /// Index of the question on the page. While the page fades out, the session is already at the
    /// next question.
    int m_presentedIndex = 0;
    bool m_hasEntered = false;
    bool m_isPageShown = true;
    bool m_isFinished = false;
    bool m_isLeavingPage = false;
    bool m_hasThanked = false;
    bool m_isDismissing = false;
    /// Whether the current question has not been visible yet.
    bool m_isUnseen = true;
};

} // namespace KestrioKit
