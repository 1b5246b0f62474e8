#pragma once

#include "KestrioKit/SurveyTexts.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// A dot for each page, with that of the current one in another colour. Where there is no room for
/// all, those around the current one, the outermost smaller where more follow.
class PageControl final : public QWidget {
    Q_OBJECT

public:
    /// `colors` outlives it.
    PageControl(int numberOfPages, SurveyTexts texts, const SurveyColors &colors);

    int numberOfPages() const { return m_numberOfPages; }
    int currentPage() const { return m_currentPage; }
    /// The nearest page that there is.
    void setCurrentPage(int page);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();

    int m_numberOfPages;
    SurveyTexts m_texts;
    int m_currentPage = 0;
    const SurveyColors &m_colors;
};

} // namespace KestrioKit
