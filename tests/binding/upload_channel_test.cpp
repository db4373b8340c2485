#include "binding/upload_channel.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

/// A channel that answers one generation of the upload interface, and counts its references.
template <class Interface, class Length>
class Channel final : public Interface {
  public:
    explicit Channel(const nsIID& iid) : iid_(iid) {}
    nsresult QueryInterface(const nsIID* iid, void** result) override {
        *result = *iid == iid_ ? this : nullptr;
        if (*result == nullptr) return NS_ERROR_NO_INTERFACE;
        ++references;
        return NS_OK;
    }
    uint32_t AddRef() override { return ++references; }
    uint32_t Release() override { return --references; }
    nsresult SetUploadStream(nsIInputStream* s, const nsACString* type, Length given) override {
        stream = s;
        contentType = type;
        length = given;
        return NS_ERROR_NOT_AVAILABLE;
    }
    nsresult GetUploadStream(nsISupports** result) override {
        *result = stream;
        return NS_OK;
    }

    std::uint32_t references = 0;
    nsIInputStream* stream = nullptr;
    const nsACString* contentType = nullptr;
    std::int64_t length = 0;

  private:
    nsIID iid_;
};

constexpr nsIID kOlder{0xDDF633D8, 0xE9A4, 0x439D, {0xAD, 0x88, 0xDE, 0x63, 0x6F, 0xD9, 0xBB, 0x75}};
constexpr nsIID kNewer{0x5CFE15BD, 0x5ADB, 0x4A7F, {0x9E, 0x55, 0x4F, 0x5A, 0x67, 0xD1, 0x57, 0x94}};

TEST(UploadChannel, OfTheOlderGenerationIsUsedAsItIs) {
    Channel<nsIUploadChannel, std::int32_t> channel(kOlder);
    auto upload = GetUploadChannel(&channel);
    EXPECT_EQ(upload.get(), &channel);
    upload.reset();
    EXPECT_EQ(channel.references, 0u);
}

TEST(UploadChannel, OfTheNewerGenerationIsServedThroughTheOlder) {
    Channel<nsIUploadChannel17, std::int64_t> channel(kNewer);
    char places[2];
    auto* const stream = reinterpret_cast<nsIInputStream*>(&places[0]);
    auto* const type = reinterpret_cast<const nsACString*>(&places[1]);
    auto upload = GetUploadChannel(&channel);
    ASSERT_TRUE(upload);
    EXPECT_EQ(channel.references, 1u) << "the adapter's";
    EXPECT_EQ(upload->SetUploadStream(stream, type, -1), NS_ERROR_NOT_AVAILABLE) << "the channel's own result";
    EXPECT_EQ(channel.length, -1) << "all 64 bits of it";
    EXPECT_EQ(channel.contentType, type);
    nsISupports* result = nullptr;
    EXPECT_EQ(upload->GetUploadStream(&result), NS_OK);
    EXPECT_EQ(static_cast<void*>(result), static_cast<void*>(places));
    upload.reset();
    EXPECT_EQ(channel.references, 0u);
}

TEST(UploadChannel, IsNothingWithoutEither) {
    Channel<nsIUploadChannel17, std::int64_t> channel(nsISupports::kIID);
    EXPECT_FALSE(GetUploadChannel(&channel));
    EXPECT_FALSE(GetUploadChannel(nullptr));
    EXPECT_EQ(channel.references, 0u);
}

}  // namespace
}  // namespace zab
