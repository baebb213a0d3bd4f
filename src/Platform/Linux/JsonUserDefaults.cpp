#include "Platform/Linux/JsonUserDefaults.h"

#include "Platform/Linux/ProcFile.h"
#include "Platform/Posix/AtomicFile.h"
#include "Platform/Posix/Descriptor.h"
#include "Support/Folders.h"
#include "Support/Text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <sys/file.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace kippo {

namespace {

/// Far more than settings need; what is larger is not ours.
constexpr std::size_t sizeLimit = 4U << 20;

constexpr std::size_t allocationLimit = 256U << 10;

/// Deeper than any setting; writing a document out takes stack for each level.
constexpr int depthLimit = 64;

using Value = rapidjson::Value;

bool isShallow(const Value& value, int depth = 0) {
    if (depth > depthLimit) {
        return false;
    }
    if (value.IsObject()) {
        for (const auto& member : value.GetObject()) {
            if (!isShallow(member.value, depth + 1)) {
                return false;
            }
        }
    } else if (value.IsArray()) {
        for (const auto& element : value.GetArray()) {
            if (!isShallow(element, depth + 1)) {
                return false;
            }
        }
    }
    return true;
}

std::string text(const Value& value) { return {value.GetString(), value.GetStringLength()}; }

std::optional<DefaultsValue> listFrom(const Value& array) {
    std::vector<std::string> list;
    for (const auto& element : array.GetArray()) {
        if (!element.IsString()) {
            return std::nullopt;
        }
        list.push_back(text(element));
    }
    return list;
}

std::optional<DefaultsValue> mapFrom(const Value& object) {
    std::map<std::string, double> map;
    for (const auto& member : object.GetObject()) {
        if (!member.value.IsNumber()) {
            return std::nullopt;
        }
        map.insert_or_assign(text(member.name), member.value.GetDouble());
    }
    return map;
}

/// Nothing for a value of a shape that no setting has.
std::optional<DefaultsValue> settingFrom(const Value& value) {
    if (value.IsBool()) {
        return value.GetBool();
    }
    if (value.IsInt64()) {
        return value.GetInt64();
    }
    if (value.IsNumber()) {
        return value.GetDouble();
    }
    if (value.IsString()) {
        return text(value);
    }
    if (value.IsArray()) {
        return listFrom(value);
    }
    return value.IsObject() ? mapFrom(value) : std::nullopt;
}

using Allocator = rapidjson::Document::AllocatorType;

Value jsonFrom(const std::string& string, Allocator& allocator) {
    const std::string valid = Text::validUtf8(string);
    return Value{valid.data(), static_cast<rapidjson::SizeType>(valid.size()), allocator};
}

/// JSON has no infinity and no "not a number".
Value jsonFrom(double number) { return std::isfinite(number) ? Value{number} : Value{}; }

Value jsonFrom(const DefaultsValue& setting, Allocator& allocator) {
    return std::visit(
        [&]<typename T>(const T& held) {
            if constexpr (std::is_same_v<T, std::string>) {
                return jsonFrom(held, allocator);
            } else if constexpr (std::is_same_v<T, double>) {
                return jsonFrom(held);
            } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
                Value array{rapidjson::kArrayType};
                for (const auto& element : held) {
                    array.PushBack(jsonFrom(element, allocator), allocator);
                }
                return array;
            } else if constexpr (std::is_same_v<T, std::map<std::string, double>>) {
                Value object{rapidjson::kObjectType};
                for (const auto& [name, number] : held) {
                    object.AddMember(jsonFrom(name, allocator), jsonFrom(number), allocator);
                }
                return object;
            } else {
                return Value{held};
            }
        },
        setting);
}

Value name(std::string_view key) {
    return Value{rapidjson::StringRef(key.data(), static_cast<rapidjson::SizeType>(key.size()))};
}

/// The line, from 1, in which the byte at `offset` stands.
std::size_t lineAt(std::string_view text, std::size_t offset) {
    return 1 + static_cast<std::size_t>(std::ranges::count(text.substr(0, offset), '\n'));
}

/// Keeps other processes from writing to a folder's settings while it lives. A lock that somebody keeps for seconds is
/// not waited for, nor is one that the file system does not know.
class FolderLock {
public:
    explicit FolderLock(const std::string& file) {
        const std::string folder = file.substr(0, file.rfind('/') + 1);
        makeFolders(folder);
        folder_ = Descriptor{open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
        for (int tries = 0; tries < mostTries; ++tries) {
            if (flock(folder_.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
                return;
            }
            usleep(pause);
        }
    }

private:
    static constexpr int mostTries = 10000;
    static constexpr int pause = 300; ///< microseconds: shorter than it takes to write a file

    Descriptor folder_;
};

} // namespace

struct JsonUserDefaults::Document {
    rapidjson::Document json{rapidjson::kObjectType};
};

JsonUserDefaults::JsonUserDefaults(std::string path, Access access)
    : path_(std::move(path)), access_(access), document_(std::make_unique<Document>()) {
    readIfChanged();
}

JsonUserDefaults::~JsonUserDefaults() = default;

std::optional<DefaultsValue> JsonUserDefaults::value(std::string_view key) const {
    const auto& json = document_->json;
    if (const auto member = json.FindMember(name(key)); member != json.MemberEnd()) {
        if (auto setting = settingFrom(member->value)) {
            return setting;
        }
    }
    const auto found = registered_.find(key);
    return found == registered_.end() ? std::nullopt : std::optional{found->second};
}

void JsonUserDefaults::set(std::string_view key, DefaultsValue value) {
    std::optional<FolderLock> lock;
    if (access_ == Access::readWrite) {
        lock.emplace(AtomicFile::resolved(path_));
    }
    bool isChanged = access_ == Access::readWrite && readIfChanged();
    isChanged = put(std::string{key}, value) || isChanged;
    if (access_ == Access::readWrite) {
        unwritten_.insert_or_assign(std::string{key}, std::move(value));
        tellDamage();
        write();
        lock.reset();
    }
    if (isChanged) {
        observers_.notify();
    }
}

void JsonUserDefaults::setWithNext(const std::string& key, DefaultsValue value) {
    const bool isChanged = put(key, value);
    unwritten_.insert_or_assign(key, std::move(value));
    if (isChanged) {
        observers_.notify();
    }
}

bool JsonUserDefaults::put(const std::string& key, const DefaultsValue& value) {
    auto& json = document_->json;
    auto& allocator = json.GetAllocator();
    Value setting = jsonFrom(value, allocator);
    const auto member = json.FindMember(name(key));
    const bool isNew = member == json.MemberEnd();
    const bool isChanged = isNew || member->value != setting;
    if (isNew) {
        json.AddMember(jsonFrom(key, allocator), setting, allocator);
    } else if (isChanged) {
        member->value = setting;
    }
    if (allocator.Size() > allocationLimit + 8 * text_.size()) {
        // A document gives no memory back for what is replaced in it.
        auto compact = std::make_unique<Document>();
        compact->json.CopyFrom(json, compact->json.GetAllocator());
        document_ = std::move(compact);
    }
    return isChanged;
}

void JsonUserDefaults::registerDefault(std::string_view key, DefaultsValue value) {
    registered_.insert_or_assign(std::string{key}, std::move(value));
}

Subscription JsonUserDefaults::observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

void JsonUserDefaults::reload() {
    const bool isChanged = readIfChanged();
    tellDamage();
    if (isChanged) {
        observers_.notify();
    }
}

void JsonUserDefaults::setDamageHandler(std::function<void(const std::string& sentence)> handler) {
    damageHandler_ = std::move(handler);
    tellDamage();
}

void JsonUserDefaults::tellDamage() {
    if (damageNotice_ && damageHandler_) {
        damageHandler_(*std::exchange(damageNotice_, std::nullopt));
    }
}

/// `line` is counted from 1; 0 where no line is to blame.
std::string JsonUserDefaults::damageSentence(std::size_t line) const {
    const std::string file = path_.substr(path_.rfind('/') + 1);
    return "Kippo could not read its settings (" + file + (line == 0 ? "" : ", line " + std::to_string(line)) +
           ") and goes on with " + (wasEverRead_ ? "those it had" : "its own defaults") +
           ". Once a setting changes, that file is kept as “" + file + ".damaged”.";
}

bool JsonUserDefaults::readIfChanged() {
    const auto bytes = ProcFile::read(AT_FDCWD, path_.c_str(), sizeLimit);
    if (!bytes) {
        // Absent is no damage: the values in memory are all there is, and the next write makes a new file.
        damaged_ = access(path_.c_str(), F_OK) == 0;
        text_.clear();
        return false;
    }
    if (*bytes == text_) {
        return false;
    }
    text_ = *bytes;
    auto fresh = std::make_unique<Document>();
    const bool isBlank = Text::trimmed(text_).empty();
    if (!isBlank) {
        fresh->json.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(text_.data(),
                                                                                                  text_.size());
    }
    const bool wasDamaged =
        std::exchange(damaged_, fresh->json.HasParseError() || !fresh->json.IsObject() || !isShallow(fresh->json));
    if (damaged_) {
        if (!wasDamaged) {
            damageNotice_ =
                damageSentence(fresh->json.HasParseError() ? lineAt(text_, fresh->json.GetErrorOffset()) : 0);
        }
        return false;
    }
    wasEverRead_ = true;
    std::swap(document_, fresh);
    for (const auto& [key, value] : unwritten_) {
        put(key, value);
    }
    return document_->json != fresh->json;
}

void JsonUserDefaults::write() {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter writer{buffer};
    writer.SetIndent(' ', 2);
    if (!document_->json.Accept(writer)) {
        return;
    }
    std::string bytes{buffer.GetString(), buffer.GetSize()};
    bytes += '\n';
    if (bytes == text_ && !damaged_) {
        unwritten_.clear();
        return;
    }
    if (damaged_ && !keepDamagedFile()) {
        return;
    }
    if (!AtomicFile::write(path_, bytes)) {
        text_ = std::move(bytes);
        damaged_ = false;
        wasEverRead_ = true;
        unwritten_.clear();
    }
}

/// Gives the file a second name, which stays when the first is taken by its replacement. False when that failed, and
/// then the file must not be written.
bool JsonUserDefaults::keepDamagedFile() const {
    const std::string real = AtomicFile::resolved(path_);
    constexpr int mostKept = 100;
    for (int number = 1; number <= mostKept; ++number) {
        const std::string aside = real + ".damaged" + (number == 1 ? std::string{} : "-" + std::to_string(number));
        if (link(real.c_str(), aside.c_str()) == 0) {
            return true;
        }
        // Some file systems have no links, and folders never do.
        if (errno != EEXIST && access(aside.c_str(), F_OK) != 0) {
            return rename(real.c_str(), aside.c_str()) == 0;
        }
    }
    return false;
}

} // namespace kippo
