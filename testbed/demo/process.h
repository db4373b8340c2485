// Programs that the demo starts; each is ended by its owner.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace zab::demo {

/// A running program. Its standard output and error go to files.
class Process {
  public:
    /// The first argument is looked for in PATH. Throws std::system_error when it cannot be started.
    Process(std::vector<std::string> arguments, const std::string& outputPath, const std::string& errorPath);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();  // ends it when it still runs

    /// The exit status (128 and the signal for one that was killed); nothing when it still runs after `limit`.
    std::optional<int> wait(std::chrono::milliseconds limit);

  private:
    pid_t pid_;
    std::optional<int> status_;
};

}  // namespace zab::demo
