// A command of zabprobe is a row: its name, its options, and a function that asks the module's own code.
//
// main() finds the row, reads the options, prints the JSON and turns `recognised` into the exit status. A
// function throws UnusableInput for what cannot be read or makes no sense; that is one line on standard error
// and status 2.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace zabprobe {

using Json = nlohmann::ordered_json;

struct UnusableInput : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The options of all commands; a row's `options` binds those that it takes.
struct Arguments {
    std::string file = "-";          // "-": standard input
    std::vector<std::string> words;  // positional texts of commands that read no file
    std::string extensions, exceptions, list, url, contentType;
    std::int64_t itag = 0, length = 0, chunk = 0;
    bool request = false, encipher = false, explain = false, page = false, videoInfo = false;
    bool adaptive = false, skipFlv = false, webm = false;
    bool noIntegration = false, preventKey = false, forceKey = false;

    /// The whole input file. Throws UnusableInput.
    [[nodiscard]] std::string bytes() const;
};

struct Answer {
    bool recognised = false;  // false: exit status 1
    Json json;
    std::optional<std::string> raw = {};  // written as it is in place of the JSON
};

struct Command {
    const char* name;
    const char* help;
    void (*options)(CLI::App& command, Arguments& arguments);
    Answer (*run)(const Arguments& arguments);
};

/// For rows whose only argument is the input file.
void takesFile(CLI::App& command, Arguments& arguments);

// Each family of commands stands in a file of its own and lists its rows.
std::span<const Command> formatCommands();    // media formats
std::span<const Command> headerCommands();    // headers and addresses
std::span<const Command> exchangeCommands();  // whole exchanges
std::span<const Command> captureCommands();   // the media that a body offers
std::span<const Command> siteCommands();      // YouTube, Facebook, Vimeo
std::span<const Command> dataFileCommands();
std::span<const Command> pageCommands();  // whole pages

}  // namespace zabprobe
