#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

/// The source of a script's lines. Use it on one thread only, which must run an event loop.
class LineSource {
public:
    /// Opens a file and reads it completely. The path "-" stands for standard input, which is read
    /// as data arrives, so that another program can control this one. Returns null if the source
    /// cannot be read; `error` then holds the reason.
    static std::unique_ptr<LineSource> open(const QString &path, QString &error);
    ~LineSource();
    Q_DISABLE_COPY_MOVE(LineSource)

    /// Removes and returns the next line without its end. Absent if no complete line has arrived,
    /// and at the end.
    std::optional<QByteArray> takeLine();

    /// Returns whether all lines have been taken and no more will arrive.
    bool atEnd() const { return m_ended && m_bytes.isEmpty(); }

    /// Sets the handler that is called from the event loop when more lines, or the end, have
    /// arrived.
    void setArrivalHandler(std::function<void()> handler) { m_arrived = std::move(handler); }

private:
    LineSource();

    void readArrived();

    QByteArray m_bytes;
    bool m_ended = false;
    std::function<void()> m_arrived;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
