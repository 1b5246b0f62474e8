#pragma once

#include "KestrioKit/SurveyPalette.h"

#include <QObject>

namespace KestrioKit {

/// The palette that a survey's views draw with. Each view keeps a reference to it and reads the
/// colours when it paints. For the main thread.
class SurveyColors final : public QObject {
    Q_OBJECT

public:
    explicit SurveyColors(const SurveyPalette &palette) : m_palette(palette) {}

    const SurveyPalette &palette() const { return m_palette; }
    const SurveyPalette *operator->() const { return &m_palette; }

    /// Takes another palette over. The owner of the views has them painted again.
    void change(const SurveyPalette &palette);

Q_SIGNALS:
    /// The palette, or the host's font, is another.
    void changed();

private:
    SurveyPalette m_palette;
};

} // namespace KestrioKit
