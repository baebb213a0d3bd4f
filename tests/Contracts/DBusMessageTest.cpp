#include "Platform/Linux/DBusMessage.h"
#include "Platform/Linux/SessionBus.h"

#include <gmock/gmock.h>

namespace kippo {

TEST(DBusMessage, ReadsNothingIntoBytesThatAreCutOrWrong) {
    // A call has the shape of a reply, apart from what says which call it answers.
    const std::string whole = DBusMessage::encode({.destination = "org.example.Name",
                                                   .path = "/org/example",
                                                   .interface = "org.example.Name",
                                                   .member = "Say",
                                                   .arguments = {std::string{"a word"}, 7}},
                                                  5);
    const auto read = DBusMessage::decode(whole);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text, "a word");
    EXPECT_EQ(read->serial, 0U);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(DBusMessage::decode(std::string_view{whole}.substr(0, size))) << size;
        for (const char wrong : {'\0', '\x7f', '\xff'}) {
            std::string damaged = whole;
            damaged[size] = wrong;
            const auto found = DBusMessage::decode(damaged);
            EXPECT_TRUE(!found || found->text.size() <= whole.size()) << size;
        }
    }
}

TEST(SessionBus, FindsTheBusWhereTheEnvironmentSays) {
    using testing::ElementsAre;
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_THAT(SessionBus::addresses(), ElementsAre("/run/user/7/bus"));
    setenv(
        "DBUS_SESSION_BUS_ADDRESS",
        "tcp:host=localhost,port=1;unix:guid=0f,path=/tmp/a%20b;unix:abstract=/tmp/x,guid=1;unix:runtime=yes;unix:", 1);
    EXPECT_THAT(SessionBus::addresses(), ElementsAre("/tmp/a b", std::string{"\0/tmp/x", 7}, "/run/user/7/bus"));
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_TRUE(SessionBus::addresses().empty());
}

} // namespace kippo
