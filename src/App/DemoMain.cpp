#include "App/DemoMain.h"

#include "App/DemoDefaults.h"
#include "App/DemoMachine.h"
#include "App/DemoScenes.h"
#include "App/Prefs.h"
#include "App/RealApplication.h"
#include "App/SettingsDemo.h"
#include "Focus/Views/StretchSheet.h"
#include "Mascot/Views/MascotSheet.h"
#include "Platform/Qt/QtScheduler.h"

#include <QGuiApplication>
#include <QImage>
#include <QQuickView>

namespace kippo::DemoMain {

namespace {

// The coach looks at how long the person works; samples do not.
constexpr double forGood = 1e12;

/// What `view` shows as a picture in `file`.
int takePicture(QQuickView& view, const QString& file) {
    QGuiApplication::processEvents();
    return view.grabWindow().save(file) ? 0 : complain(QStringLiteral("cannot write %1").arg(file));
}

int runSettings(const Options::Demo& options) {
    QtScheduler scheduler;
    DemoDefaults defaults;
    Prefs::registerDefaults(defaults);
    defaults.set("reducedMotion", !options.screenshot.isEmpty());
    QtScreens screens;
    SettingsDemo demo{scheduler, defaults, screens, options.isDark};
    QQuickView& view = demo.show(options.scene);
    if (!options.screenshot.isEmpty()) {
        return takePicture(view, options.screenshot);
    }
    QGuiApplication::setQuitOnLastWindowClosed(true);
    return QGuiApplication::exec();
}

int runPanel(const Options::Demo& options) {
    QtScheduler scheduler;
    DemoDefaults defaults;
    Prefs::registerDefaults(defaults);
    defaults.set("mascotNightOwl", false);
    defaults.set("mascotMutedUntil", forGood);
    defaults.set("hotKeysEnabled", false);
    defaults.set("reducedMotion", !options.scene.isEmpty());
    for (const auto& [key, value] : {std::pair{"style", options.style}, std::pair{"accent", options.accent}}) {
        if (!value.isEmpty()) {
            defaults.set(key, value.toStdString());
        }
    }
    DemoScenes::prepare(options.scene.toStdString(), defaults, scheduler.now());
    RealApplication application{scheduler, defaults, {}};
    AppDelegate& delegate = application.delegate();
    delegate.startApp();
    const DemoMachine machine{delegate.panel(), scheduler};
    if (options.scene.isEmpty()) {
        delegate.playDemo(true);
        return QGuiApplication::exec();
    }
    if (!DemoScenes::arrange(options.scene.toStdString(), delegate, scheduler.now())) {
        return complain(QStringLiteral("there is no scene \"%1\"; see kippo-app --help").arg(options.scene));
    }
    if (options.screenshot.isEmpty()) {
        return QGuiApplication::exec();
    }
    application.view().setColor(options.backdrop);
    return takePicture(application.view(), options.screenshot);
}

} // namespace

int run(const Options::Demo& options) {
    return SettingsDemo::isScene(options.scene) ? runSettings(options) : runPanel(options);
}

int drawContactSheet(const QString& subject, const QString& file) {
    if (subject != u"mascot" && subject != u"stretches") {
        return complain(QStringLiteral("there is no contact sheet of \"%1\"; see kippo-app --help").arg(subject));
    }
    const QImage sheet = subject == u"mascot" ? mascotSheet() : stretchSheet();
    return sheet.save(file, nullptr, 0) ? 0 : complain(QStringLiteral("cannot write %1").arg(file));
}

} // namespace kippo::DemoMain
