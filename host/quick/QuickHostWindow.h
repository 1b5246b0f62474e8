#pragma once

#include "host/HostWindow.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

/// The shop's window with Qt Quick.
class QuickHostWindow final : public HostWindow {
public:
    /// A `HostWindowFactory`.
    static std::unique_ptr<HostWindow> create();

    void show() override;
    void activate() override { m_window->requestActivate(); }
    void resize(const QSize &size) override { m_window->resize(size); }
    QSize size() const override { return m_window->size(); }
    bool isActive() const override { return m_window->isActive(); }

    QWindow &inputWindow() const override { return *m_window; }
    QObject *presenter() const override { return m_window; }
    QImage picture() const override { return m_window->grabWindow(); }

    std::optional<VisibleView> visibleView(const QString &identifier) const override;
    std::optional<QString> focusedView() const override;

    bool hasSurvey() const override;
    bool surveyIsStill() const override;
    std::optional<ViewNode> survey() const override;

private:
    QuickHostWindow();

    QQmlApplicationEngine m_engine;
    /// Owned by the engine.
    QQuickWindow *m_window = nullptr;
};
