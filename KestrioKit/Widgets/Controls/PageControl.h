#pragma once

#include "KestrioKit/SurveyTexts.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

/// Shows a dot for each page, with the current page in the accent colour. If there is no space for
/// all dots, it shows those around the current page. A smaller dot at an end means that more pages
/// follow there. Use it on the main thread only.
class PageControl final : public QWidget {
    Q_OBJECT

public:
    /// The first page is current at first. `colors` must outlive the control.
    PageControl(int numberOfPages, SurveyTexts texts, const SurveyColors &colors);

    /// Returns the number of pages.
    int numberOfPages() const { return m_numberOfPages; }
    /// Returns the index of the current page, starting at 0.
    int currentPage() const { return m_currentPage; }
    /// Sets the current page. An index outside the range is replaced by the nearest valid one.
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
