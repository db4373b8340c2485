// The comparisons of media URLs, and the range removal.

#include "media/parsers/stream_urls.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <vector>

#include "binding/pieces.h"
#include "binding/text.h"

namespace zab {
namespace {

constexpr std::size_t kShortestUrl = 10;

// What a player changes between two requests for one stream: position, pace, session and statistics.
constexpr std::u16string_view kIgnored[] = {
    u"keepalive=",    u"ptchn=",      u"ptk=",   u"begin=",  u"redirect_counter=",
    u"len=",          u"cm2=",        u"range=", u"oid=",    u"pltype=",
    u"cms_redirect=", u"cpn=",        u"ms=",    u"mt=",     u"fr=",
    u"alr=",          u"ratebypass=", u"mime=",  u"mv=",     u"c=",
    u"cver=",         u"ir=",         u"rr=",    u"req_id=", u"mws=",
    u"playerretry=",  u"rbuf=",       u"rn=",
};
constexpr std::u16string_view kSignature = u"signature=";

bool isIgnored(std::u16string_view parameter, bool signatureMatters) noexcept {
    const auto begins = [parameter](std::u16string_view name) {
        return startsWithIgnoringCase<char16_t>(parameter, name);
    };
    return std::ranges::any_of(kIgnored, begins) || (!signatureMatters && begins(kSignature));
}

std::vector<std::u16string_view> parametersOf(std::u16string_view query) {
    std::vector<std::u16string_view> parameters;
    for (const std::u16string_view parameter : piecesOf(query, u'&'))
        if (!parameter.empty()) parameters.push_back(parameter);
    return parameters;
}

/// Parameters ordered from their ends, so that all with one ending stand together.
class Endings {
  public:
    explicit Endings(std::u16string_view query) : parameters_(parametersOf(query)) {
        std::ranges::sort(parameters_, endsBefore);
    }

    [[nodiscard]] bool contain(std::u16string_view ending) const noexcept {
        const auto found = std::ranges::lower_bound(parameters_, ending, endsBefore);
        return found != parameters_.end() && found->ends_with(ending);
    }

  private:
    static bool endsBefore(std::u16string_view a, std::u16string_view b) noexcept {
        return std::lexicographical_compare(a.rbegin(), a.rend(), b.rbegin(), b.rend());
    }

    std::vector<std::u16string_view> parameters_;
};

struct Split {
    std::u16string_view place, query;
};

std::optional<Split> splitUrl(std::u16string_view url) noexcept {
    const auto mark = url.find(u'?');
    if (url.size() < kShortestUrl || mark == url.npos) return std::nullopt;
    return Split{url.substr(0, mark), url.substr(mark + 1)};
}

/// Asks `rule` about the parameters of `a` and the endings in `b`, when the URLs can be compared at all.
template <class Rule>
bool compare(std::u16string_view a, std::u16string_view b, Rule rule) noexcept {
    const auto first = splitUrl(a), second = splitUrl(b);
    if (!first || !second || first->place != second->place) return false;
    try {
        return rule(parametersOf(first->query), Endings(second->query));
    } catch (const std::bad_alloc&) {
        return false;
    }
}

template <class C>
std::basic_string<C> cutRange(std::basic_string_view<C> url, std::basic_string_view<C> further,
                              std::basic_string_view<C> first) {
    auto cut = url.find(further);
    auto lengthOfMark = further.size();
    const bool isFirst = cut == url.npos;
    if (isFirst) {
        cut = url.find(first);
        if (cut == url.npos) return std::basic_string<C>(url);
        ++cut;  // the "?" stays
        lengthOfMark = first.size() - 1;
    }
    std::basic_string<C> kept(url.substr(0, cut));
    const auto next = url.find(C('&'), cut + lengthOfMark);
    if (next != url.npos) kept += url.substr(next + (isFirst ? 1 : 0));
    return kept;
}

}  // namespace

bool sameStream(std::u16string_view a, std::u16string_view b, bool signatureMatters) noexcept {
    return compare(a, b, [&](const auto& parameters, const Endings& endings) {
        return std::ranges::all_of(parameters, [&](std::u16string_view parameter) {
            return isIgnored(parameter, signatureMatters) || endings.contain(parameter);
        });
    });
}

bool sameId(std::u16string_view a, std::u16string_view b) noexcept {
    return compare(a, b, [](const auto& parameters, const Endings& endings) {
        const auto id =
            std::ranges::find_if(parameters, [](auto parameter) { return parameter.starts_with(u"id="); });
        return id != parameters.end() && endings.contain(*id);
    });
}

bool sameIdAndItag(std::u16string_view a, std::u16string_view b) noexcept {
    return compare(a, b, [](const auto& parameters, const Endings& endings) {
        bool hasId = false, hasItag = false;
        for (const auto parameter : parameters) {
            const bool isId = parameter.starts_with(u"id="), isItag = parameter.starts_with(u"itag=");
            if ((isId || isItag) && !endings.contain(parameter)) return false;
            hasId |= isId;
            hasItag |= isItag;
        }
        return hasId && hasItag;
    });
}

std::string withoutRange(std::string_view url) { return cutRange<char>(url, "&range=", "?range="); }
std::u16string withoutRange(std::u16string_view url) { return cutRange<char16_t>(url, u"&range=", u"?range="); }

}  // namespace zab
