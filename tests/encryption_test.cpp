// Encryption of credentials, against literal texts made with another implementation of MD5 and AES.
#include "core_fixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr uint32_t kDefault = 0x01000100;
const std::string kAdmin = ":8e:da:26:2d:46:7a:ab:13:aa:5c:f7:a4:30:31:6a:ec";

class Encryption : public Core {
  protected:
    uint32_t& version_ = r_.sec_lock_auth.db_enc_version;

    static std::string encrypted(const std::string& clear, int capacity = 1024) {
        std::string output(1024, '\0');
        db_encrypt(clear.c_str(), output.data(), static_cast<int>(clear.size()), capacity);
        return output.substr(0, output.find('\0'));
    }
    // The output starts as dots, and those behind the clear text are left out.
    static std::string decrypted(const std::string& stored, int capacity = 600) {
        std::string output(1024, '.');
        db_decrypt(stored.c_str(), output.data(), static_cast<int>(stored.size()), capacity);
        return output.substr(0, output.find_last_not_of('.') + 1);
    }
};

TEST_F(Encryption, KeysOfTheSchemes) {
    const auto key = [](uint32_t version) {
        unsigned char bytes[17] = {};
        return std::to_string(get_mac_num(version, bytes)) + reinterpret_cast<const char*>(bytes);
    };
    const std::string empty = "0\xd4\x1d\x8c\xd9\x8f", untouched = "-1";
    for (const uint32_t version : {0u, kDefault, kDefault + 1, 0x100u, 0x101u, 0x200u, 0xFFFFFF00u})
        EXPECT_EQ(key(version).substr(0, 6), empty) << std::hex << version;
    for (const uint32_t version : {1u, kDefault + 2, 0x01000002u, 0x102u, 0x201u, 0xFFFFFFFFu})
        EXPECT_EQ(key(version), untouched) << std::hex << version;
    // Bound to the device's address, each with its slice of the seed.
    EXPECT_NE(key(0x01000000), key(0x01000001));
    EXPECT_NE(key(0x01000000).substr(0, 6), empty);
    EXPECT_EQ(get_mac_num(kDefault, nullptr), -1);

    unsigned char digest[16];
    compute_md5("abc", 3, digest);
    compute_md5(nullptr, 3, digest);
    compute_md5("abc", 3, nullptr);
    EXPECT_EQ(std::memcmp(digest, "\x90\x01\x50\x98\x3c\xd2\x4f\xb0\xd6\x96\x3f\x7d\x28\xe1\x7f\x72", 16), 0);
}

TEST_F(Encryption, StoredForm) {
    EXPECT_EQ(encrypted("admin"), kAdmin);
    EXPECT_EQ(version_, kDefault);  // made by the first text
    EXPECT_EQ(
        encrypted("0123456789abcdef"),
        ":eb:e8:d7:f9:bb:49:1f:4:a8:68:f2:77:3d:22:74:38:39:76:73:a4:4f:b:36:5e:47:2a:99:3b:43:18:6e:6a");
    for (const auto& [length, tokens] : {std::pair{15u, 16}, {16u, 32}, {255u, 256}}) {
        const std::string stored = encrypted(std::string(length, 'x'));
        EXPECT_EQ(std::count(stored.begin(), stored.end(), ':'), tokens) << length;
    }
    version_ = kDefault + 2;  // no such index: the zero key
    EXPECT_EQ(encrypted("admin"), ":d4:3f:ab:b6:40:61:e:d7:23:5:16:85:a7:b8:c2:5");
}

TEST_F(Encryption, EveryLengthComesBack) {
    std::mt19937 random(1);
    for (const uint32_t version : {kDefault, 0x01000000u, 0x01000001u, 0x100u, 0x12345678u})
        for (std::string clear = "x"; clear.size() < 256; clear += static_cast<char>('0' + random() % 208)) {
            version_ = version;
            const std::string stored = encrypted(clear);
            // The 160 that a field of the record may have always fit.
            EXPECT_TRUE(decrypted(stored) == clear || (stored.size() > 511 && clear.size() >= 160))
                << clear.size();
        }
}

TEST_F(Encryption, RefusedTextsLeaveTheOutputAlone) {
    for (const auto& [clear, capacity] :
         {std::pair{std::string(), 1024}, {std::string(256, 'x'), 1024}, {"x", 0}, {"x", -1}})
        EXPECT_EQ(encrypted(clear, capacity), "");
    EXPECT_EQ(version_, 0u);
    db_encrypt(nullptr, nullptr, 5, 5);
    db_decrypt(nullptr, nullptr, 5, 5);
    for (const uint32_t version : {0u, kDefault}) {
        version_ = version;
        for (const std::string& stored : {std::string(), std::string(512, 'x')})
            EXPECT_EQ(decrypted(stored), "");
        EXPECT_EQ(decrypted("x", 0), "");
    }
    EXPECT_THAT(logged([] { encrypted("admin", 20); }), HasSubstr("db_encrypt: len too short\n"));
    EXPECT_THAT(logged([] { EXPECT_EQ(decrypted(kAdmin, 3), "adm"); }),
                HasSubstr("db_decrypt: len too short\n"));
}

TEST_F(Encryption, TextsThatWereNeverEncryptedComeBackAsTheyAre) {
    EXPECT_EQ(decrypted(kAdmin, 8), std::string(":8e:da:\0", 8));  // without a version; ended at the capacity
    EXPECT_EQ(decrypted("58213", 8), std::string("58213..\0", 8));
    EXPECT_THAT(logged([] { decrypted("secret"); }), Not(HasSubstr("secret")));
    version_ = kDefault;
    for (const std::string& text :
         {std::string("58213"), std::string("a:b"), std::string(":"), std::string(":8e:da"),
          std::string(511, 'x'), "x" + kAdmin, kAdmin + ":123", kAdmin + "::1", kAdmin + ":x", kAdmin + " ",
          kAdmin.substr(1), kAdmin.substr(0, 45), ":08e" + kAdmin.substr(3)})
        EXPECT_EQ(decrypted(text), text);
    for (const std::string& text : {kAdmin, ":8E:DA" + kAdmin.substr(6), kAdmin + ":", kAdmin + ":8e:da"})
        EXPECT_EQ(decrypted(text), "admin") << text;
}

// A text that its column cuts comes back as far as whole blocks of it reach.
TEST_F(Encryption, CutTexts) {
    const std::string clear = "0123456789abcdef0123456789ABCDEF0123456789";
    for (const auto& [capacity, back] : {std::pair{128, 32u}, {64, 16u}, {256, 42u}})
        EXPECT_EQ(decrypted(encrypted(clear, capacity)), clear.substr(0, back));
    auto& ssid = r_.network.netconfig.ssid;
    std::memset(ssid, 's', sizeof ssid);
    EXPECT_EQ(run("db_save_netconfig"), 0);
    std::memset(ssid, 0, sizeof ssid);
    EXPECT_EQ(run("db_get_netconfig"), 0);
    EXPECT_EQ(std::string(ssid, sizeof ssid), std::string(32, 's'));
}

}  // namespace
