// Addresses in scripts and in the JSON data that they carry.
//
// A script is read as a row of string literals, comments and regular expressions (ECMAScript's lexical grammar
// as far as it tells these apart); nothing is run. A literal is an address when it says so itself: it begins
// with a scheme of the web, or with "//" and a host, or is a path to a file; or when the script uses it as one:
// window.open("..."), location = "...", location.assign("..."), location.replace("..."), .href = "...".
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zab {

class CLinksInJavaParser {
  public:
    /// Takes each address as the script means it, unescaped (UTF-8), in order.
    using Sink = std::function<void(std::string_view reference)>;

    explicit CLinksInJavaParser(std::string_view script) noexcept : script_(script) {}

    /// Linear in the script.
    void parse(const Sink& sink);

  private:
    void readString(const Sink& sink);
    void readTemplate(const Sink& sink);
    void readSlash();
    void skipLine() noexcept;
    void readWord() noexcept;
    void give(std::size_t begin, std::size_t end, const Sink& sink) const;

    std::string_view script_;
    std::size_t at_ = 0;
    bool behindValue_ = false;            // a "/" here divides; else it begins a regular expression
    std::size_t noExpressionBefore_ = 0;  // up to here a "/" is known to begin none
    bool templatesEnd_ = true;            // false: no later one has an end
};

}  // namespace zab
