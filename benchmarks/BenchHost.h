#pragma once

#include <QApplication>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QWidget>

#include <functional>
#include <optional>

/// The part that hosts with and without the library share: an application, a window on screen and,
/// if the second argument is "online", a request by its own network manager. Results are written to
/// standard output as one line of JSON.
class BenchHost {
public:
    BenchHost(int &argc, char **argv);

    /// Returns the first argument, which selects what the host does.
    static QString mode();
    /// Returns the second argument.
    static QString detail();

    /// Runs `block`, reports its duration in microseconds and ends the host.
    static void reportTimeOf(const std::function<void()> &block);
    /// Reports the host's private memory and number of threads, once Qt's host name look-ups have
    /// ended. If the second argument is "minute", also reports how often its threads wake up in the
    /// next minute.
    static void reportWhenIdle();
    /// Reports the time of the machine's monotonic clock in milliseconds, and quits.
    static void quit();

    static int run();

private:
    void makeRequest();

    QApplication m_application;
    std::optional<QNetworkAccessManager> m_manager;
    QWidget m_window;
};
