#include "Support/JsonLayout.h"

#include <algorithm>

namespace kippo::Json {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// The string literal at the start of `json`, with its quotes.
std::string_view stringLiteral(std::string_view json) {
    std::size_t end = 1;
    while (end < json.size() && json[end] != '"') {
        end += json[end] == '\\' ? 2 : 1;
    }
    return json.substr(0, end + 1);
}

/// Writes the tokens of a text one by one with new blanks between them. Without a layout all stays on one line.
class Printer {
public:
    Printer(const Layout* layout, std::string_view indentation) : layout_(layout), indentation_(indentation) {}

    std::string print(std::string_view json) {
        while (!json.empty()) {
            const char c = json.front();
            const auto token = c == '"' ? stringLiteral(json) : json.substr(0, 1);
            json.remove_prefix(token.size());
            if (!isBlank(c)) {
                put(c, token);
            }
        }
        return std::move(out_);
    }

private:
    void put(char c, std::string_view token) {
        const bool closes = c == '}' || c == ']';
        depth_ -= closes ? 1 : 0;
        if (opened_ != closes) {
            breakLine();
        }
        opened_ = c == '{' || c == '[';
        depth_ += opened_ ? 1 : 0;
        out_ += token;
        if (c == ':') {
            out_ += ' ';
        } else if (c == ',') {
            out_ += layout_ != nullptr ? "" : " ";
            opened_ = layout_ != nullptr; // what follows begins a line, as after a bracket
        }
    }

    void breakLine() {
        if (layout_ == nullptr) {
            return;
        }
        out_ += layout_->lineEnd;
        out_ += indentation_;
        for (std::size_t level = 0; level < depth_; ++level) {
            out_ += layout_->unit;
        }
    }

    const Layout* layout_;
    std::string_view indentation_;
    std::string out_;
    std::size_t depth_ = 0;
    bool opened_ = false; ///< a bracket or comma came last
};

std::size_t lineStart(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset).find_last_of("\r\n");
    return before == std::string_view::npos ? 0 : before + 1;
}

} // namespace

Layout Layout::of(std::string_view text) {
    Layout layout;
    const auto lineEnd = text.find_first_of("\r\n");
    if (lineEnd == std::string_view::npos) {
        return layout;
    }
    layout.lineEnd = text.substr(lineEnd).starts_with("\r\n") ? "\r\n" : text.substr(lineEnd, 1);
    const auto brace = text.find('{');
    const auto first = brace == std::string_view::npos ? brace : text.find_first_not_of(" \t\r\n", brace + 1);
    if (first != std::string_view::npos && text[first] == '"' && beginsLine(text, first)) {
        auto unit = indentationAt(text, first);
        const auto outer = indentationAt(text, brace);
        unit.remove_prefix(unit.starts_with(outer) ? outer.size() : 0);
        layout.unit = unit.empty() ? layout.unit : std::string{unit};
    }
    return layout;
}

std::string overLines(std::string_view json, const Layout& layout, std::string_view indentation) {
    return Printer{&layout, indentation}.print(json);
}

std::string onOneLine(std::string_view json) { return Printer{nullptr, {}}.print(json); }

std::string_view indentationAt(std::string_view text, std::size_t offset) {
    const auto start = lineStart(text, offset);
    const auto end = std::min(text.find_first_not_of(" \t", start), text.size());
    return text.substr(start, std::min(end, std::max(offset, start)) - start);
}

bool beginsLine(std::string_view text, std::size_t offset) {
    const auto start = lineStart(text, offset);
    return text.substr(start, offset - start).find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace kippo::Json
