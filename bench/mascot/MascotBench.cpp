// What everything that moves costs while it is on screen: frames a second, and CPU as a share of one core. Beside it,
// in the same run, an empty Qt Quick window at rest.

#include "App/DemoDefaults.h"
#include "App/Prefs.h"
#include "Focus/Views/FocusViewModel.h"
#include "Focus/Views/StretchViewModel.h"
#include "Mascot/Views/MascotItem.h"
#include "Platform/Qt/QtScheduler.h"
#include "Support/Sounds.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sys/resource.h>

namespace {

using namespace kippo;

struct Silence final : Sounds {
    void play(Sound) override {}
};

void wait(std::chrono::milliseconds span) {
    QEventLoop loop;
    QTimer::singleShot(span, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Seconds of CPU that this process has taken.
double cpu() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// Watches `window` for `span` after `begin`, once it has come to rest before it.
void measure(const char* what, QQuickWindow& window, std::chrono::seconds span,
             const std::function<void()>& begin = {}) {
    window.show();
    wait(std::chrono::milliseconds{700});
    int frames = 0;
    const auto counting = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    const double before = cpu();
    if (begin) {
        begin();
    }
    wait(span);
    const double seconds = static_cast<double>(span.count());
    std::printf("%-44s %10.1f %10.2f\n", what, frames / seconds, 100 * (cpu() - before) / seconds);
    std::fflush(stdout);
    QObject::disconnect(counting);
    window.hide();
}

/// When he stirs for the first time after he has come to rest in `state`.
Seconds firstStir(MascotState state) {
    Seconds time{5};
    while (MascotMotion::stillFor(state, time) != Seconds{0}) {
        time += MascotMotion::stillFor(state, time).value_or(Seconds{0});
    }
    return time;
}

void measureMascot(std::chrono::seconds span) {
    using namespace std::chrono_literals;
    QQuickWindow window;
    window.setColor(Qt::black);
    window.resize(624, 178);
    MascotItem mascot{window.contentItem()};
    mascot.QQuickItem::setSize({mascot.implicitWidth(), mascot.implicitHeight()});
    struct Case {
        const char* name;
        MascotItem::State state;
        std::chrono::seconds span;
        Seconds age{0}; ///< of the state when the watch begins
    };
    using State = MascotItem::State;
    for (const Case& each :
         {Case{"mascot: idle, between two stirs", State::Idle, 4s, 1s},
          {"mascot: idle, a blink within 2 s", State::Idle, 2s, firstStir(MascotState::idle) - 0.5s},
          {"mascot: idle, stirs and all", State::Idle, 9 * span, 1s},
          {"mascot: walk, all the while", State::Walk, span},
          {"mascot: catching, once", State::Catching, span},
          {"mascot: cheer, once", State::Cheer, span},
          {"mascot: panic, once", State::Panic, span},
          {"mascot: sleep, until he sleeps, within 4 s", State::Sleep, 4s},
          {"mascot: sleep, between two breaths", State::Sleep, 4s, 4s},
          {"mascot: sleep, a breath within 4 s", State::Sleep, 4s, firstStir(MascotState::sleep) - 0.5s},
          {"mascot: sleep, breaths and all", State::Sleep, 9 * span, 4s},
          {"mascot: wake, once", State::Wake, span},
          {"mascot: talk, once", State::Talk, span}}) {
        measure(each.name, window, each.span, [&] {
            mascot.setState(each.state);
            mascot.restart();
            mascot.advance(each.age.count());
        });
    }
}

void measureFocusPage(std::chrono::seconds span) {
    QtScheduler scheduler;
    DemoDefaults defaults;
    Prefs::registerDefaults(defaults);
    Silence sounds;
    FocusStore store{scheduler, defaults};
    StretchStore stretches{scheduler, sounds};
    FocusViewModel timer{store, scheduler, defaults};
    StretchViewModel stretch{stretches, scheduler};
    store.start();
    QQuickView view;
    view.setColor(Qt::black);
    view.resize(624, 178);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setInitialProperties({{QStringLiteral("timer"), QVariant::fromValue(&timer)},
                               {QStringLiteral("stretch"), QVariant::fromValue(&stretch)}});
    view.setSource(QUrl{QStringLiteral("qrc:/qt/qml/Kippo/FocusPage.qml")});
    measure("focus page: idle", view, span);
    store.toggle();
    measure("focus page: the clock runs", view, span);
    store.pause();
    measure("focus page: paused", view, span);
    for (int i = 0; i < StretchViewModel::count(); ++i) {
        i == 0 ? stretches.start() : stretches.next();
        measure(qPrintable(QStringLiteral("stretch: ") + stretch.title()), view, span);
    }
    stretches.next();
    measure("stretch: the closing tip", view, span);
}

} // namespace

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application{argc, argv};
    const std::chrono::seconds span{argc > 1 ? std::max(1, std::atoi(argv[1])) : 10};
    std::printf("%-44s %10s %10s\n", qPrintable(QStringLiteral("shown for %1 s").arg(span.count())), "frames/s",
                "% of core");
    {
        QQuickWindow empty;
        empty.setColor(Qt::black);
        empty.resize(624, 178);
        measure("an empty window at rest", empty, span);
    }
    measureMascot(span);
    measureFocusPage(span);
    return 0;
}
