// zabprobe: what the module's parsers and decisions make of a file, as one JSON document.
//
// Exit status: 0 the input was recognised, 1 it was not (the JSON is still printed), 2 bad usage or an
// unreadable file (one line on standard error, nothing on standard output).

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "zabprobe/command.h"

namespace zabprobe {

std::string Arguments::bytes() const {
    if (file == "-") {
        std::string all(std::istreambuf_iterator<char>(std::cin), {});
        if (std::cin.bad()) throw UnusableInput("standard input cannot be read");
        return all;
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw UnusableInput(file + ": cannot be opened");
    std::string all;
    try {
        stream.exceptions(std::ios::badbit);
        all.assign(std::istreambuf_iterator<char>(stream), {});
    } catch (const std::ios_base::failure&) {
        throw UnusableInput(file + ": cannot be read");
    }
    return all;
}

namespace {

constexpr int kRecognised = 0, kNotRecognised = 1, kUnusable = 2;

void binaryStandardStreams() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

int print(const Answer& answer, bool pretty) {
    if (!answer.raw) {
        std::cout << answer.json.dump(pretty ? 2 : -1, ' ', false, Json::error_handler_t::replace) << '\n';
    } else {
        std::cout.write(answer.raw->data(), static_cast<std::streamsize>(answer.raw->size()));
    }
    return answer.recognised ? kRecognised : kNotRecognised;
}

int fail(const std::string& why) {
    std::cerr << "zabprobe: " << why.substr(0, why.find('\n')) << '\n';
    return kUnusable;
}

CLI::Option* bind(CLI::App& command, const Option& option, std::string& text) {
    return command.add_option(option.name, text, option.help);
}
CLI::Option* bind(CLI::App& command, const Option& option, std::int64_t& number) {
    return command.add_option(option.name, number, option.help)
        ->check(CLI::Range(std::int64_t{0}, option.most));
}
CLI::Option* bind(CLI::App& command, const Option& option, bool& flag) {
    return command.add_flag(option.name, flag, option.help);
}

void addOptions(CLI::App& sub, const Command& command, Arguments& arguments) {
    for (const Option& option : command.options)
        std::visit([&](auto member) { bind(sub, option, arguments.*member)->required(option.required); },
                   option.value);
}

int run(int argc, char** argv) {
    CLI::App app{"What the ZAB module's parsers and decisions make of a file."};
    app.require_subcommand(1);
    app.fallthrough();
    bool pretty = false;
    app.add_flag("--pretty", pretty, "Indent the JSON");
    Arguments arguments;
    const Command* chosen = nullptr;
    for (const auto family : {formatCommands(), siteCommands(), headerCommands(), exchangeCommands(),
                              captureCommands(), dataFileCommands(), pageCommands()}) {
        for (const Command& command : family) {
            CLI::App* sub = app.add_subcommand(command.name, command.help);
            addOptions(*sub, command, arguments);
            sub->callback([&chosen, &command] { chosen = &command; });
        }
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return fail(error.what());
    }
    return print(chosen->run(arguments), pretty);
}

}  // namespace
}  // namespace zabprobe

int main(int argc, char** argv) {
    zabprobe::binaryStandardStreams();
    try {
        return zabprobe::run(argc, argv);
    } catch (const std::exception& error) {
        return zabprobe::fail(error.what());
    }
}
