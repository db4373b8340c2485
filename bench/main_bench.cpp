// zab_bench: runs the rows, or with --write-inputs=DIR writes their inputs (at n) for the peers to read.
//
// Counters of each row: the input's bytes, the allocations of one run, and the most memory that it held.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <memory>

#include "bench/bench.h"
#include "bench/memory.h"

namespace {

using zabbench::memory;

/// The byte that the body holds least often, or not at all: memchr for it goes through all of the body.
int rarestByte(const std::string& body) {
    std::array<std::size_t, 256> counts{};
    for (const char c : body) ++counts[static_cast<unsigned char>(c)];
    return static_cast<int>(std::min_element(counts.begin(), counts.end()) - counts.begin());
}

/// One pass of memchr over the whole body.
std::size_t floorOf(const std::string& body, int byte) {
    std::size_t found = 0;
    const char* const end = body.data() + body.size();
    for (const char* at = body.data(); at != end; ++found, ++at) {
        at = static_cast<const char*>(std::memchr(at, byte, static_cast<std::size_t>(end - at)));
        if (at == nullptr) break;
    }
    return found;
}

void measure(benchmark::State& state, const std::string& body, const std::function<void()>& run) {
    memory.allocations = 0;
    memory.peak = memory.held;
    const std::size_t before = memory.held;
    run();
    state.counters["bytes"] = static_cast<double>(body.size());
    state.counters["allocations"] = static_cast<double>(memory.allocations);
    state.counters["peak"] = static_cast<double>(memory.peak - before);
    for (auto _ : state) run();
}

void makeOnce(std::string& body, const zabbench::Case& row, std::size_t factor) {
    if (body.empty()) body = row.make(row.n * factor);
}

void registerCase(const zabbench::Case& row) {
    const std::string name = std::string(row.parser) + '/' + row.input;
    for (const std::size_t factor : {1, 2}) {
        const auto body = std::make_shared<std::string>();
        benchmark::RegisterBenchmark((name + '/' + std::to_string(factor)).c_str(),
                                     [&row, factor, body](auto& state) {
                                         makeOnce(*body, row, factor);
                                         measure(state, *body, row.bind(*body));
                                     });
        if (factor == 2) continue;
        benchmark::RegisterBenchmark((name + "/floor").c_str(), [&row, body](auto& state) {
            makeOnce(*body, row, 1);
            measure(state, *body, [&body = *body, rarest = rarestByte(*body)] {
                benchmark::DoNotOptimize(floorOf(body, rarest));
            });
        });
    }
}

int writeInputs(const std::string& folder) {
    for (const zabbench::Case* row : zabbench::cases()) {
        std::ofstream file(folder + '/' + row->parser + ' ' + row->input, std::ios::binary);
        if (!(file << row->make(row->n))) return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    // Memory that one run gives back serves the next: what is measured is the parser, not the kernel's pages.
    constexpr int kKept = 1 << 30;
    mallopt(M_MMAP_THRESHOLD, kKept);
    mallopt(M_TRIM_THRESHOLD, kKept);
    constexpr std::string_view kWriteInputs = "--write-inputs=";
    if (argc == 2 && std::string_view(argv[1]).starts_with(kWriteInputs))
        return writeInputs(argv[1] + kWriteInputs.size());
    for (const zabbench::Case* row : zabbench::cases()) registerCase(*row);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
}
