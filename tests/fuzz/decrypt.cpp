// Texts of encrypted columns, under any version word.
#include "fuzz.h"

namespace {

struct Decrypt : Fuzzed {
    void run(Input& input) override {
        constexpr uint32_t kVersions[] = {0, kDefaultVersion, kDefaultVersion + 1, kSchemeNetworkAddress << 8,
                                          0x101};
        const uint8_t choice = input.byte();
        const uint32_t version = choice < std::size(kVersions) ? kVersions[choice] : input.number<uint32_t>();
        const int capacity = input.word() % 700;
        const std::string text(input.rest());
        // Copies of their exact sizes, neither with an end.
        const std::vector<char> stored(text.begin(), text.end());
        std::vector<char> clear(static_cast<std::size_t>(capacity));
        set_db_enc_version(version);
        db_decrypt(stored.data(), clear.data(), static_cast<int>(stored.size()), capacity);
        db_encrypt(stored.data(), clear.data(), static_cast<int>(stored.size()), capacity);
        comes_back(version, text.substr(0, text.find('\0')));
    }

    static void comes_back(uint32_t version, const std::string& clear) {
        constexpr int kLongest = 160;  // of a field
        if (clear.empty() || clear.size() >= kLongest)
            return;
        set_db_enc_version(version);
        std::string stored(1024, '\0'), back(kLongest, '\0');
        db_encrypt(clear.data(), stored.data(), static_cast<int>(clear.size()),
                   static_cast<int>(stored.size()));
        EXPECT_TRUE(is_stored_form(stored.c_str()));
        db_decrypt(stored.data(), back.data(), static_cast<int>(stored.size()), kLongest);
        EXPECT_EQ(back.c_str(), clear);
    }
};

}  // namespace

FUZZ_TARGET(Decrypt)
