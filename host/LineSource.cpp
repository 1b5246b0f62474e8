#include "host/LineSource.h"

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t chunkSize = 4096;

} // namespace

LineSource::LineSource() = default;

LineSource::~LineSource() = default;

std::unique_ptr<LineSource> LineSource::open(const QString &path, QString &error) {
    std::unique_ptr<LineSource> source(new LineSource);
    if (path == "-"_L1) {
        source->m_notifier = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(source->m_notifier.get(), &QSocketNotifier::activated,
                         source->m_notifier.get(),
                         [source = source.get()] { source->readArrived(); });
        return source;
    }
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        source->m_bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        error = file.errorString();
        return nullptr;
    }
    source->m_ended = true;
    return source;
}

std::optional<QByteArray> LineSource::takeLine() {
    const qsizetype lineEnd = m_bytes.indexOf('\n');
    if (lineEnd < 0 && (!m_ended || m_bytes.isEmpty()))
        return std::nullopt;
    const QByteArray line = m_bytes.left(lineEnd);
    m_bytes.remove(0, lineEnd < 0 ? m_bytes.size() : lineEnd + 1);
    return line;
}

void LineSource::readArrived() {
    std::array<char, chunkSize> chunk{};
    const ssize_t size = ::read(STDIN_FILENO, chunk.data(), chunk.size());
    if (size < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size > 0) {
        m_bytes.append(chunk.data(), qsizetype(size));
    } else {
        m_ended = true;
        m_notifier->setEnabled(false);
    }
    m_arrived();
}
