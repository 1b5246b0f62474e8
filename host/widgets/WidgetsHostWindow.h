#pragma once

#include "host/HostWindow.h"
#include "host/window/DemoWindow.h"

/// The shop's window with Qt Widgets.
class WidgetsHostWindow final : public HostWindow {
public:
    void show() override { m_window.show(); }
    void activate() override { m_window.activateWindow(); }
    void resize(const QSize &size) override { m_window.resize(size); }
    QSize size() const override { return m_window.size(); }
    bool isActive() const override { return m_window.isActiveWindow(); }

    QWindow &inputWindow() const override;
    QObject *presenter() const override { return &m_window; }
    QImage picture() const override { return m_window.grab().toImage(); }

    std::optional<VisibleView> visibleView(const QString &identifier) const override;
    std::optional<QString> focusedView() const override;

    bool hasSurvey() const override;
    bool surveyIsStill() const override;
    std::optional<ViewNode> survey() const override;

private:
    // Looking at a widget, as at its picture, takes one that is not constant.
    mutable DemoWindow m_window;
};
