#include "KestrioKit/Core/Platform/HTTP/UploadBody.h"

#include <algorithm>

namespace KestrioKit {

UploadBody::UploadBody(QByteArray body) : m_body(std::move(body)) {
    open(ReadOnly | Unbuffered);
}

qint64 UploadBody::readData(char *data, qint64 maximumSize) {
    if (atEnd())
        return -1;
    const qint64 size = std::min<qint64>(maximumSize, bytesAvailable());
    std::copy_n(m_body.cbegin() + m_position, size, data);
    m_position += size;
    return size;
}

} // namespace KestrioKit
