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

/// A switch and nothing behind it.
class DemoLoginItem final : public LoginItem {
public:
    bool isOn() override { return isOn_; }
    std::expected<void, Error> set(bool on) override {
        isOn_ = on;
        return {};
    }

private:
    bool isOn_ = false;
};

/// A clipboard of its own.
class DemoDesktop final : public Desktop {
public:
    void openFolder(const std::string&) override {}
    void copy(const std::string&) override {}
};

/// Sounds that nobody hears.
class DemoSounds final : public Sounds {
public:
    void play(Sound) override {}
};

constexpr std::string_view report = "Kippo " KIPPO_VERSION R"text(
Debian 12, GNOME, xcb, Qt 6.4.2

Claude Code: connected, 2 min ago; 1 Working, 1 Needs you
Codex: connected, no event
Cursor: not connected, no event
Gemini CLI: not connected, no event
opencode: not connected, no event
aider: not connected, no event, hidden
)text";

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
    const char* page;  ///< of the settings; null for a step of the welcome
    const char* sheet; ///< what is open on the agents page; null for nothing
    int step = 0;      ///< of the welcome
};

constexpr std::array scenes{
    Scene{QLatin1StringView{"settings-general"}, "General", nullptr},
    Scene{QLatin1StringView{"settings-notch"}, "Notch", nullptr},
    Scene{QLatin1StringView{"settings-agents"}, "Agents", nullptr},
    Scene{QLatin1StringView{"settings-change"}, "Agents", "changeSheet"},
    Scene{QLatin1StringView{"settings-guide"}, "Agents", "guideSheet"},
    Scene{QLatin1StringView{"settings-alerts"}, "Alerts & sounds", nullptr},
    Scene{QLatin1StringView{"settings-focus"}, "Focus & Kippo", nullptr},
    Scene{QLatin1StringView{"settings-about"}, "About", nullptr},
    Scene{QLatin1StringView{"settings-report"}, "About", "reportSheet"},
    Scene{QLatin1StringView{"settings-damaged"}, "General", nullptr},
    Scene{QLatin1StringView{"welcome-1"}, nullptr, nullptr, 0},
    Scene{QLatin1StringView{"welcome-2"}, nullptr, nullptr, 1},
    Scene{QLatin1StringView{"welcome-3"}, nullptr, nullptr, 2},
    Scene{QLatin1StringView{"welcome-4"}, nullptr, nullptr, 3},
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

void showSheet(const QObject& window, std::string_view name) {
    QObject* const sheet = window.findChild<QObject*>(QString::fromLatin1(name.data()));
    if (name == "reportSheet") {
        QMetaObject::invokeMethod(sheet, "show");
    } else if (name == "changeSheet") {
        QMetaObject::invokeMethod(sheet, "show", Q_ARG(int, static_cast<int>(AgentLook::Kind::Claude)),
                                  Q_ARG(QString, QStringLiteral("Claude Code")), Q_ARG(bool, false));
    } else {
        QMetaObject::invokeMethod(sheet, "show", Q_ARG(int, static_cast<int>(AgentLook::Kind::Codex)),
                                  Q_ARG(QString, QStringLiteral("Codex")));
    }
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
          settings({store,
                    scheduler,
                    defaults,
                    screens,
                    look,
                    loginItem,
                    sounds,
                    desktop,
                    hotKeys,
                    KIPPO_VERSION,
                    {.text = [] { return std::string{report}; }, .send = [] { return std::string{}; }}}),
          welcome({store,
                   scheduler,
                   defaults,
                   screens,
                   look,
                   loginItem,
                   hotKeys,
                   {HookAgent::claude, HookAgent::codex, HookAgent::cursor}}) {
        using State = HotKeyRecord::State;
        hotKeys.set({{{'A'}, "Open Agents", State::held}, {{'P'}, "Start or Pause Focus", State::takenByAnother}});
        store.refreshOnce();
        store.connect(HookAgent::claude);
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
    DemoLoginItem loginItem;
    DemoSounds sounds;
    DemoDesktop desktop;
    HotKeyState hotKeys;
    AgentStore store;
    SettingsWindow settings;
    WelcomeWindow welcome;
};

bool SettingsDemo::isScene(const QString& scene) { return sceneOf(scene) != nullptr; }

SettingsDemo::SettingsDemo(Scheduler& scheduler, UserDefaults& defaults, Screens& screens, bool isDark)
    : parts_(std::make_unique<Parts>(scheduler, defaults, screens, isDark)) {}

SettingsDemo::~SettingsDemo() = default;

QQuickView& SettingsDemo::show(const QString& scene) {
    const Scene* const wanted = sceneOf(scene);
    if (!wanted || !wanted->page) {
        parts_->welcome.show();
        parts_->welcome.view()->rootObject()->setProperty("step", wanted ? wanted->step : 0);
        return *parts_->welcome.view();
    }
    parts_->store.setSummaryInstructions(HookAgent::claude, true);
    parts_->store.connect(HookAgent::codex);
    if (scene == u"settings-damaged") {
        parts_->settings.setNotice(
            QStringLiteral("The settings could not be read and are as new. The old file is kept beside them as "
                           "defaults.json.damaged."));
    }
    parts_->settings.show(QString::fromLatin1(wanted->page));
    if (wanted->sheet) {
        showSheet(*parts_->settings.view()->rootObject(), wanted->sheet);
    }
    return *parts_->settings.view();
}

} // namespace kippo
