#include "tests/support/ServerAnswer.h"

namespace KestrioKit {

QByteArray ServerAnswer::head() const {
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n";
    bool hasLength = false;
    for (const HTTPHeader &header : headers) {
        hasLength = hasLength || header.name == "Content-Length";
        text += header.name + ": " + header.value + "\r\n";
    }
    if (!hasLength)
        text += "Content-Length: " + QByteArray::number(body.size() * bodies) + "\r\n";
    return text + "\r\n";
}

} // namespace KestrioKit
