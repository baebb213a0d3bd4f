#include "Platform/Linux/DBusMessage.h"

#include <bit>
#include <cstring>

namespace kippo::DBusMessage {

namespace {

constexpr char byteOrder = std::endian::native == std::endian::little ? 'l' : 'B';
constexpr char methodCall = 1;
constexpr char errorReply = 3;
constexpr char noAutoStart = 2;
constexpr char protocolVersion = 1;

constexpr char pathField = 1;
constexpr char interfaceField = 2;
constexpr char memberField = 3;
constexpr char errorField = 4;
constexpr char replySerialField = 5;
constexpr char destinationField = 6;
constexpr char signatureField = 8;

constexpr std::size_t bodySizeAt = 4;
constexpr std::size_t fieldsSizeAt = 12;

constexpr std::size_t aligned(std::size_t position, std::size_t to) { return (position + to - 1) / to * to; }

/// Writes values one after the other, each where its type has to stand.
class Marshaller {
public:
    void align(std::size_t to) { bytes_.resize(aligned(bytes_.size(), to)); }
    void byte(char value) { bytes_ += value; }
    void number(std::uint32_t value) {
        align(sizeof value);
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void string(std::string_view text) {
        number(static_cast<std::uint32_t>(text.size()));
        bytes_.append(text).push_back('\0');
    }
    void signature(std::string_view types) {
        bytes_ += static_cast<char>(types.size());
        bytes_.append(types).push_back('\0');
    }
    /// One field of a header: its code and its value as a variant.
    void field(char code, char type, std::string_view value) {
        align(8);
        byte(code);
        signature({&type, 1});
        type == 'g' ? signature(value) : string(value);
    }
    void putNumber(std::size_t at, std::size_t value) {
        const auto number = static_cast<std::uint32_t>(value);
        std::memcpy(bytes_.data() + at, &number, sizeof number);
    }
    std::size_t size() const { return bytes_.size(); }
    std::string take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

/// Reads values one after the other. What lies beyond the end reads as empty and leaves `isGood` false.
class Demarshaller {
public:
    explicit Demarshaller(std::string_view bytes) : bytes_(bytes) {}

    bool isGood() const { return isGood_; }
    std::size_t position() const { return position_; }
    void align(std::size_t to) { position_ = aligned(position_, to); }
    char byte() {
        const auto taken = take(1);
        return taken.empty() ? '\0' : taken.front();
    }
    std::uint32_t number() {
        align(sizeof(std::uint32_t));
        std::uint32_t value = 0;
        if (const auto taken = take(sizeof value); !taken.empty()) {
            std::memcpy(&value, taken.data(), sizeof value);
        }
        return value;
    }
    std::string_view string() {
        const auto text = take(number());
        byte();
        return text;
    }
    std::string_view signature() {
        const auto text = take(static_cast<unsigned char>(byte()));
        byte();
        return text;
    }

private:
    std::string_view take(std::size_t count) {
        isGood_ = isGood_ && position_ <= bytes_.size() && count <= bytes_.size() - position_;
        if (!isGood_) {
            return {};
        }
        position_ += count;
        return bytes_.substr(position_ - count, count);
    }

    std::string_view bytes_;
    std::size_t position_ = 0;
    bool isGood_ = true;
};

/// The number in a message's first bytes.
std::size_t numberAt(std::string_view head, std::size_t at) {
    std::uint32_t value = 0;
    std::memcpy(&value, head.data() + at, sizeof value);
    return value;
}

/// What counts of the header's fields; the body's types go to `types`.
bool readFields(Demarshaller& bytes, std::size_t end, Reply& reply, std::string_view& types) {
    while (bytes.isGood() && bytes.position() < end) {
        bytes.align(8);
        const char code = bytes.byte();
        const std::string_view type = bytes.signature();
        if (type == "s" || type == "o") {
            const std::string_view text = bytes.string();
            if (code == errorField) {
                reply.error = text;
            }
        } else if (type == "g") {
            const std::string_view text = bytes.signature();
            types = code == signatureField ? text : types;
        } else if (type == "u") {
            const std::uint32_t number = bytes.number();
            reply.serial = code == replySerialField ? number : reply.serial;
        } else {
            return false;
        }
    }
    return bytes.isGood();
}

} // namespace

std::string encode(const Call& call, std::uint32_t serial) {
    std::string types;
    for (const auto& argument : call.arguments) {
        types += std::holds_alternative<std::string>(argument) ? 's' : 'i';
    }
    Marshaller out;
    out.byte(byteOrder);
    out.byte(methodCall);
    out.byte(noAutoStart);
    out.byte(protocolVersion);
    out.number(0); // the body's size
    out.number(serial);
    out.number(0); // the fields' size
    out.field(pathField, 'o', call.path);
    out.field(interfaceField, 's', call.interface);
    out.field(memberField, 's', call.member);
    out.field(destinationField, 's', call.destination);
    if (!types.empty()) {
        out.field(signatureField, 'g', types);
    }
    out.putNumber(fieldsSizeAt, out.size() - headSize);
    out.align(8);
    const std::size_t bodyAt = out.size();
    for (const auto& argument : call.arguments) {
        if (const auto* text = std::get_if<std::string>(&argument)) {
            out.string(*text);
        } else {
            out.number(static_cast<std::uint32_t>(std::get<std::int32_t>(argument)));
        }
    }
    out.putNumber(bodySizeAt, out.size() - bodyAt);
    return out.take();
}

std::optional<std::size_t> size(std::string_view head) {
    if (head.size() < headSize || head.front() != byteOrder) {
        return std::nullopt;
    }
    const std::size_t fields = numberAt(head, fieldsSizeAt);
    const std::size_t body = numberAt(head, bodySizeAt);
    if (fields > sizeLimit || body > sizeLimit) {
        return std::nullopt;
    }
    return aligned(headSize + fields, 8) + body;
}

std::optional<Reply> decode(std::string_view message) {
    if (size(message) != message.size()) {
        return std::nullopt;
    }
    Demarshaller bytes{message};
    bytes.byte();
    const bool isError = bytes.byte() == errorReply;
    bytes.number(); // the body's size, which is known
    bytes.number(); // the serial
    const std::size_t fields = bytes.number();
    Reply reply;
    std::string_view types;
    if (!readFields(bytes, headSize + fields, reply, types) || isError == reply.error.empty()) {
        return std::nullopt;
    }
    bytes.align(8);
    if (types.starts_with('s')) {
        reply.text = bytes.string();
    }
    return bytes.isGood() ? std::optional{std::move(reply)} : std::nullopt;
}

} // namespace kippo::DBusMessage
