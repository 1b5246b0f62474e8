#pragma once

#include <QByteArray>
#include <QIODevice>

namespace KestrioKit {

/// A request's body as a stream that can be read once. Qt sends a request again by itself when the
/// connection closes before the answer begins; since this body cannot be rewound, it fails instead.
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
