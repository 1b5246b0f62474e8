#pragma once

#include "KestrioKit/SurveyPalette.h"

#include <QObject>

namespace KestrioKit {

/// Holds the palette of a survey's views. Each view keeps a reference to this object and reads the
/// colours when it paints. Use it on the main thread only.
class SurveyColors final : public QObject {
    Q_OBJECT

public:
    explicit SurveyColors(const SurveyPalette &palette) : m_palette(palette) {}

    /// Returns the current palette. The reference shows later changes, too.
    const SurveyPalette &palette() const { return m_palette; }
    /// Gives direct access to the colours of the current palette.
    const SurveyPalette *operator->() const { return &m_palette; }

    /// Replaces the palette and emits `changed()`. The owner of the views must repaint them.
    void change(const SurveyPalette &palette);

Q_SIGNALS:
    /// Emitted when the palette or the host's font may have changed.
    void changed();

private:
    SurveyPalette m_palette;
};

} // namespace KestrioKit
