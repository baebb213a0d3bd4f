#include "App/Terminal/JsonMembers.h"
#include "App/Terminal/SessionList.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace kippo::Terminal {

namespace {

using Json::Writer;

/// The members of an object, TCP ports among them.
class Members : public JsonMembers {
public:
    explicit Members(Writer& writer) : JsonMembers(writer), writer_(writer) {}

    void ports(std::string_view key, const std::vector<int>& value) {
        list(key, value, [this](int port) { writer_.number(std::int64_t{port}); });
    }

private:
    Writer& writer_;
};

std::string_view kindName(AgentActivity::Kind kind) {
    constexpr std::array<std::string_view, 9> names{"shell",    "edit", "read",     "search", "web",
                                                    "delegate", "plan", "thinking", "tool"};
    return names.at(static_cast<std::size_t>(kind));
}

void writeProcess(Writer& writer, const ProcInfo& proc) {
    Members members{writer};
    members.whole("pid", proc.pid);
    members.whole("ppid", proc.ppid);
    members.whole("rssKB", proc.rssKB);
    members.number("cpu", proc.cpu);
    members.number("uptime", proc.uptime);
    members.text("command", proc.command);
    members.text("friendlyName", proc.friendlyName());
}

/// What a session is, as far as it changes only when something happens.
void writeNews(Writer& writer, const AgentSession& session) {
    Members members{writer};
    members.text("id", session.id);
    members.text("kind", rawValue(session.kind));
    members.text("title", session.title());
    members.text("project", session.project());
    members.text("cwd", session.cwd);
    members.text("status", rawValue(session.status.value));
    members.text("needsYou",
                 session.status.isNeedsYou() ? std::optional<std::string_view>{session.status.sentence} : std::nullopt);
    members.text("sentence", session.sentence(true));
    members.date("workingSince", session.workingSince);
    writer.key("rootPID");
    session.rootPID ? writer.number(std::int64_t{*session.rootPID}) : writer.null();
    members.ports("ports", session.ports);
    members.text("summary", session.summary);
    members.text("prompt", session.prompt);
    members.text("entrypoint", session.entrypoint);
    members.text("customName", session.customName);
}

void writeActivity(Writer& writer, const std::optional<AgentActivity>& activity) {
    writer.key("activity");
    if (!activity) {
        writer.null();
        return;
    }
    writer.beginObject();
    Members members{writer};
    members.text("kind", kindName(activity->kind));
    members.text("tool", activity->tool);
    members.text("detail", activity->detail);
    members.flag("finished", activity->finished);
    members.date("time", activity->time);
    members.text("text", activity->text());
    writer.endObject();
}

void writeSession(Writer& writer, const AgentSession& session, Date now) {
    writer.beginObject();
    writeNews(writer, session);
    writeActivity(writer, session.activity);
    Members members{writer};
    members.text("timeline", session.timeline(now));
    members.date("lastEvent", session.lastEvent);
    members.whole("memoryKB", session.memoryKB);
    members.number("cpu", session.cpu);
    // Counting them means to read every transcript of the week, which is too much for a list.
    writer.key("tokensToday").null().key("costToday").null();
    writer.key("childPorts").beginObject();
    for (const auto& [pid, ports] : session.childPorts) {
        members.ports(fmt::format("{}", pid), ports);
    }
    writer.endObject();
    writer.key("children").beginArray();
    for (const auto& child : session.children) {
        writer.beginObject();
        writeProcess(writer, child);
        writer.endObject();
    }
    writer.endArray().endObject();
}

void writeDetached(Writer& writer, const DetachedProcess& detached) {
    writer.beginObject();
    writeProcess(writer, detached.proc);
    Members members{writer};
    members.text("cwd", detached.cwd);
    members.ports("ports", detached.ports);
    writer.endObject();
}

void writeCounts(Writer& writer, const std::vector<AgentSession>& sessions) {
    const auto count = [&](AgentStatus::Case status) {
        return std::ranges::count(sessions, status, [](const AgentSession& one) { return one.status.value; });
    };
    Members members{writer};
    members.whole("workingCount", count(AgentStatus::Case::working));
    members.whole("needsYouCount", count(AgentStatus::Case::needsYou));
}

} // namespace

std::string sessionJson(const SessionList& list, Date now) {
    std::string text;
    Writer writer{text};
    writer.beginObject().key("sessions").beginArray();
    for (const auto& session : list.sessions) {
        writeSession(writer, session, now);
    }
    writer.endArray().key("detached").beginArray();
    for (const auto& detached : list.detached) {
        writeDetached(writer, detached);
    }
    writer.endArray();
    writeCounts(writer, list.sessions);
    writer.endObject();
    return text;
}

std::string newsJson(const SessionList& list) {
    std::string text;
    Writer writer{text};
    writer.beginArray();
    for (const auto& session : list.sessions) {
        writer.beginObject();
        writeNews(writer, session);
        if (session.activity) {
            Members{writer}.flag("finished", session.activity->finished);
        }
        writer.endObject();
    }
    for (const auto& detached : list.detached) {
        writer.beginObject();
        Members members{writer};
        members.whole("pid", detached.proc.pid);
        members.ports("ports", detached.ports);
        writer.endObject();
    }
    writer.endArray();
    return text;
}

} // namespace kippo::Terminal
