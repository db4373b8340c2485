#include "media/parsers/attribute_list.h"

#include "binding/text.h"

namespace zab {
namespace {

/// Where the attribute at the start of `list` ends: its comma, or npos.
std::size_t endOfAttribute(std::string_view list) noexcept {
    const auto comma = list.find(',');
    const auto opening = list.substr(0, comma).find('"');
    if (opening == std::string_view::npos) return comma;
    const auto closing = list.find('"', opening + 1);
    return closing == std::string_view::npos ? closing : list.find(',', closing + 1);
}

std::string_view unquoted(std::string_view value) noexcept {
    if (value.starts_with('"')) value.remove_prefix(1);
    if (value.ends_with('"')) value.remove_suffix(1);
    return value;
}

}  // namespace

std::string_view withoutOuterBlanks(std::string_view text) noexcept {
    return trimRight(trimLeft(text, kSpaceAndTab), kBlanks);
}

std::string_view AttributeList::takePiece() noexcept {
    const auto end = endOfAttribute(rest_);
    const std::string_view piece = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    return withoutOuterBlanks(piece);
}

bool AttributeList::next(ListAttribute& attribute) noexcept {
    while (!rest_.empty()) {
        const std::string_view piece = takePiece();
        const auto equals = piece.find('=');
        if (equals == std::string_view::npos) continue;
        attribute = {piece.substr(0, equals), unquoted(piece.substr(equals + 1))};
        return true;
    }
    return false;
}

}  // namespace zab
