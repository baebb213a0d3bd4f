#include "App/Options.h"

#include <QStringList>
#include <cstdio>

namespace kippo {

int complain(const QString& sentence) {
    std::fprintf(stderr, "kippo-app: %s\n", qPrintable(sentence));
    return 2;
}

const char* Options::usage() {
    return R"(usage: kippo-app [--settings]
       kippo-app --demo[=SCENE] [--screenshot=FILE] [--backdrop=COLOUR] [--dark]
       kippo-app --contact-sheet=mascot|stretches FILE

  --settings          starts Kippo and brings up its settings
  --demo              sample sessions that come, work, wait and finish, over and over
  --demo=SCENE        one moment of it, standing still: closed, live, live-one, live-needs-you, peek-done,
                      peek-short, peek-long, peek-needs-you, live-focus, live-agents-focus, sleeping,
                      mascot-question, mascot-late, pinned, open, open-expanded, open-expanded-long, many, empty,
                      usage, usage-counting, usage-none, left-running, leftovers, leftovers-new, leftovers-none,
                      leftovers-failed, focus-idle, focus-running, focus-paused, focus-break, stretch or
                      stretch-tip; or a window on sample settings: settings-general, settings-notch,
                      settings-agents, settings-change, settings-guide, settings-alerts, settings-focus,
                      settings-about, settings-report, settings-damaged, or welcome-1 to welcome-4
  --screenshot=FILE   a picture of that moment, and no window
  --backdrop=COLOUR   what lies behind the panel in the picture, such as #6f7f95
  --style=STYLE, --accent=ACCENT
                      the demo in other colours, such as midnight and green
  --dark              the settings and the welcome as on a dark desktop
  --contact-sheet=mascot FILE
                      a picture of every state of the mascot in three sizes
  --contact-sheet=stretches FILE
                      a picture of the five stretches at several moments
)";
}

std::expected<Options, QString> Options::fromArguments(const QStringList& arguments) {
    Options options;
    Demo& demo = options.demo;
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
        } else if (name == u"--style") {
            demo.style = value;
        } else if (name == u"--accent") {
            demo.accent = value;
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

} // namespace kippo
