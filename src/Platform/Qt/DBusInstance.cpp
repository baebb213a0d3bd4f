#include "Platform/Qt/DBusInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace kippo {

namespace {

constexpr auto name = "io.github.kippo.Kippo";
constexpr auto path = "/io/github/kippo/Kippo";
constexpr auto applicationInterface = "org.freedesktop.Application";
constexpr auto lockName = "/io.github.kippo.Kippo.lock";
constexpr auto refused = "io.github.kippo.Kippo.Error.Refused";

/// For the one that runs to show its settings, in milliseconds.
constexpr int patience = 3000;

constexpr auto introspection = R"xml(  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
  <interface name="io.github.kippo.Kippo">
    <method name="OpenSettings">
      <arg type="s" name="page" direction="in"/>
    </method>
    <method name="OpenPage">
      <arg type="s" name="page" direction="in"/>
    </method>
    <method name="Focus">
      <arg type="s" name="command" direction="in"/>
      <arg type="i" name="minutes" direction="in"/>
      <arg type="s" name="state" direction="out"/>
    </method>
  </interface>
)xml";

std::unexpected<std::string> notReady() { return std::unexpected{std::string{"Kippo is still starting."}}; }

} // namespace

DBusInstance::DBusInstance(QDBusConnection bus) : bus_(std::move(bus)) {}

DBusInstance::~DBusInstance() {
    if (bus_.isConnected()) {
        bus_.unregisterObject(path);
        bus_.unregisterService(name);
    }
}

bool DBusInstance::claim() {
    if (!bus_.isConnected()) {
        return lockFile();
    }
    // The object first: whoever sees the name may call at once.
    bus_.registerVirtualObject(path, this);
    if (bus_.registerService(name)) {
        return true;
    }
    bus_.unregisterObject(path);
    // A bus that gives nobody a name is no reason to show no panel.
    if (!bus_.interface()->isServiceRegistered(name)) {
        return lockFile();
    }
    wakeTheOther();
    return false;
}

bool DBusInstance::lockFile() {
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    if (folder.isEmpty()) {
        return true;
    }
    lock_ = Descriptor{open((folder + lockName).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
    return !lock_ || flock(lock_.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void DBusInstance::wakeTheOther() {
    QVariantMap platform;
    const auto pass = [&](const char* variable, const char* key) {
        if (const QString token = qEnvironmentVariable(variable); !token.isEmpty()) {
            platform.insert(QString::fromLatin1(key), token);
        }
    };
    pass("XDG_ACTIVATION_TOKEN", "activation-token");
    pass("DESKTOP_STARTUP_ID", "desktop-startup-id");
    QDBusMessage message = QDBusMessage::createMethodCall(name, path, applicationInterface, QStringLiteral("Activate"));
    message << platform;
    bus_.call(message, QDBus::Block, patience);
}

QString DBusInstance::introspect(const QString&) const { return QString::fromLatin1(introspection); }

bool DBusInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const QString interface = message.interface();
    std::optional<Answer> answer;
    if (interface.isEmpty() || interface == QLatin1String{applicationInterface}) {
        answer = asApplication(message);
    }
    if (!answer && (interface.isEmpty() || interface == QLatin1String{name})) {
        answer = asKippo(message);
    }
    if (!answer) {
        return false;
    }
    return connection.send(*answer ? message.createReply(**answer)
                                   : message.createErrorReply(refused, QString::fromStdString(answer->error())));
}

std::optional<DBusInstance::Answer> DBusInstance::asApplication(const QDBusMessage& message) const {
    const QString member = message.member();
    const QString types = message.signature();
    if ((member == u"Activate" && types == u"a{sv}") || (member == u"Open" && types == u"asa{sv}")) {
        return openSettings({});
    }
    if (member == u"ActivateAction" && types == u"sava{sv}") {
        const QString action = message.arguments().constFirst().toString();
        return action == u"settings" ? openSettings({}) : openPage(action);
    }
    return std::nullopt;
}

std::optional<DBusInstance::Answer> DBusInstance::asKippo(const QDBusMessage& message) const {
    const QString member = message.member();
    const QString types = message.signature();
    const QVariantList arguments = message.arguments();
    if (member == u"OpenSettings" && types == u"s") {
        return openSettings(arguments[0].toString());
    }
    if (member == u"OpenPage" && types == u"s") {
        return openPage(arguments[0].toString());
    }
    if (member == u"Focus" && types == u"si") {
        return runFocus(arguments[0].toString(), arguments[1].toInt());
    }
    return std::nullopt;
}

DBusInstance::Answer DBusInstance::openSettings(const QString& page) const {
    if (!onOpenSettings) {
        return notReady();
    }
    onOpenSettings(page.toStdString());
    return {};
}

DBusInstance::Answer DBusInstance::openPage(const QString& page) const {
    if (!onOpenPage) {
        return notReady();
    }
    if (auto opened = onOpenPage(page.toStdString()); !opened) {
        return std::unexpected{std::move(opened).error()};
    }
    return {};
}

DBusInstance::Answer DBusInstance::runFocus(const QString& command, int minutes) const {
    if (!onFocus) {
        return notReady();
    }
    auto state = onFocus(command.toStdString(), minutes);
    if (!state) {
        return std::unexpected{std::move(state).error()};
    }
    return QVariantList{QString::fromStdString(*state)};
}

} // namespace kippo
