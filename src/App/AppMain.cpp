#include "App/DemoMain.h"
#include "App/Options.h"
#include "App/Prefs.h"
#include "App/RealApplication.h"
#include "App/RealWindows.h"
#include "App/TrayIcon.h"
#include "Platform/Linux/Installation.h"
#include "Platform/Linux/JsonUserDefaults.h"
#include "Platform/Posix/EndingSignals.h"
#include "Platform/Qt/DBusInstance.h"
#include "Platform/Qt/DefaultsWatch.h"
#include "Platform/Qt/QtScheduler.h"
#include "Platform/Qt/QtSessionBus.h"
#include "Platform/Qt/StatusNotifierTray.h"

#include <QFont>
#include <QGuiApplication>
#include <QQuickWindow>
#include <cstdio>

namespace {

using namespace kippo;

/// Before this the mascot may ask his first question, which would take the place of a notice.
constexpr Seconds greetingTime{25};

int runApplication(const Options& options) {
    const QDBusConnection bus = QtSessionBus::connection();
    DBusInstance instance{bus};
    if (!instance.claim()) {
        return 0; // the one that runs shows its settings
    }
    const EndingSignals endings;
    const QSocketNotifier ending{endings.descriptor(), QSocketNotifier::Read};
    QObject::connect(&ending, &QSocketNotifier::activated, qGuiApp, &QCoreApplication::quit);

    const Places places = Places::fromEnvironment();
    QtScheduler scheduler;
    const std::string settingsFile = places.configFolder + "/defaults.json";
    JsonUserDefaults defaults{settingsFile};
    const DefaultsWatch settingsWatch{defaults, settingsFile, scheduler};
    Prefs::registerDefaults(defaults);
    if (defaults.isDamaged()) {
        // Whoever has settings was welcomed when they were whole.
        defaults.setWithNext("onboarded", true);
    }
    RealAgents agents{places, scheduler, defaults};
    StatusNotifierTray tray{bus,
                            {.pictures = TrayIcon::pictures(false),
                             .attentionPictures = TrayIcon::pictures(true),
                             .iconName = TrayIcon::symbolicName(qEnvironmentVariable("XDG_CURRENT_DESKTOP"))}};
    RealApplication application{scheduler, defaults, {.tray = &tray}};
    AppDelegate& delegate = application.delegate();
    delegate.follow(agents.store());
    RealWindows windows{application, agents, scheduler, defaults, places};
    delegate.onQuit = [] { QCoreApplication::quit(); };
    delegate.finishLaunching();
    delegate.answer(instance);
    if (options.showsSettings) {
        delegate.showSettings();
    }
    const Timer greeted = scheduler.after(greetingTime, [&] {
        defaults.setDamageHandler([&](const std::string& sentence) {
            complain(QString::fromStdString(sentence));
            windows.setNotice(sentence);
            delegate.tell(sentence);
        });
    });
    const int status = QGuiApplication::exec();
    defaults.setDamageHandler({});
    return status;
}

/// The software renderer shows the first frame sooner, takes a third of the memory and draws nothing while nothing
/// moves; whoever prefers another names it as Qt programs let one.
void chooseRenderer() {
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    if (arguments.contains(u"--help")) {
        std::fputs(Options::usage(), stdout);
        return 0;
    }
    constexpr QLatin1StringView sheetOption{"--contact-sheet="};
    if (arguments.size() == 3 && arguments[1].startsWith(sheetOption)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QGuiApplication application{argc, argv};
        return DemoMain::drawContactSheet(arguments[1].mid(sheetOption.size()), arguments[2]);
    }
    const auto options = Options::fromArguments(arguments);
    if (!options) {
        return complain(options.error());
    }
    const Options::Demo& demo = options->demo;
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
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.kippo.Kippo"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Before DejaVu, which has some faces in outline beside the others in colour.
    QFont::insertSubstitution(QStringLiteral("Inter"), QStringLiteral("Noto Color Emoji"));
    return demo.isOn ? DemoMain::run(demo) : runApplication(*options);
}
