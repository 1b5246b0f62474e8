#pragma once

#include <QByteArray>
#include <QIODevice>

namespace KestrioKit {

/// A request's body as a stream that can be read only once. Qt automatically sends a request again
/// if the connection closes before the response begins. This body cannot be rewound, so the request
/// fails instead of being sent twice.
class UploadBody final : public QIODevice {
public:
    explicit UploadBody(QByteArray body);

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return m_position == m_body.size(); }
    qint64 bytesAvailable() const override { return m_body.size() - m_position; }

protected:
    qint64 readData(char *data, qint64 maximumSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_body;
    qsizetype m_position = 0;
};

} // namespace KestrioKit
