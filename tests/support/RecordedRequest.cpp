#include "tests/support/RecordedRequest.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

std::optional<QByteArray> RecordedRequest::header(const QByteArray &name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&](const HTTPHeader &header) {
        return header.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

std::optional<RecordedRequest> takeRequest(QByteArray &bytes) {
    constexpr QByteArrayView headEnd("\r\n\r\n");
    const qsizetype headSize = bytes.indexOf(headEnd);
    if (headSize < 0)
        return std::nullopt;
    RecordedRequest request;
    QList<QByteArray> lines = bytes.first(headSize).replace('\r', ""_ba).split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append({line.first(colon), line.sliced(colon + 1).trimmed()});
    }
    const qsizetype bodyStart = headSize + headEnd.size();
    const qsizetype bodySize = request.header("Content-Length"_ba).value_or("0"_ba).toLongLong();
    if (bytes.size() < bodyStart + bodySize)
        return std::nullopt;
    request.body = bytes.sliced(bodyStart, bodySize);
    bytes.remove(0, bodyStart + bodySize);
    return request;
}

} // namespace KestrioKit
