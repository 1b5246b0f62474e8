#pragma once

#include <QWidget>

namespace KestrioKit {

class ImageView;
class Label;
class SurveyColors;

/// The thank-you page: a check mark in a circle above a line of text. It animates itself in when it
/// is first shown. Use it on the main thread only.
class FinishSurveyView final : public QWidget {
    Q_OBJECT

public:
    /// `text` is the thank-you message in the survey's language. `colors` must outlive the page.
    FinishSurveyView(const QString &text, const SurveyColors &colors);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void animateIn();

    ImageView *m_imageView;
    Label *m_label;
    /// Whether the page has been shown before. The entry animation runs only once.
    bool m_hasAppeared = false;
};

} // namespace KestrioKit
