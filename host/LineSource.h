#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

/// Where the lines of a script come from. For one thread, which must run an event loop.
class LineSource {
public:
    /// A file, read whole now; or, for "-", standard input, read as it arrives, so that another
    /// program can drive this one. Null when it cannot be read; `error` then says why.
    static std::unique_ptr<LineSource> open(const QString &path, QString &error);
    ~LineSource();
    Q_DISABLE_COPY_MOVE(LineSource)

    /// The next line, without its end; absent while none has arrived, and at the end.
    std::optional<QByteArray> takeLine();

    /// Whether every line has been taken and none will come.
    bool atEnd() const { return m_ended && m_bytes.isEmpty(); }

    /// Has `handler` called from the event loop whenever more lines, or the end, have arrived.
    void setArrivalHandler(std::function<void()> handler) { m_arrived = std::move(handler); }

private:
    LineSource();

    void readArrived();

    QByteArray m_bytes;
    bool m_ended = false;
    std::function<void()> m_arrived;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
