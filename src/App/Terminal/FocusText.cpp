#include "App/Terminal/FocusText.h"

#include "App/Terminal/TerminalText.h"
#include "Support/Json.h"

#include <map>
#include <string_view>

namespace kippo::Terminal {

namespace {

/// The members of one object, as texts.
class Members final : public Json::Visitor {
public:
    bool value(Json::Path path, Json::Kind, std::string_view text) override {
        if (path.size() == 1) {
            members_[std::string{path[0].key}] = text;
        }
        return true;
    }
    std::string operator[](const std::string& name) const {
        const auto found = members_.find(name);
        return found == members_.end() ? std::string{} : plainText(found->second);
    }

private:
    std::map<std::string, std::string> members_;
};

} // namespace

std::optional<std::string> focusText(std::string json) {
    Members state;
    if (Json::read(json, state) != Json::Outcome::complete || state["phase"].empty()) {
        return std::nullopt;
    }
    std::string first = state["headline"] + ": ";
    if (state["phase"] == "idle") {
        first = state["headline"] + " (" + state["clock"] + ")";
    } else if (state["paused"] == "true") {
        first += "paused with " + state["clock"] + " left";
    } else {
        first += state["clock"] + " left";
    }
    return first + "\n" + state["subline"] + "\n";
}

} // namespace kippo::Terminal
