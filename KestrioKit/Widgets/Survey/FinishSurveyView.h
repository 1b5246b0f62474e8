#pragma once

#include <QWidget>

namespace KestrioKit {

class ImageView;
class Label;
class SurveyColors;

/// The page that thanks: a check mark in a circle, and a line. It moves itself in when it is first
/// shown. For the main thread.
class FinishSurveyView final : public QWidget {
    Q_OBJECT

public:
    /// `colors` outlives the page.
    FinishSurveyView(const QString &text, const SurveyColors &colors);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void animateIn();

    ImageView *m_imageView;
    Label *m_label;
    bool m_hasAppeared = false;
};

} // namespace KestrioKit
