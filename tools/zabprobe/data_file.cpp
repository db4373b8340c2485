#include "settings/data_file.h"

#include "binding/utf.h"
#include "zabprobe/command.h"

namespace zabprobe {
namespace {

constexpr Option kOptions[] = {
    kFile,
    {"--encipher", "Write the enciphered bytes of a plain file instead", &Arguments::encipher},
};

Answer runDataFile(const Arguments& arguments) {
    const std::string bytes = arguments.bytes();
    std::string result =
        zab::applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    if (arguments.encipher) return {true, {}, std::move(result)};
    return {true, {{"text", zab::wellFormedUtf8(result)}}};
}

constexpr Command kCommands[] = {
    {"datafile", "The plain contents of an enciphered data file", kOptions, runDataFile},
};

}  // namespace

std::span<const Command> dataFileCommands() { return kCommands; }

}  // namespace zabprobe
