#pragma once

#include <QApplication>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QWidget>

#include <functional>
#include <optional>

/// What every host does, with the library or without: an application, a window on screen and, with
/// "online" as its second argument, a request by a network manager of its own. What it measures
/// goes to standard output as one line of JSON.
class BenchHost {
public:
    BenchHost(int &argc, char **argv);

    /// What it is to do: the first argument.
    QString mode() const;
    /// The argument after it.
    QString detail() const;

    /// Reports how long `block` takes, in microseconds, and ends.
    static void reportTimeOf(const std::function<void()> &block);
    /// Reports its private memory and its threads once Qt's look-ups of host names have ended.
    static void reportWhenIdle();
    /// Reports the time on the machine's monotonic clock, in milliseconds, and quits.
    static void quit();

    static int run();

private:
    void makeRequest();

    QApplication m_application;
    std::optional<QNetworkAccessManager> m_manager;
    QWidget m_window;
};
