#include "KestrioKit/Core/Platform/JSON/DecodingError.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

Error DecodingError::toError() const {
    const QString where = path.isEmpty() ? QString() : u" (at \"%1\")"_s.arg(path);
    return {decodingErrorDomain, int(reason),
            u"The data couldn’t be read: "_s + description + where + u'.'};
}

void DecodingError::enterKey(QLatin1StringView key) {
    enterKey(QString(key));
}

void DecodingError::enterKey(const QString &key) {
    const bool joined = path.isEmpty() || path.startsWith(u'[');
    path.prepend(joined ? key : key + u'.');
}

void DecodingError::enterIndex(qsizetype index) {
    const bool joined = path.isEmpty() || path.startsWith(u'[');
    path.prepend(u"[%1]"_s.arg(index) + (joined ? QString() : u"."_s));
}

} // namespace KestrioKit
