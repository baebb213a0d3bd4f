#pragma once

#include "Support/UserDefaults.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kippo {

/// The user's settings in one JSON file, which the user may edit by hand too. Keys and values that Kippo does not know
/// are kept as they are. A write changes no key but those that were set here: it locks the file's folder, reads the
/// file and puts the changes on top, so that two processes lose none of each other's. A file that cannot be read as
/// JSON is never lost: the first write moves it aside, to "defaults.json.damaged" (with a number if need be).
class JsonUserDefaults final : public UserDefaults {
public:
    enum class Access : std::uint8_t {
        readWrite,
        readOnly ///< `set` changes the memory only: for the terminal commands, which run beside the application
    };

    explicit JsonUserDefaults(std::string path, Access access = Access::readWrite);
    ~JsonUserDefaults() override;

    std::optional<DefaultsValue> value(std::string_view key) const override;
    /// Written at once; a failure to write leaves the value in memory, and the next `set` tries again.
    void set(std::string_view key, DefaultsValue value) override;
    /// As `set`, but it comes into the file together with the next setting, and until then leaves it alone.
    void setWithNext(const std::string& key, DefaultsValue value);
    void registerDefault(std::string_view key, DefaultsValue value) override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

    /// Reads the file again if it changed, and calls the observers if any value did. While it is damaged the values
    /// read last stay.
    void reload();

    /// The file is there and cannot be read as settings.
    bool isDamaged() const { return damaged_; }

    /// Gets a sentence for the person when the file turns out to be damaged, once until it was well again; at once when
    /// nobody was told yet.
    void setDamageHandler(std::function<void(const std::string& sentence)> handler);

private:
    struct Document;

    /// Takes over the file's contents when they changed since the last time; whether any value is different now.
    bool readIfChanged();
    /// Puts a setting into the document; whether that changed it.
    bool put(const std::string& key, const DefaultsValue& value);
    void write();
    bool keepDamagedFile() const;
    std::string damageSentence(std::size_t line) const;
    void tellDamage();

    std::string path_;
    Access access_;
    std::unique_ptr<Document> document_;
    std::string text_;     ///< the file's bytes as last read or written
    bool damaged_ = false; ///< the file holds something that is not ours to overwrite
    bool wasEverRead_ = false;
    std::optional<std::string> damageNotice_;                     ///< until the person is told
    std::map<std::string, DefaultsValue, std::less<>> unwritten_; ///< what was set since the last write
    std::function<void(const std::string&)> damageHandler_;
    std::map<std::string, DefaultsValue, std::less<>> registered_;
    Observers observers_;
};

} // namespace kippo
