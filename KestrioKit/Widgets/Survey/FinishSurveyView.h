#pragma once

#include <QWidget>

namespace KestrioKit {

class ImageView;
class Label;
class SurveyColors;
class SurveyFlow;

/// The thank-you page: a check mark in a circle above a line of text. They come in when the page is
/// first shown. Use it on the main thread only.
class FinishSurveyView final : public QWidget {
    Q_OBJECT

public:
    /// The survey of `flow` must not have ended. Its owner may destroy `flow` first if it then
    /// destroys the page immediately. `colors` must outlive the page.
    FinishSurveyView(SurveyFlow &flow, const SurveyColors &colors);

protected:
    void showEvent(QShowEvent *event) override;

private:
    SurveyFlow &m_flow;
    ImageView *m_imageView;
    Label *m_label;
};

} // namespace KestrioKit
