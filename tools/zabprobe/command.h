// A command of zabprobe is a row: its name, its options, which are rows too, and a function that asks the
// module's own code.
//
// main() finds the row, reads the options, prints the JSON and turns `recognised` into the exit status. A
// function throws UnusableInput for what cannot be read or makes no sense; that is one line on standard error
// and status 2.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <variant>

namespace zabprobe {

using Json = nlohmann::ordered_json;

struct UnusableInput : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What the options of all commands tell.
struct Arguments {
    std::string file = "-";        // "-": standard input
    std::string text, secondText;  // of commands that read no file
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

struct Option {
    const char* name;  // one without dashes stands for itself
    const char* help;
    std::variant<std::string Arguments::*, std::int64_t Arguments::*, bool Arguments::*> value;
    bool required = false;
    std::int64_t most = INT64_MAX;  // of a number; the least is 0
};

struct Command {
    const char* name;
    const char* help;
    std::span<const Option> options;
    Answer (*run)(const Arguments& arguments);
};

inline constexpr bool kRequired = true;

inline constexpr Option kFile{"FILE", "The file to read; \"-\" or nothing: standard input", &Arguments::file};
inline constexpr Option kExtensions{"--extensions", "The extensions to catch, separated by blanks",
                                    &Arguments::extensions};
/// Of rows whose only argument is the input file.
inline constexpr Option kFileAlone[] = {kFile};

// Each family of commands stands in a file of its own and lists its rows.
std::span<const Command> formatCommands();    // media formats
std::span<const Command> headerCommands();    // headers and addresses
std::span<const Command> exchangeCommands();  // whole exchanges
std::span<const Command> captureCommands();   // the media that a body offers
std::span<const Command> siteCommands();      // YouTube, Facebook, Vimeo
std::span<const Command> dataFileCommands();
std::span<const Command> pageCommands();  // whole pages

}  // namespace zabprobe
