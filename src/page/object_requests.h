// The object-request lists: what the browser asked for, kept until the response, or the page, is done with.
//
// Records stand in the order in which they were added and are found by their URL, compared exactly; of equal
// URLs the oldest counts. Finding and renaming cost a logarithm of the count. A list holds a bounded number of
// records, of POST-body bytes and of bytes of other text; the oldest go first. Nothing here locks: the caller
// holds the shared-list mutex, and what find() gives stays valid only as long as it does.
#pragma once

#include <compare>
#include <cstdint>
#include <list>
#include <set>
#include <string>
#include <string_view>

class nsISupports;

namespace zab {

enum class ObjectKind : std::uint32_t { unknown = 0, video = 1, audio = 2 };

/// What an object will be, before it is there: by the type that its page claims, else by its extension.
ObjectKind objectKindOf(std::string_view mimeGuess, std::string_view extension) noexcept;

/// Narrow texts.
struct OBJECTREQUESTSARRAY_ITEM {
    std::string url;
    std::string pageUrl;
    std::string referrer;
    std::string cookies;
    std::string userAgent;
    std::string authorization;
    std::string postBody;
    std::string postContentType;
    std::string description;
    std::string extension;
    std::uint64_t documentId = 0;     // 0: none
    nsISupports* document = nullptr;  // weak: compared, never called
    ObjectKind kind = ObjectKind::unknown;
    bool fromPolicy = false;  // the content policy told of it; its request was not seen yet
};

class CObjectRequestsArray {
  public:
    static constexpr std::size_t kMostRecords = 2000;
    static constexpr std::size_t kMostPostBytes = 8u << 20;
    /// URLs, headers and the like, which ordinary records have 1 KiB of. A single record may have more: the
    /// browser's own limit for an address is 1 MiB.
    static constexpr std::size_t kMostTextBytes = 8u << 20;

    CObjectRequestsArray() = default;
    CObjectRequestsArray(const CObjectRequestsArray&) = delete;
    CObjectRequestsArray& operator=(const CObjectRequestsArray&) = delete;

    void add(OBJECTREQUESTSARRAY_ITEM record);

    /// Adds what a request itself tells. A record of it that the content policy made gives its place up, and
    /// the kind, extension and page that the request does not know.
    void addRequest(OBJECTREQUESTSARRAY_ITEM record);

    /// The first record of this URL, or null.
    [[nodiscard]] const OBJECTREQUESTSARRAY_ITEM* find(std::string_view url) noexcept;
    /// The same among the records of one document; 0: of any.
    [[nodiscard]] const OBJECTREQUESTSARRAY_ITEM* find(std::string_view url, std::uint64_t documentId) noexcept;

    /// Gives the first record of `from` the URL `to`; it keeps its place in the order.
    void renameFirst(std::string_view from, std::string_view to);

    void removeFirst(std::string_view url) noexcept;

    /// Removes the records of this document object and of this document ID; null and 0 name no document.
    void removeOfDocument(const nsISupports* document, std::uint64_t documentId) noexcept;

    [[nodiscard]] std::size_t count() const noexcept { return records_.size(); }

  private:
    struct Node {
        OBJECTREQUESTSARRAY_ITEM record;
        std::uint64_t number;  // grows with each addition
    };
    using Place = std::list<Node>::iterator;

    /// Orders by URL, then by age. The URL is a view into the record.
    struct Key {
        std::string_view url;
        std::uint64_t number;
        Place place;
        std::strong_ordering operator<=>(const Key& other) const noexcept {
            const auto byUrl = url <=> other.url;
            return std::is_neq(byUrl) ? byUrl : number <=> other.number;
        }
    };
    using Index = std::set<Key>;

    [[nodiscard]] Index::iterator firstOf(std::string_view url) noexcept;
    static Key keyOf(Place place) noexcept;
    Place remove(Place place) noexcept;
    void removeWhatIsTooMuch() noexcept;

    std::list<Node> records_;
    Index index_;
    std::uint64_t lastNumber_ = 0;
    std::size_t postBytes_ = 0;
    std::size_t textBytes_ = 0;
};

}  // namespace zab
