#pragma once

#include "KestrioKit/Core/Session/AnimationTiming.h"
#include "KestrioKit/KestrioKitExport.h"

#include <QPointer>
#include <QVariantAnimation>

#include <functional>

namespace KestrioKit {

/// Animates something from one state to another. `start()` calls `apply` with 0 immediately, even
/// if there is a delay. `apply` is then called with the progress, at last with 1, followed by
/// `finished`.
///
/// Deleting the animation earlier stops it, and no callback is called any more. Use it on the main
/// thread only.
class KESTRIOKIT_EXPORT Animation final : public QVariantAnimation {
    Q_OBJECT

public:
    /// Shows the state at `way`, the progress from 0 (start) to 1 (end).
    using Apply = std::function<void(qreal way)>;

    /// Starts an animation that `owner` owns. Returns it, or null if it has already ended. It
    /// deletes itself at its end. Without `isAnimated`, calls `apply(1)` and `finished` before it
    /// returns.
    static Animation *start(QObject *owner, bool isAnimated, const AnimationTiming &timing,
                            Apply apply, std::function<void()> finished = {});

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    Animation(QObject *owner, const AnimationTiming &timing, Apply apply);

    AnimationTiming m_timing;
    Apply m_apply;
};

} // namespace KestrioKit
