#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;
class QWindow;

/// A visible view of the host or of a survey.
struct VisibleView {
    /// In the window's coordinates.
    QRect frame;
    /// Whether the centre is inside the window and not scrolled out of sight.
    bool isCentreInView = false;
};

/// A view of a survey, together with the views on it.
struct ViewNode {
    /// Fills in the identifier, the accessible name and the role.
    static ViewNode describing(const QObject &view);

    QString type;
    QString identifier;
    /// In the window's coordinates.
    QRect frame;
    bool isVisible = false;
    /// The opacity, from 0 (invisible) to 1 (opaque).
    qreal alpha = 1;
    QString text;
    QString accessibleName;
    QString role;
    QList<ViewNode> children;
};

/// The host's window and the survey over it, as a user or an automation sees them. Each toolkit
/// implements it once. All functions are for the main thread.
class HostWindow {
public:
    HostWindow() = default;
    virtual ~HostWindow() = default;
    Q_DISABLE_COPY_MOVE(HostWindow)

    virtual void show() = 0;
    /// Asks the system to activate the window.
    virtual void activate() = 0;
    /// Sizes are in device-independent pixels.
    virtual void resize(const QSize &size) = 0;
    virtual QSize size() const = 0;
    virtual bool isActive() const = 0;

    /// Returns the native window, to which input is sent. Requires that the window was shown.
    virtual QWindow &inputWindow() const = 0;
    /// Returns the object over which the library presents surveys.
    virtual QObject *presenter() const = 0;
    virtual QImage picture() const = 0;

    /// Returns the visible view with that accessibility identifier; absent if there is none.
    virtual std::optional<VisibleView> visibleView(const QString &identifier) const = 0;
    /// Returns the identifier of the view with the focus, or its class if it has no identifier.
    /// Absent if no view has the focus.
    virtual std::optional<QString> focusedView() const = 0;

    virtual bool hasSurvey() const = 0;
    /// Returns whether a survey is on screen and no part of it is being animated.
    virtual bool surveyIsStill() const = 0;
    /// Returns the views of the survey on screen; absent if there is none.
    virtual std::optional<ViewNode> survey() const = 0;
};

/// Creates the host's window, which is not visible yet. Returns null if that fails. Qt has then
/// printed the reason.
using HostWindowFactory = std::function<std::unique_ptr<HostWindow>()>;
