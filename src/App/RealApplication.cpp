#include "App/RealApplication.h"

#include "Platform/Linux/Installation.h"

#include <QGuiApplication>
#include <QScreen>

namespace kippo {

namespace {

/// Of the mascot's bubble, as it is drawn.
constexpr double bubbleRadius = 20;

void postToMain(std::function<void()> work) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
}

/// What of this machine may matter to whoever looks into a problem.
About aboutThisProgram() {
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP", QStringLiteral("no known desktop"));
    const QString system =
        QStringLiteral("%1, %2, %3, Qt %4, %5 screen(s), scale %6")
            .arg(QSysInfo::prettyProductName(), desktop, QGuiApplication::platformName(), QLatin1StringView{qVersion()})
            .arg(QGuiApplication::screens().size())
            .arg(qGuiApp->devicePixelRatio());
    return {.version = KIPPO_VERSION, .system = system.toStdString(), .supportAddress = KIPPO_SUPPORT_ADDRESS};
}

} // namespace

RealAgents::RealAgents(const Places& places, Scheduler& scheduler, UserDefaults& defaults)
    : trash_(places.dataFolder), work_(postToMain), scans_(postToMain), store_(places, ports(scheduler, defaults)) {
    if (files_.descriptor() >= 0) {
        filesReady_.emplace(files_.descriptor(), QSocketNotifier::Read);
        QObject::connect(&*filesReady_, &QSocketNotifier::activated, &*filesReady_, [this] { files_.dispatch(); });
    }
}

RealAgents::~RealAgents() { runner_.stop(); }

AgentStore::Ports RealAgents::ports(Scheduler& scheduler, UserDefaults& defaults) {
    const std::string executable = Installation::hookExecutable(KIPPO_INSTALLED_HOOK).value_or(std::string{});
    return {.scheduler = scheduler,
            .defaults = defaults,
            .work = work_,
            .scans = scans_,
            .processes = processes_,
            .files = &files_,
            .userFiles = userFiles_,
            .runner = runner_,
            .trash = trash_,
            .executable = executable,
            .isInstalled = !executable.empty() && !Installation::isInBuildTree(executable)};
}

RealApplication::RealApplication(Scheduler& scheduler, UserDefaults& defaults, Extras extras)
    : idleTime_(scheduler), stores_(scheduler, defaults, sounds_), panel_(stores_, scheduler, defaults, look_),
      delegate_(stores_, panel_,
                {.scheduler = scheduler,
                 .defaults = defaults,
                 .screens = screens_,
                 .pointer = window_,
                 .window = window_,
                 .desktop = desktop_,
                 .urls = urls_,
                 .sounds = sounds_,
                 .hotKeys = hotKeys_,
                 .idleTime = idleTime_,
                 .tray = extras.tray,
                 .fullScreen = &fullScreen_,
                 .about = aboutThisProgram()}) {
    if (hotKeys_.descriptor() >= 0) {
        keyPressed_.emplace(hotKeys_.descriptor(), QSocketNotifier::Read);
        QObject::connect(&*keyPressed_, &QSocketNotifier::activated, &*keyPressed_, [this] {
            // The descriptor of a server that is gone stays readable for good.
            keyPressed_->setEnabled(hotKeys_.dispatch());
        });
    }
    if (fullScreen_.descriptor() >= 0) {
        fullScreenChanged_.emplace(fullScreen_.descriptor(), QSocketNotifier::Read);
        QObject::connect(&*fullScreenChanged_, &QSocketNotifier::activated, &*fullScreenChanged_,
                         [this] { fullScreenChanged_->setEnabled(fullScreen_.dispatch()); });
    }
    window_.onShow = [this](const NotchShapes& shapes, NotchModel::Mode mode) { panel_.stage.show(shapes, mode); };
    QObject::connect(&panel_.stage, &NotchStage::shapeChanged, &window_.view(),
                     [this] { window_.setShape(panel_.stage.shape()); });
    QObject::connect(&panel_.stage, &NotchStage::bubbleChanged, &window_.view(), [this] {
        const QRectF& bubble = panel_.stage.bubble();
        window_.setBubble({bubble.x(), bubble.y(), bubble.width(), bubble.height()}, bubbleRadius);
    });
    panel_.load(window_.view());
}

} // namespace kippo
