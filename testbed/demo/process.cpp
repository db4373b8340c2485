#include "process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <system_error>
#include <thread>

extern char** environ;

namespace zab::demo {
namespace {

constexpr std::chrono::milliseconds kPollStep{20};

}  // namespace

Process::Process(std::vector<std::string> arguments, const std::string& outputPath,
                 const std::string& errorPath) {
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);

    constexpr int kToFile = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, outputPath.c_str(), kToFile, 0644);
    posix_spawn_file_actions_addopen(&files, 2, errorPath.c_str(), kToFile, 0644);
    const int error = posix_spawnp(&pid_, argv[0], &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error) throw std::system_error(error, std::generic_category(), arguments[0]);
}

Process::~Process() {
    if (status_) return;
    kill(pid_, SIGTERM);
    if (wait(std::chrono::seconds(2))) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

std::optional<int> Process::wait(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!status_) {
        int raw = 0;
        const pid_t ended = waitpid(pid_, &raw, WNOHANG);
        if (ended == pid_) status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        if (ended < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
        if (status_ || std::chrono::steady_clock::now() >= end) break;
        std::this_thread::sleep_for(kPollStep);
    }
    return status_;
}

}  // namespace zab::demo
