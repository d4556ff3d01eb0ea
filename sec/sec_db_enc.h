// Encryption of credential columns: AES-128 in CBC mode (FIPS 197, NIST SP 800-38A) with a zero
// initialisation vector, under a key that is the MD5 digest (RFC 1321) of material chosen by a version
// word in the shared record.
//
// Stored form: for every cipher byte a colon and its lower-case hexadecimal number without leading zeros,
// ":a:f3".  The clear text is encrypted with its terminating NUL, zero-padded to whole blocks of 16
// bytes.  Where the cipher or the digest fails, which takes a shortage of memory, the functions throw.
#ifndef SEC_SEC_DB_ENC_H
#define SEC_SEC_DB_ENC_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// The version word: the key scheme in bits 31 to 8, an index into the seed in bits 7 to 0.  0: nothing is
// encrypted.
inline constexpr uint32_t kSchemeNetworkAddress = 0x10000;  // the key is bound to the address of eth0
inline constexpr uint32_t kSchemeDefault = 0x10001;

inline constexpr int kMaxClearText = 255;   // longer ones are refused
inline constexpr int kMaxStoredText = 511;  // longer ones are refused

// The record's word.
uint32_t get_db_enc_version();
void set_db_enc_version(uint32_t version);

// The version word that a unit of work encrypts and decrypts under, from its begin to its end, whatever
// another process writes into the record meanwhile.  Without one the functions below ask the record each time.
//
//   const VersionInUse in_use(get_db_enc_version());
//
// One at a time, under g_db_mutexsem.
class VersionInUse {
  public:
    // `clear`: under 0 texts are stored as they are, until encrypt(): the database is older than the encryption.
    explicit VersionInUse(uint32_t version, bool clear = false);
    ~VersionInUse();
    VersionInUse(const VersionInUse&) = delete;
    VersionInUse& operator=(const VersionInUse&) = delete;

    static uint32_t get();
    // What db_encrypt makes of 0; the record takes it, too.
    static uint32_t create();
    static bool stores_clear() { return current_ != nullptr && current_->clear_; }
    // From now on texts are encrypted, under a created word.
    void encrypt() {
        clear_ = false;
        create();
    }

    uint32_t version() const { return version_; }
    bool created() const { return created_; }
    // A text has been encrypted under it.
    bool used() const { return used_; }
    static void note_use();
    // The texts that a created word was for are gone: it is 0 again, in the record too.
    void undo_creation();

  private:
    static inline VersionInUse* current_ = nullptr;
    uint32_t version_;
    bool clear_;
    bool created_ = false, used_ = false;
};

// The word of the scheme under which this system encrypts unless it is told another.
inline constexpr uint32_t kDefaultVersion = kSchemeDefault << 8;

// Makes the library behind all this ready.  Where memory is short that may end the process: to be called before it
// has anything to lose.
void prepare_encryption();

// The text has the form in which encrypted ones are stored.
[[nodiscard]] bool is_stored_form(std::string_view text);

// Writes the stored form of `length` bytes of clear text to `output`, at most capacity - 1 bytes and no
// terminator: callers pass zeroed buffers.  A version word of 0 becomes the default scheme.  An empty or
// refused text leaves the output as it is.
void db_encrypt(const char* clear, char* output, int length, int capacity);

// Writes the clear text of a stored one to `output`, at most `capacity` bytes.  A text that is not of the
// stored form comes back unchanged, so does every text under version word 0; whole blocks of a stored
// text that was cut are read.
void db_decrypt(const char* stored, char* output, int length, int capacity);

// The 16-byte key of a version word.  0; -1 with the key untouched when the seed index is out of the
// scheme's range.
[[nodiscard]] int get_mac_num(uint32_t version, unsigned char* key);

// The MD5 digest of `length` bytes, 16 bytes.  Does nothing when data or digest is null.
void compute_md5(const void* data, std::size_t length, unsigned char* digest);

#endif
