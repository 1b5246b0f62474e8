#pragma once

#include <QObject>

namespace KestrioKit {

/// Whether the visitor wants less motion. Qt Quick does not know the platform's preference, so a
/// host tells it. Used on the main thread.
class MotionPreference final : public QObject {
    Q_OBJECT

public:
    /// Returns the preference of the process, which is never destroyed.
    static MotionPreference &shared();

    /// False by default.
    bool isReduced() const { return m_isReduced; }
    void setReduced(bool isReduced);

Q_SIGNALS:
    void changed();

private:
    bool m_isReduced = false;
};

} // namespace KestrioKit
