#include "Desktop/MessageBus.h"
#include "Fakes/Each.h"
#include "Platform/Qt/StatusNotifierTray.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <gmock/gmock.h>

namespace kippo {

using testing::ElementsAre;

namespace {

/// A desktop's tray: it learns of items, reads them and clicks, as another program on the bus.
class Tray final : public QDBusVirtualObject {
public:
    explicit Tray(const MessageBus& bus) : bus_(bus.connect("tray")) {}
    ~Tray() override { QDBusConnection::disconnectFromBus(QStringLiteral("tray")); }

    void start() {
        bus_.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
        bus_.registerService(service);
    }
    void stop() {
        bus_.unregisterService(service);
        items.clear();
    }
    bool hasItem() const {
        return MessageBus::processed([this] { return !items.empty(); });
    }
    bool seesItem() const { return bus_.interface()->isServiceRegistered(items.back()); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        items.push_back(message.arguments().value(0).toString());
        return connection.send(message.createReply());
    }

    QVariantList call(const char* path, const char* interface, const char* member, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(items.back(), path, interface, member);
        message.setArguments(arguments);
        return MessageBus::aside([&] { return bus_.call(message).arguments(); });
    }
    QVariant property(const char* name) {
        const auto reply = call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                {QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(name)});
        return reply.value(0).value<QDBusVariant>().variant();
    }
    /// The menu's lines as this tray would draw them, by number.
    std::map<int, std::string> menu() {
        const auto reply = call("/MenuBar", "com.canonical.dbusmenu", "GetLayout", {0, -1, QStringList{}});
        const auto layout = reply.value(1).value<QDBusArgument>();
        int id = 0;
        QVariantMap properties;
        std::map<int, std::string> lines;
        layout.beginStructure();
        layout >> id >> properties;
        for (layout.beginArray(); !layout.atEnd();) {
            QDBusVariant child;
            layout >> child;
            const auto line = child.variant().value<QDBusArgument>();
            line.beginStructure();
            line >> id >> properties;
            lines[id] = drawn(properties);
            line.endStructure();
        }
        layout.endArray();
        layout.endStructure();
        return lines;
    }
    void click(int id) {
        call("/MenuBar", "com.canonical.dbusmenu", "Event",
             {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant{0}), 0U});
        QCoreApplication::processEvents();
    }

    std::vector<QString> items;

private:
    static std::string drawn(const QVariantMap& line) {
        if (line.value("type") == QStringLiteral("separator")) {
            return "---";
        }
        std::string text = line.value("label").toString().toStdString();
        if (line.contains("toggle-type")) {
            text = (line.value("toggle-state") == 1 ? "[x] " : "[ ] ") + text;
        }
        if (line.contains("shortcut")) {
            const auto keys = qdbus_cast<QList<QStringList>>(line.value("shortcut"));
            text += " (" + keys.value(0).join(u' ').toStdString() + ")";
        }
        return line.value("enabled", true).toBool() ? text : text + " off";
    }

    static constexpr auto service = "org.kde.StatusNotifierWatcher";
    QDBusConnection bus_;
};

QImage square(int size) {
    QImage image{size, size, QImage::Format_ARGB32};
    image.fill(QColor{0x11, 0x22, 0x33, 0x44});
    return image;
}

std::vector<std::string> texts(const std::map<int, std::string>& lines) {
    return each(lines, &std::pair<const int, std::string>::second);
}

} // namespace

TEST(StatusNotifierTray, TheDesktopReadsItsMenuAndClicks) {
    const MessageBus bus;
    ASSERT_TRUE(bus.isThere());
    Tray tray{bus};
    tray.start();
    StatusNotifierTray item{bus.connect("ours"), {{square(16), square(22)}, {}}};
    std::vector<std::string> chosen;
    const auto choose = [&](const char* word) { return [&chosen, word] { chosen.emplace_back(word); }; };
    std::vector<MenuItem> menu{{.text = "Open Agents", .shortcut = "Control+Alt+A", .action = choose("agents")},
                               {.isSeparator = true},
                               {.text = "my_word", .isCheckable = true, .isChecked = true, .action = choose("word")},
                               {.text = "Gone", .isEnabled = false, .action = choose("gone")}};
    item.show(menu);
    ASSERT_TRUE(tray.hasItem());
    auto lines = tray.menu();
    EXPECT_THAT(texts(lines), ElementsAre("Open Agents (Control Alt A)", "---", "[x] my__word", "Gone off"));
    for (const auto& [id, text] : lines) {
        tray.click(id);
    }
    tray.click(0);
    tray.click(99);
    EXPECT_THAT(chosen, ElementsAre("agents", "word"));

    // A menu of another shape: what was clicked in the old one does nothing.
    const int old = lines.begin()->first;
    menu.erase(menu.begin());
    item.show(menu);
    EXPECT_THAT(texts(tray.menu()), ElementsAre("---", "[x] my__word", "Gone off"));
    tray.click(old);
    EXPECT_EQ(chosen.size(), 2U);

    // One of the same shape keeps the numbers, for a menu that is open meanwhile.
    lines = tray.menu();
    menu[1].isChecked = false;
    menu[1].text = "another";
    item.show(menu);
    EXPECT_EQ(tray.menu().at(lines.rbegin()->first - 1), "[ ] another");

    EXPECT_EQ(tray.property("Status").toString(), "Active");
    item.setAttention("Claude Code needs you");
    EXPECT_EQ(tray.property("Status").toString(), "NeedsAttention");
    const auto pictures = qdbus_cast<QList<TrayPixmap>>(tray.property("IconPixmap"));
    ASSERT_EQ(pictures.size(), 2);
    EXPECT_EQ(pictures[1].width, 22);
    EXPECT_EQ(pictures[1].pixels.left(4).toHex(), "44112233");
    int activated = 0;
    item.onActivate = [&] { ++activated; };
    tray.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {10, 10});
    EXPECT_TRUE(MessageBus::processed([&] { return activated == 1; }));
    QDBusConnection::disconnectFromBus(QStringLiteral("ours"));
}

TEST(StatusNotifierTray, ComesWithATrayThatStartsLateOrAgainAndGoesWhenHidden) {
    const MessageBus bus;
    ASSERT_TRUE(bus.isThere());
    Tray tray{bus};
    StatusNotifierTray item{bus.connect("ours"), {{square(16)}, {}}};
    item.show({{.text = "Quit"}});
    for (int starts = 0; starts < 2; ++starts) {
        tray.start();
        EXPECT_TRUE(tray.hasItem());
        EXPECT_THAT(texts(tray.menu()), ElementsAre("Quit"));
        tray.stop();
    }
    tray.start();
    ASSERT_TRUE(tray.hasItem());
    item.hide();
    EXPECT_FALSE(tray.seesItem());
    item.show({{.text = "Again"}});
    EXPECT_TRUE(MessageBus::processed([&] { return tray.items.size() == 2; }));
    EXPECT_THAT(texts(tray.menu()), ElementsAre("Again"));
    QDBusConnection::disconnectFromBus(QStringLiteral("ours"));
}

} // namespace kippo
