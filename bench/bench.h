// A benchmark is a row: a parser, an input that is made from its size, and what is measured on it.
//
//     const zabbench::Case media("hls", "media playlist", makeMedia, 24'000, [](const std::string& body) {
//         return [&body] { zab::CM3UParser().parse(body); };
//     });
//
// Each row is measured at n and at 2n, beside its floor: one memchr over the same bytes. report.mjs turns the
// times into ratios. Inputs are the same in every run.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zabbench {

struct Case {
    using Make = std::string (*)(std::size_t n);
    /// Prepares what is not measured (a conversion) and returns what is. The body outlives the result.
    using Bind = std::function<void()> (*)(const std::string& body);

    Case(const char* parser, const char* input, Make make, std::size_t n, Bind bind);

    const char* parser;
    const char* input;
    Make make;
    std::size_t n;
    Bind bind;
};

inline std::vector<const Case*>& cases() {
    static std::vector<const Case*> all;
    return all;
}

inline Case::Case(const char* parser_, const char* input_, Make make_, std::size_t n_, Bind bind_)
    : parser(parser_), input(input_), make(make_), n(n_), bind(bind_) {
    cases().push_back(this);
}

/// `piece` n times, each "%" in it replaced by the number of the repetition.
inline std::string repeated(std::string_view piece, std::size_t n) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i)
        for (const char c : piece) c == '%' ? text += std::to_string(i) : text += c;
    return text;
}

}  // namespace zabbench
