#include "App/SettingsDemo.h"

#include "Agents/AgentStore.h"
#include "Platform/Posix/PosixUserFiles.h"

#include <QDir>
#include <QQuickItem>
#include <QTemporaryDir>
#include <array>

namespace kippo {

namespace {

using namespace std::chrono_literals;

/// A machine on which one program runs that might be an agent.
class DemoProcesses final : public ProcessLister {
public:
    std::vector<ProcInfo> processes() override {
        ProcInfo candidate;
        candidate.pid = 4200;
        candidate.ppid = 4100;
        candidate.command = "crush";
        return {candidate};
    }
    std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid>) override { return {}; }
    std::map<Pid, std::string> workingDirectories(std::span<const Pid>) override { return {}; }
    bool terminate(Pid, std::uint64_t) override { return false; }
};

/// Runs nothing.
class DemoRunner final : public ProcessRunner {
public:
    std::optional<std::string> output(const std::string&, std::span<const std::string>, Seconds) override { return {}; }
};

/// Takes nothing.
class DemoTrash final : public Trash {
public:
    std::expected<Receipt, Error> moveToTrash(const std::string&) override { return std::unexpected{Error{}}; }
    std::expected<void, Error> putBack(const Receipt&) override { return std::unexpected{Error{}}; }
};

/// A look that never changes.
class DemoLook final : public DesktopLook {
public:
    explicit DemoLook(bool isDark) : isDark_(isDark) {}
    bool isDark() const override { return isDark_; }
    std::optional<std::uint32_t> accent() const override { return {}; }
    [[nodiscard]] Subscription observe(std::function<void()>) override { return {}; }

private:
    bool isDark_;
};

constexpr std::string_view claudeSettings = R"text({
  "model": "opus",
  "permissions": {
    "allow": ["Bash(npm test:*)"]
  },
  "hooks": {
    "Stop": [
      {
        "hooks": [
          { "type": "command", "command": "~/bin/say-done" }
        ]
      }
    ]
  }
}
)text";

struct Scene {
    QLatin1StringView name;
    QString page;
    const char* sheet; ///< what is open on the agents page; null for nothing
};

const std::array scenes{
    Scene{QLatin1StringView{"settings-general"}, QStringLiteral("General"), nullptr},
    Scene{QLatin1StringView{"settings-notch"}, QStringLiteral("Notch"), nullptr},
    Scene{QLatin1StringView{"settings-agents"}, QStringLiteral("Agents"), nullptr},
    Scene{QLatin1StringView{"settings-change"}, QStringLiteral("Agents"), "changeSheet"},
    Scene{QLatin1StringView{"settings-guide"}, QStringLiteral("Agents"), "guideSheet"},
};

const Scene* sceneOf(const QString& name) {
    const auto* const found = std::ranges::find(scenes, name, &Scene::name);
    return found == scenes.end() ? nullptr : found;
}

/// The home folder and the settings as the demo finds them; made before the store reads them.
UserDefaults& furnished(UserDefaults& defaults, UserFiles& files, const std::string& home, Date now) {
    std::ignore = files.write(home + "/.claude/settings.json", claudeSettings);
    std::ignore = files.write(home + "/.cursor/hooks.json", "{ \"version\": 1, // mine\n");
    defaults.set("lastEventByAgent", std::map<std::string, double>{{"claude", referenceSeconds(now - 2min)}});
    defaults.set("watchedAgentNames", std::vector<std::string>{"goose"});
    defaults.set("hiddenProcesses", std::vector<std::string>{"next dev"});
    return defaults;
}

} // namespace

struct SettingsDemo::Parts {
    Parts(Scheduler& scheduler, UserDefaults& defaults, Screens& screens, bool isDark)
        : look(isDark), store(places(), {.scheduler = scheduler,
                                         .defaults = furnished(defaults, files, places().home, scheduler.now()),
                                         .work = work,
                                         .scans = work,
                                         .processes = processes,
                                         .files = nullptr,
                                         .userFiles = files,
                                         .runner = runner,
                                         .trash = trash,
                                         .executable = "/usr/bin/kippo"}),
          window({store, scheduler, defaults, screens, look}) {
        store.refreshOnce();
        store.connect(HookAgent::claude);
        store.setSummaryInstructions(HookAgent::claude, true);
        store.connect(HookAgent::codex);
    }

    Places places() const {
        const std::string home = folder.path().toStdString();
        return {.home = home,
                .supportFolder = home + "/.local/share/Kippo",
                .configFolder = home + "/.config/Kippo",
                .dataFolder = home + "/.local/share",
                .cacheFolder = home + "/.cache"};
    }

    QTemporaryDir folder{QDir::tempPath() + QStringLiteral("/kippo-demo-XXXXXX")};
    PosixUserFiles files;
    InlineSerialQueue work;
    DemoProcesses processes;
    DemoRunner runner;
    DemoTrash trash;
    DemoLook look;
    AgentStore store;
    SettingsWindow window;
};

bool SettingsDemo::isScene(const QString& scene) { return sceneOf(scene) != nullptr; }

SettingsDemo::SettingsDemo(Scheduler& scheduler, UserDefaults& defaults, Screens& screens, bool isDark)
    : parts_(std::make_unique<Parts>(scheduler, defaults, screens, isDark)) {}

SettingsDemo::~SettingsDemo() = default;

SettingsWindow& SettingsDemo::window() { return parts_->window; }

void SettingsDemo::show(const QString& scene) {
    const Scene* const wanted = sceneOf(scene);
    if (!wanted) {
        return;
    }
    parts_->window.show(wanted->page);
    if (!wanted->sheet) {
        return;
    }
    QObject* const root = parts_->window.view()->rootObject();
    QObject* const sheet = root->findChild<QObject*>(QLatin1StringView{wanted->sheet});
    const bool isChange = wanted->sheet == std::string_view{"changeSheet"};
    const int kind = static_cast<int>(isChange ? AgentLook::Kind::Claude : AgentLook::Kind::Codex);
    if (isChange) {
        QMetaObject::invokeMethod(sheet, "show", Q_ARG(int, kind), Q_ARG(QString, QStringLiteral("Claude Code")),
                                  Q_ARG(bool, false));
    } else {
        QMetaObject::invokeMethod(sheet, "show", Q_ARG(int, kind), Q_ARG(QString, QStringLiteral("Codex")));
    }
}

} // namespace kippo
