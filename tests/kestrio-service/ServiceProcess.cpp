#include "tests/service/ServiceProcess.h"

#include <array>
#include <csignal>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

ServiceProcess::ServiceProcess(const std::vector<std::string> &arguments) {
    spawn(arguments);
    readUntilListening();
    // Goes on reading, lest the program wait for room in the pipe.
    m_reader = std::thread([this] {
        while (readMore()) {
        }
    });
}

ServiceProcess::~ServiceProcess() {
    if (isRunning())
        end(SIGKILL);
}

void ServiceProcess::spawn(const std::vector<std::string> &arguments) {
    std::string program = KESTRIO_SERVICE_PROGRAM;
    std::vector<std::string> words = arguments;
    std::vector<char *> argv{program.data()};
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipe[0]);
    posix_spawn_file_actions_addclose(&actions, pipe[1]);
    const int error =
        posix_spawn(&m_process, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    m_pipe = pipe[0];
    if (error != 0)
        throw std::runtime_error("cannot start " + program);
}

bool ServiceProcess::readMore() {
    std::array<char, 4096> buffer{};
    const ssize_t size = ::read(m_pipe, buffer.data(), buffer.size());
    if (size > 0)
        m_output.append(buffer.data(), static_cast<std::size_t>(size));
    return size > 0;
}

void ServiceProcess::readUntilListening() {
    const std::string announcement = "kestrio-service: listening on http://localhost:";
    while (m_port == 0 && readMore()) {
        const auto found = m_output.find(announcement);
        const auto lineEnd = m_output.find('\n', found);
        if (found != std::string::npos && lineEnd != std::string::npos)
            m_port = std::stoi(m_output.substr(found + announcement.size()));
    }
}

int ServiceProcess::end(int signal) {
    if (signal != 0)
        ::kill(m_process, signal);
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_process = -1;
    m_reader.join();
    ::close(m_pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
