// zab_bench: runs the rows, or with --write-inputs=DIR writes their inputs (at n) for the peers to read.
//
// Counters of each row: the input's bytes, the allocations of one run, and the most memory that it held.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>

#include "bench/bench.h"

namespace {

struct Memory {
    std::size_t allocations = 0, held = 0, peak = 0;
};
Memory memory;

void* counted(void* block) noexcept {
    if (block == nullptr) return block;
    ++memory.allocations;
    memory.held += malloc_usable_size(block);
    memory.peak = std::max(memory.peak, memory.held);
    return block;
}

void uncounted(void* block) noexcept {
    if (block != nullptr) memory.held -= malloc_usable_size(block);
    std::free(block);
}

/// A byte that the body does not hold, so that memchr goes through all of it.
int absentByte(const std::string& body) {
    int byte = 0;
    while (byte < 255 && body.find(static_cast<char>(byte)) != std::string::npos) ++byte;
    return byte;
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

void registerCase(const zabbench::Case& row) {
    const std::string name = std::string(row.parser) + '/' + row.input;
    for (const std::size_t factor : {1, 2}) {
        const auto body = std::make_shared<std::string>();
        benchmark::RegisterBenchmark((name + '/' + std::to_string(factor)).c_str(),
                                     [&row, factor, body](auto& state) {
                                         if (body->empty()) *body = row.make(row.n * factor);
                                         measure(state, *body, row.bind(*body));
                                     });
        if (factor == 2) continue;
        benchmark::RegisterBenchmark((name + "/floor").c_str(), [body](auto& state) {
            const int absent = absentByte(*body);
            measure(state, *body, [&body = *body, absent] {
                benchmark::DoNotOptimize(std::memchr(body.data(), absent, body.size()));
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

void* operator new(std::size_t size) {
    if (void* block = counted(std::malloc(size))) return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted(std::malloc(size)); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return counted(std::malloc(size)); }
void operator delete(void* block) noexcept { uncounted(block); }
void operator delete(void* block, std::size_t) noexcept { uncounted(block); }

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
