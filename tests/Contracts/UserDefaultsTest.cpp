#include "Fakes/FakeDefaults.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Linux/JsonUserDefaults.h"

#include <cmath>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo {

namespace fs = std::filesystem;

namespace {

const std::vector<std::pair<std::string, DefaultsValue>> oneOfEach{
    {"flag", true},
    {"whole", std::int64_t{-7}},
    {"date", 817041600.25},
    {"text", std::string{"naïve \"quote\""}},
    {"list", std::vector<std::string>{"a", "b"}},
    {"times", std::map<std::string, double>{{"claude", 1.5}, {"codex", 2}}},
    {"none", std::vector<std::string>{}},
};

/// The same of every implementation.
void keepsWhatItIsGiven(UserDefaults& defaults) {
    int calls = 0;
    auto subscription = defaults.observe([&] { ++calls; });
    defaults.registerDefault("flag", false);
    defaults.registerDefault("other", std::string{"registered"});
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(defaults.value("flag"), DefaultsValue{false});
    for (const auto& [key, value] : oneOfEach) {
        defaults.set(key, value);
        EXPECT_EQ(defaults.value(key), value) << key;
    }
    EXPECT_EQ(calls, static_cast<int>(oneOfEach.size()));
    EXPECT_EQ(defaults.get<std::string>("other"), "registered");
    EXPECT_EQ(defaults.value("unknown"), std::nullopt);
    defaults.set("whole", std::int64_t{8});
    EXPECT_EQ(defaults.get<std::int64_t>("whole"), 8);
    EXPECT_EQ(defaults.get<double>("whole"), 8.0);
    subscription.reset();
    defaults.set("whole", std::int64_t{9});
    EXPECT_EQ(calls, static_cast<int>(oneOfEach.size()) + 1);
}

struct JsonUserDefaultsTest : testing::Test {
    PrivateHome folder;
    std::string file = folder.path("defaults.json");
};

} // namespace

TEST(UserDefaultsContract, InMemoryAndInAFile) {
    FakeDefaults fake;
    keepsWhatItIsGiven(fake);
    const PrivateHome folder;
    JsonUserDefaults real{folder.path("deep/er/defaults.json")};
    keepsWhatItIsGiven(real);
}

TEST_F(JsonUserDefaultsTest, ReadsBackWhatItWroteAndKeepsTheRest) {
    folder.write(file, R"({"future": {"nested": [1, {"x": null}]}, "mixed": [1, "a"], "flag": false, "big": 1e300})");
    fs::permissions(file, fs::perms{0640});
    {
        JsonUserDefaults defaults{file};
        EXPECT_EQ(defaults.value("future"), std::nullopt);
        EXPECT_EQ(defaults.value("mixed"), std::nullopt);
        for (const auto& [key, value] : oneOfEach) {
            defaults.set(key, value);
        }
        defaults.set("odd", std::nan(""));
        defaults.set("raw", std::string{"\xFF"});
    }
    JsonUserDefaults again{file};
    for (const auto& [key, value] : oneOfEach) {
        EXPECT_EQ(again.value(key), value) << key;
    }
    EXPECT_EQ(again.value("odd"), std::nullopt);
    EXPECT_EQ(again.get<std::string>("raw"), "\uFFFD");
    EXPECT_EQ(again.get<double>("big"), 1e300);
    EXPECT_THAT(folder.read(file), testing::HasSubstr("\"nested\""));
    EXPECT_THAT(folder.read(file), testing::HasSubstr("\"mixed\""));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0640});
    EXPECT_EQ(std::distance(fs::directory_iterator{folder.path()}, {}), 1) << "no temporary file stays";
}

TEST_F(JsonUserDefaultsTest, TakesOverWhatTheUserEdits) {
    JsonUserDefaults defaults{file};
    defaults.set("a", std::int64_t{1});
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0600});
    int calls = 0;
    const auto subscription = defaults.observe([&] { ++calls; });
    defaults.reload();
    defaults.set("a", std::int64_t{1});
    EXPECT_EQ(calls, 0) << "nothing changed";
    folder.write(file, R"({"a": 2, "b": true})");
    defaults.reload();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(defaults.get<std::int64_t>("a"), 2);
    // Without a reload in between, a write must not undo the edit either.
    folder.write(file, R"({"a": 3, "b": true})");
    defaults.set("c", true);
    EXPECT_EQ(JsonUserDefaults{file}.get<std::int64_t>("a"), 3);
    fs::remove(file);
    defaults.set("c", true);
    EXPECT_EQ(JsonUserDefaults{file}.get<std::int64_t>("a"), 3) << "a deleted file is written again";
}

TEST_F(JsonUserDefaultsTest, NeverLosesAFileThatItCannotRead) {
    for (const std::string& damage :
         {std::string{"{\"a\": 1,"}, std::string{"[1]"}, std::string{"{\"a\": \"\xFF\"}"}, std::string(100000, '['),
          "{\"a\":" + std::string(100, '[') + std::string(100, ']') + "}"}) {
        file += "+"; // another one for each damage
        folder.write(file, R"({"a": 1})");
        JsonUserDefaults defaults{file};
        folder.write(file, damage);
        defaults.reload();
        EXPECT_EQ(defaults.get<std::int64_t>("a"), 1) << "the values read last stay";
        EXPECT_EQ(folder.read(file), damage) << "reading writes nothing";
        defaults.set("b", true);
        EXPECT_EQ(folder.read(file + ".damaged"), damage);
        EXPECT_EQ(JsonUserDefaults{file}.get<std::int64_t>("a"), 1);
        folder.write(file, "again");
        JsonUserDefaults{file}.set("c", true);
        EXPECT_EQ(folder.read(file + ".damaged"), damage);
        EXPECT_EQ(folder.read(file + ".damaged-2"), "again");
    }
}

TEST_F(JsonUserDefaultsTest, TwoProcessesLoseNoneOfEachOthersKeys) {
    constexpr int keys = 200;
    const auto fill = [&](const std::string& who) {
        JsonUserDefaults defaults{file};
        for (int i = 0; i < keys; ++i) {
            defaults.set(who + std::to_string(i), std::int64_t{i});
        }
    };
    const pid_t child = fork();
    if (child == 0) {
        fill("theirs");
        _exit(0);
    }
    fill("ours");
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const JsonUserDefaults both{file};
    for (int i = 0; i < keys; ++i) {
        EXPECT_EQ(both.get<std::int64_t>("ours" + std::to_string(i), -1), i);
        EXPECT_EQ(both.get<std::int64_t>("theirs" + std::to_string(i), -1), i);
    }
}

TEST_F(JsonUserDefaultsTest, AWriteThatFailedIsMadeUpForWithoutUndoingAnEdit) {
    folder.write(file, R"({"a": 1})");
    JsonUserDefaults defaults{file};
    fs::permissions(file, fs::perms{0400}); // nobody may write to it
    defaults.set("b", true);
    EXPECT_TRUE(defaults.get<bool>("b"));
    EXPECT_EQ(folder.read(file), R"({"a": 1})");
    fs::permissions(file, fs::perms{0600});
    folder.write(file, R"({"a": 2})");
    defaults.set("c", true);
    const JsonUserDefaults again{file};
    EXPECT_EQ(again.get<std::int64_t>("a"), 2);
    EXPECT_TRUE(again.get<bool>("b") && again.get<bool>("c"));
}

TEST_F(JsonUserDefaultsTest, TellsOnceOfADamagedFile) {
    folder.write(file, "{\n  \"a\": 1,\n  oops\n}");
    std::vector<std::string> told;
    JsonUserDefaults defaults{file};
    defaults.setDamageHandler([&](const std::string& sentence) { told.push_back(sentence); });
    EXPECT_THAT(told, testing::ElementsAre(testing::AllOf(testing::HasSubstr("(defaults.json, line 3)"),
                                                          testing::HasSubstr("its own defaults"),
                                                          testing::HasSubstr("“defaults.json.damaged”"))));
    defaults.reload();
    defaults.setWithNext("with", true);
    EXPECT_FALSE(fs::exists(file + ".damaged"));
    defaults.set("b", true);
    EXPECT_TRUE(JsonUserDefaults{file}.get<bool>("with"));
    EXPECT_EQ(told.size(), 1U);
    folder.write(file, "[]");
    defaults.reload();
    EXPECT_EQ(told.size(), 2U) << "it was well in between";
    EXPECT_THAT(told.back(), testing::HasSubstr("those it had"));
}

TEST_F(JsonUserDefaultsTest, WritesThroughALink) {
    fs::create_directory(folder.path("dotfiles"));
    const std::string real = folder.path("dotfiles/kippo.json");
    fs::create_symlink("dotfiles/kippo.json", file);
    JsonUserDefaults{file}.set("a", true); // where the link leads to nothing yet
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(JsonUserDefaults{real}.get<bool>("a"));
    folder.write(real, "damaged");
    JsonUserDefaults{file}.set("b", true);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(JsonUserDefaults{real}.get<bool>("b"));
    EXPECT_EQ(folder.read(real + ".damaged"), "damaged");
}

TEST_F(JsonUserDefaultsTest, ReadOnlyChangesTheMemoryOnly) {
    folder.write(file, R"({"a": 1})");
    JsonUserDefaults defaults{file, JsonUserDefaults::Access::readOnly};
    defaults.set("a", std::int64_t{2});
    EXPECT_EQ(defaults.get<std::int64_t>("a"), 2);
    EXPECT_EQ(folder.read(file), R"({"a": 1})");
}

} // namespace kippo
