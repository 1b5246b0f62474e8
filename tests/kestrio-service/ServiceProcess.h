#pragma once

#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

/// kestrio-service as a process of its own. Ends with the object at the latest.
class ServiceProcess {
public:
    /// Starts the program and waits until it listens or has ended.
    explicit ServiceProcess(const std::vector<std::string> &arguments);
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess &) = delete;
    ServiceProcess &operator=(const ServiceProcess &) = delete;

    /// 0 when the program ended instead of listening.
    int port() const { return m_port; }

    bool isRunning() const { return m_process != -1; }

    /// Sends the signal, unless 0, waits for the end and gives the exit code; -1 when the program
    /// did not exit by itself.
    int end(int signal);

    /// What it wrote to standard output and standard error; complete after `end`.
    const std::string &output() const { return m_output; }

private:
    void spawn(const std::vector<std::string> &arguments);
    bool readMore();
    void readUntilListening();

    pid_t m_process = -1;
    int m_pipe = -1;
    int m_port = 0;
    std::string m_output;
    std::thread m_reader;
};
