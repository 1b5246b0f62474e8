#include "KestrioKit/Core/Session/AccessibleTexts.h"

#include <QStringList>

namespace KestrioKit {

using namespace Qt::StringLiterals;

QString radioDescription(const SurveyTexts &texts, qsizetype position, qsizetype count,
                         const QString &firstLabel, const QString &lastLabel) {
    QStringList parts{position == 1 ? firstLabel : QString(),
                      position == count ? lastLabel : QString(), texts.position(position, count)};
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

} // namespace KestrioKit
