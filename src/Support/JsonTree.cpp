#include "Support/JsonTree.h"

#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <algorithm>
#include <set>

namespace kippo::Json {

namespace {

/// Builds the tree of a text that is known to be valid.
class Builder {
public:
    Builder(std::string_view text, const Wanted& wanted) : text_(text), wanted_(wanted) {}

    bool hasTwins() const { return hasTwins_; }

    Node node(std::string_view value, std::optional<JsonText> key, std::size_t depth) {
        Node node;
        node.begin = offset(value);
        node.end = node.begin + value.size();
        node.start = key ? offset(key->raw) - 1 : node.begin;
        node.key = key ? key->decoded() : std::string{};
        node.kind = kindOf(value);
        if (node.kind == Kind::object || node.kind == Kind::array) {
            if (wanted_(node, depth)) {
                addChildren(node, value, depth);
            }
        } else {
            node.text = node.kind == Kind::string ? JsonSkim{value}.text()->decoded() : std::string{value};
        }
        return node;
    }

private:
    std::size_t offset(std::string_view part) const { return static_cast<std::size_t>(part.data() - text_.data()); }

    static Kind kindOf(std::string_view value) {
        switch (value.front()) {
        case '{':
            return Kind::object;
        case '[':
            return Kind::array;
        case '"':
            return Kind::string;
        case 't':
        case 'f':
            return Kind::boolean;
        case 'n':
            return Kind::null;
        default:
            return Kind::number;
        }
    }

    void addChildren(Node& parent, std::string_view value, std::size_t depth) {
        JsonSkim skim{value};
        if (parent.kind == Kind::array) {
            skim.array([&] { parent.children.push_back(node(skim.value(), std::nullopt, depth + 1)); });
            return;
        }
        std::set<std::string> names;
        skim.object([&](const JsonText& key) {
            parent.children.push_back(node(skim.value(), key, depth + 1));
            hasTwins_ = !names.insert(parent.children.back().key).second || hasTwins_;
        });
    }

    std::string_view text_;
    const Wanted& wanted_;
    bool hasTwins_ = false;
};

} // namespace

const Node* Node::member(std::string_view name) const {
    const auto found = std::ranges::find(children, name, &Node::key);
    return kind == Kind::object && found != children.end() ? &*found : nullptr;
}

std::optional<Node> tree(std::string_view text, const Wanted& wanted) {
    JsonSkim skim{text};
    const auto value = skim.value();
    if (!skim.finished() || Text::validUtf8(text) != text) {
        return std::nullopt;
    }
    Builder builder{text, wanted};
    auto root = builder.node(value, std::nullopt, 0);
    return builder.hasTwins() ? std::nullopt : std::optional{std::move(root)};
}

} // namespace kippo::Json
