#pragma once

#include <QColor>
#include <QString>
#include <expected>

namespace kippo {

/// How `kippo-app` was asked to start.
struct Options {
    /// The demo, when there is to be one.
    struct Demo {
        bool isOn = false;
        QString scene;                              ///< empty for the moving play
        QString screenshot;                         ///< the file for a picture of the scene; empty for none
        QColor backdrop = QColor{0x6f, 0x7f, 0x95}; ///< what the picture has in place of a desktop
        bool isDark = false;                        ///< the settings window's look
        QString style;                              ///< the settings of these names; empty for what is preset
        QString accent;
    };

    Demo demo;
    bool showsSettings = false; ///< brings up the settings window at the start

    /// From the program's arguments, its own name first; or what is wrong with them.
    static std::expected<Options, QString> fromArguments(const QStringList& arguments);
    /// What `--help` prints.
    static const char* usage();
};

/// A line on standard error, as every complaint of the program; gives the exit status.
int complain(const QString& sentence);

} // namespace kippo
