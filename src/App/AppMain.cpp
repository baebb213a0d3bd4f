#include "Agents/AgentStore.h"
#include "App/AppDelegate.h"
#include "App/DemoDefaults.h"
#include "App/DemoDirector.h"
#include "App/DemoMachine.h"
#include "App/DemoScenes.h"
#include "App/Panel.h"
#include "App/Prefs.h"
#include "App/SettingsDemo.h"
#include "App/SettingsWindow.h"
#include "Mascot/Views/MascotSheet.h"
#include "Platform/Linux/DesktopSounds.h"
#include "Platform/Linux/FreedesktopTrash.h"
#include "Platform/Linux/InotifyFileWatcher.h"
#include "Platform/Linux/Installation.h"
#include "Platform/Linux/JsonUserDefaults.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Linux/X11HotKeys.h"
#include "Platform/Linux/XdgUrlOpener.h"
#include "Platform/Posix/PosixProcessRunner.h"
#include "Platform/Posix/PosixUserFiles.h"
#include "Platform/Posix/WorkerQueue.h"
#include "Platform/Qt/DesktopIdleTime.h"
#include "Platform/Qt/NotchWindow.h"
#include "Platform/Qt/QtDesktop.h"
#include "Platform/Qt/QtDesktopLook.h"
#include "Platform/Qt/QtScheduler.h"
#include "Platform/Qt/QtScreens.h"

#include <QGuiApplication>
#include <QImage>
#include <QQuickView>
#include <QSocketNotifier>
#include <algorithm>
#include <cstdio>
#include <expected>

namespace {

using namespace kippo;

/// A line on standard error, as every complaint of the program.
int complain(const QString& sentence) {
    std::fprintf(stderr, "kippo-app: %s\n", qPrintable(sentence));
    return 2;
}

/// The agents' store on this machine's real ports. The main queue is Qt's.
struct Agents {
    Agents(const Places& places, Scheduler& scheduler, UserDefaults& defaults)
        : trash(places.dataFolder), store(places, ports(scheduler, defaults)) {
        if (files.descriptor() >= 0) {
            filesReady.emplace(files.descriptor(), QSocketNotifier::Read);
            QObject::connect(&*filesReady, &QSocketNotifier::activated, &*filesReady, [this] { files.dispatch(); });
        }
    }
    ~Agents() { runner.stop(); }
    Agents(const Agents&) = delete;
    Agents& operator=(const Agents&) = delete;

    static void post(std::function<void()> work) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
    }

    AgentStore::Ports ports(Scheduler& scheduler, UserDefaults& defaults) {
        const std::string executable = Installation::hookExecutable(KIPPO_INSTALLED_HOOK).value_or(std::string{});
        return {.scheduler = scheduler,
                .defaults = defaults,
                .work = work,
                .scans = scans,
                .processes = processes,
                .files = &files,
                .userFiles = userFiles,
                .runner = runner,
                .trash = trash,
                .executable = executable,
                .isInstalled = !executable.empty() && !Installation::isInBuildTree(executable)};
    }

    ProcProcessLister processes;
    PosixUserFiles userFiles;
    PosixProcessRunner runner;
    FreedesktopTrash trash;
    InotifyFileWatcher files;
    std::optional<QSocketNotifier> filesReady;
    WorkerQueue work{post};
    WorkerQueue scans{post};
    AgentStore store;
};

/// The notch on this desktop: its window, what the window shows, and what it stands on.
struct Notch {
    Notch(Scheduler& scheduler, UserDefaults& defaults)
        : idleTime(scheduler), stores(scheduler, defaults, sounds), panel(stores, scheduler, defaults),
          application(stores, panel,
                      {scheduler, defaults, screens, window, window, desktop, urls, sounds, hotKeys, idleTime}) {
        if (hotKeys.descriptor() >= 0) {
            keyPressed.emplace(hotKeys.descriptor(), QSocketNotifier::Read);
            QObject::connect(&*keyPressed, &QSocketNotifier::activated, &*keyPressed, [this] {
                // Without a server its descriptor stays readable for good.
                keyPressed->setEnabled(hotKeys.dispatch());
            });
        }
        window.onShow = [this](const NotchShapes& shapes, NotchModel::Mode mode) { panel.stage.show(shapes, mode); };
        QObject::connect(&panel.stage, &NotchStage::shapeChanged, &window.view(),
                         [this] { window.setShape(panel.stage.shape()); });
        panel.load(window.view());
    }

    QtScreens screens;
    QtDesktop desktop;
    XdgUrlOpener urls;
    DesktopSounds sounds;
    X11HotKeys hotKeys;
    std::optional<QSocketNotifier> keyPressed;
    DesktopIdleTime idleTime;
    Stores stores;
    Panel panel;
    NotchWindow window;
    AppDelegate application;
};

struct DemoOptions {
    bool isOn = false;
    QString scene;                              ///< empty for the moving play
    QString screenshot;                         ///< the file for a picture of the scene; empty for none
    QColor backdrop = QColor{0x6f, 0x7f, 0x95}; ///< what the picture has in place of a desktop
    bool isDark = false;                        ///< the settings window's look
};

struct Options {
    DemoOptions demo;
    bool showsSettings = false; ///< brings up the settings window at the start
};

// The person may edit the settings' file by hand.
constexpr Seconds settingsInterval{2};
constexpr Seconds settingsTolerance{1};

int runApplication(const Options& options) {
    const Places places = Places::fromEnvironment();
    QtScheduler scheduler;
    JsonUserDefaults defaults{places.configFolder + "/defaults.json"};
    Prefs::registerDefaults(defaults);
    Agents agents{places, scheduler, defaults};
    Notch notch{scheduler, defaults};
    AppDelegate& application = notch.application;
    application.follow(agents.store);
    QtDesktopLook look;
    SettingsWindow settingsWindow{{agents.store, scheduler, defaults, notch.screens, look}};
    application.onShowSettings = [&settingsWindow](const std::string& page) {
        settingsWindow.show(QString::fromStdString(page));
    };
    application.startApp();
    if (options.showsSettings) {
        application.showSettings();
    }
    const Timer settings = scheduler.every(settingsInterval, settingsTolerance, [&defaults] { defaults.reload(); });
    return QGuiApplication::exec();
}

/// What `view` shows as a picture in `file`.
int takePicture(QQuickView& view, const QString& file) {
    QGuiApplication::processEvents();
    return view.grabWindow().save(file) ? 0 : complain(QStringLiteral("cannot write %1").arg(file));
}

int runSettingsDemo(const DemoOptions& options) {
    QtScheduler scheduler;
    DemoDefaults defaults;
    Prefs::registerDefaults(defaults);
    defaults.set("reducedMotion", !options.screenshot.isEmpty());
    QtScreens screens;
    SettingsDemo demo{scheduler, defaults, screens, options.isDark};
    demo.show(options.scene);
    if (!options.screenshot.isEmpty()) {
        return takePicture(*demo.window().view(), options.screenshot);
    }
    QGuiApplication::setQuitOnLastWindowClosed(true);
    return QGuiApplication::exec();
}

int runDemo(const DemoOptions& options) {
    QtScheduler scheduler;
    DemoDefaults defaults;
    Prefs::registerDefaults(defaults);
    defaults.set("mascotNightOwl", false);
    defaults.set("reducedMotion", !options.scene.isEmpty());
    defaults.set("hotKeysEnabled", false);
    Notch notch{scheduler, defaults};
    AppDelegate& application = notch.application;
    application.startApp();
    DemoDirector director{scheduler};
    director.onSessions = [&](const std::vector<AgentSession>& sessions) {
        const auto isDone = [](const AgentSession& session) { return session.status.isDone(); };
        application.showSessions(sessions, static_cast<std::size_t>(std::ranges::count_if(sessions, isDone)));
    };
    director.onAlert = [&](const AgentSession& session) { application.agentAlert(session); };
    const DemoMachine machine{notch.panel, scheduler};
    notch.panel.agents.onDismiss = [&](const AgentSession& session) { director.dismiss(session.id); };
    notch.panel.agents.onClear = [&] { director.clearFinished(); };
    notch.panel.agents.onStop = [&](Pid pid) { director.end(pid); };
    if (options.scene.isEmpty()) {
        director.start();
        return QGuiApplication::exec();
    }
    if (!DemoScenes::arrange(options.scene.toStdString(), application, scheduler.now())) {
        return complain(QStringLiteral("there is no scene \"%1\"; see kippo-app --help").arg(options.scene));
    }
    if (options.screenshot.isEmpty()) {
        return QGuiApplication::exec();
    }
    notch.window.view().setColor(options.backdrop);
    return takePicture(notch.window.view(), options.screenshot);
}

/// The software renderer shows the first frame sooner, takes a third of the memory and draws nothing while nothing
/// moves; whoever prefers another names it as Qt programs let one.
void chooseRenderer() {
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

constexpr const char* usage = R"(usage: kippo-app [--settings]
       kippo-app --demo[=SCENE] [--screenshot=FILE] [--backdrop=COLOUR] [--dark]
       kippo-app --contact-sheet=mascot FILE

  --settings          starts Kippo and brings up its settings
  --demo              sample sessions that come, work, wait and finish, over and over
  --demo=SCENE        one moment of it, standing still: closed, live, live-one, live-needs-you, peek-done,
                      peek-short, peek-long, peek-needs-you, open, open-expanded, open-expanded-long, many, empty,
                      usage, usage-counting, usage-none, left-running, leftovers, leftovers-new, leftovers-none or
                      leftovers-failed; or the settings window on sample settings: settings-general,
                      settings-notch, settings-agents, settings-change or settings-guide
  --screenshot=FILE   a picture of that moment, and no window
  --backdrop=COLOUR   what lies behind the panel in the picture, such as #6f7f95
  --dark              the settings window as on a dark desktop
  --contact-sheet=mascot FILE
                      a picture of every state of the mascot in three sizes
)";

/// Draws one of the pictures that the drawings are judged by.
int drawContactSheet(const QString& subject, const QString& file) {
    if (subject != u"mascot") {
        return complain(QStringLiteral("there is no contact sheet of \"%1\"; see kippo-app --help").arg(subject));
    }
    return mascotSheet().save(file, nullptr, 0) ? 0 : complain(QStringLiteral("cannot write %1").arg(file));
}

/// The options, or what is wrong with them.
std::expected<Options, QString> readArguments(const QStringList& arguments) {
    Options options;
    DemoOptions& demo = options.demo;
    for (const QString& argument : arguments.mid(1)) {
        const QString name = argument.section(u'=', 0, 0);
        const QString value = argument.section(u'=', 1);
        if (argument == u"--settings") {
            options.showsSettings = true;
        } else if (argument == u"--dark") {
            demo.isDark = true;
        } else if (name == u"--demo") {
            demo.isOn = true;
            demo.scene = value;
        } else if (name == u"--screenshot" && !value.isEmpty()) {
            demo.screenshot = value;
        } else if (name == u"--backdrop" && QColor::isValidColor(value)) {
            demo.backdrop = QColor{value};
        } else {
            return std::unexpected{QStringLiteral("cannot use \"%1\"; see kippo-app --help").arg(argument)};
        }
    }
    if (!demo.screenshot.isEmpty() && demo.scene.isEmpty()) {
        return std::unexpected{QStringLiteral("a screenshot needs a scene, such as --demo=open")};
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    if (arguments.contains(u"--help")) {
        std::fputs(usage, stdout);
        return 0;
    }
    constexpr QLatin1StringView sheetOption{"--contact-sheet="};
    if (arguments.size() == 3 && arguments[1].startsWith(sheetOption)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QGuiApplication application{argc, argv};
        return drawContactSheet(arguments[1].mid(sheetOption.size()), arguments[2]);
    }
    const auto options = readArguments(arguments);
    if (!options) {
        return complain(options.error());
    }
    const DemoOptions& demo = options->demo;
    chooseRenderer();
    if (!demo.screenshot.isEmpty() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // Qt would abort with a core dump.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !Installation::hasDisplay()) {
        return complain(QStringLiteral("there is no display to show the panel on"));
    }
    QGuiApplication application{argc, argv};
    QGuiApplication::setApplicationName(QStringLiteral("Kippo"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (SettingsDemo::isScene(demo.scene)) {
        return runSettingsDemo(demo);
    }
    return demo.isOn ? runDemo(demo) : runApplication(*options);
}
