// A scanner for the tags that a manifest is read for. It is no XML parser: it knows names, attributes and the
// content up to the first matching close tag, and nothing of nesting, comments or entities.
//
// Element names match in any letter case, attribute names exactly. White space may stand between "<" and a
// name. Every "<" is looked at, those inside values and contents too. Positions are offsets into the text,
// which must outlive all of this; nothing is copied.
//
// Cost: n log n in the text, whatever the markup; memory of a small multiple of it.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "media/parsers/next_place.h"

namespace zab {

/// An element that is looked for.
struct ElementName {
    std::string_view name;
    bool isPrefix = false;  // else white space or ">" must follow the name
};

struct StartTag {
    std::size_t at;          // its "<"
    std::size_t behindName;  // the first character behind the name
};

/// All tags of the elements that are looked for, found in one pass.
class TagIndex {
  public:
    TagIndex(std::string_view text, std::span<const ElementName> names);

    /// The start tags of the element with this index, in order.
    [[nodiscard]] const std::vector<StartTag>& starts(std::size_t name) const { return found_[name].starts; }

    /// Where the first end tag at or behind `from` begins: "/" and the name, then white space or ">". Without
    /// one, the end of the text.
    [[nodiscard]] std::size_t endFrom(std::size_t name, std::size_t from) const;

    /// From `from`, behind a start tag, to the first close tag: "</", the name, ">", with white space around
    /// the name. Raw: untrimmed, undecoded. Nothing without a close tag.
    [[nodiscard]] std::optional<std::string_view> contentFrom(std::size_t name, std::size_t from) const;

  private:
    struct Found {
        std::vector<StartTag> starts;
        std::vector<std::size_t> ends;
        std::vector<std::size_t> closes;
    };

    void readTag(std::size_t at, std::span<const ElementName> names);
    void readSlashTag(std::size_t at, std::size_t slash, std::span<const ElementName> names);

    std::string_view text_;
    std::vector<Found> found_;  // one for each name
};

/// The elements of one name that have a content, by their place. Their attributes are not read: a start tag
/// ends at its first ">".
class ElementContents {
  public:
    ElementContents(const TagIndex& tags, std::size_t name, const NextPlace& tagEnds);

    static constexpr std::size_t kNone = std::string_view::npos;

    /// Index of the first or last of them whose "<" lies from `from` to before `to`; kNone.
    [[nodiscard]] std::size_t firstBetween(std::size_t from, std::size_t to) const;
    [[nodiscard]] std::size_t lastBetween(std::size_t from, std::size_t to) const;

    [[nodiscard]] std::size_t size() const noexcept { return contents_.size(); }
    [[nodiscard]] std::string_view operator[](std::size_t index) const { return contents_[index].text; }

  private:
    struct Content {
        std::size_t at;
        std::string_view text;
    };

    [[nodiscard]] std::size_t firstFrom(std::size_t at) const;

    std::vector<Content> contents_;
};

/// Reads attribute lists: NAME=value, the value in double quotes, in single quotes, or bare up to white space,
/// "/" or ">". The reading ends where no attribute can be read, normally at ">"; one without its closing quote
/// cannot.
class TagAttributes {
  public:
    static constexpr std::size_t kMostNames = 4;

    struct Values {
        std::array<std::string_view, kMostNames> of;  // the last value of each name; absent: empty
        std::size_t end = 0;                          // where the reading ended
    };

    /// `names`: at most kMostNames, in the order of Values::of; they outlive this.
    TagAttributes(std::string_view text, std::span<const std::string_view> names);

    /// The list at `from`, behind a tag's name.
    [[nodiscard]] Values readAt(std::size_t from);

  private:
    struct Attribute {
        std::size_t at, next;  // its name; what follows it and its white space
        std::string_view name, value;
        bool isKept;
    };

    [[nodiscard]] std::optional<Attribute> attributeAt(std::size_t at) const;
    void add(const Attribute& attribute, Values& values) const;

    std::string_view text_;
    std::span<const std::string_view> names_;
    NextPlace doubleQuotes_, singleQuotes_;
    std::vector<Attribute> path_;                    // of the list being read
    std::unordered_map<std::size_t, Values> known_;  // what the list from such an attribute on holds
};

}  // namespace zab
