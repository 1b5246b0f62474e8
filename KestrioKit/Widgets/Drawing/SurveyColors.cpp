#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

namespace KestrioKit {

void SurveyColors::change(const SurveyPalette &palette) {
    m_palette = palette;
    Q_EMIT changed();
}

} // namespace KestrioKit
