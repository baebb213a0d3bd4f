#include "Settings/Views/AgentSettingsViewModel.h"

#include "SettingsFixture.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kippo {
namespace {

using Kind = AgentLook::Kind;

struct AgentSettingsViewModelTest : testing::Test, SettingsFixture {
    AgentSettingsViewModel settings{store, scheduler};
    const AgentSettingsRow& row(HookAgent agent) {
        return settings.hookAgents()->rows().at(static_cast<std::size_t>(agent));
    }
};

TEST_F(AgentSettingsViewModelTest, WhatIsShownBeforehandIsWhatIsWritten) {
    userFiles.files[claudeFile()] = "{\n  \"model\": \"opus\"\n}\n";
    const std::unique_ptr<PlannedChange> planned{settings.plannedChange(Kind::Claude, true)};
    QString added;
    for (int i = 0; i < planned->rowCount(); ++i) {
        const QModelIndex line = planned->index(i);
        if (line.data(PlannedChange::markRole) != u"-"_qs) {
            added += line.data(PlannedChange::lineRole).toString() + u'\n';
        }
    }
    EXPECT_EQ(planned->file(), "~/.claude/settings.json");
    EXPECT_EQ(userFiles.written.size(), 0U);

    settings.connectAgent(Kind::Claude);
    EXPECT_EQ(QString::fromStdString(userFiles.files[claudeFile()]), added);
    EXPECT_TRUE(row(HookAgent::claude).isConnected);
    const std::unique_ptr<PlannedChange> again{settings.plannedChange(Kind::Claude, true)};
    EXPECT_FALSE(again->isNeeded() || again->isImpossible());

    settings.disconnectAgent(Kind::Claude);
    EXPECT_FALSE(row(HookAgent::claude).isConnected);
    EXPECT_EQ(userFiles.files[claudeFile()], "{\n  \"model\": \"opus\"\n}\n");
}

TEST_F(AgentSettingsViewModelTest, AConnectionIsProvenByAnEventAndNothingElse) {
    settings.connectAgent(Kind::Codex);
    EXPECT_FALSE(row(HookAgent::codex).isProven);
    EXPECT_FALSE(row(HookAgent::codex).advice.isEmpty());
    scheduler.advance(Seconds{60});
    hear(HookAgent::codex);
    EXPECT_TRUE(row(HookAgent::codex).isProven);
    EXPECT_EQ(row(HookAgent::codex).sentence, "Connected and heard from just now");
    scheduler.advance(Seconds{125});
    EXPECT_EQ(row(HookAgent::codex).sentence, "Connected and heard from 2 min ago");
}

TEST_F(AgentSettingsViewModelTest, AFileThatCannotBeEditedIsNamedUntilDismissed) {
    userFiles.files[claudeFile()] = "{ // mine\n}";
    const std::unique_ptr<PlannedChange> planned{settings.plannedChange(Kind::Claude, true)};
    EXPECT_TRUE(planned->isImpossible());
    QSignalSpy changed{&settings, &AgentSettingsViewModel::changed};
    settings.connectAgent(Kind::Claude);
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(row(HookAgent::claude).isConnected);
    EXPECT_EQ(settings.installError(), planned->summary());
    EXPECT_TRUE(settings.installError().contains(u"settings.json isn't valid JSON"));
    EXPECT_EQ(userFiles.files[claudeFile()], "{ // mine\n}");
    settings.clearInstallError();
    EXPECT_EQ(settings.installError(), "");

    userFiles.full.insert(home.path(".codex/AGENTS.md"));
    settings.askForSummary(Kind::Codex, true);
    EXPECT_FALSE(row(HookAgent::codex).asksForSummary);
    EXPECT_NE(settings.installError(), "");
}

TEST_F(AgentSettingsViewModelTest, WhatIsChosenIsStored) {
    const QSignalSpy changes{settings.hookAgents(), &QAbstractItemModel::dataChanged};
    settings.setListed(Kind::Aider, false);
    EXPECT_EQ(changes.count(), 0);
    settings.setLights(Kind::Gemini, false);
    EXPECT_EQ(changes.count(), 1) << "one row";
    settings.askForSummary(Kind::Claude, true);
    EXPECT_EQ(settings.watch(u"  goose "_qs), "");
    EXPECT_NE(settings.watch(u"Goose"_qs), "");
    defaults.set("hiddenProcesses", std::vector<std::string>{"vite", "next dev"});
    settings.unhideProcess(u"vite"_qs);

    EXPECT_FALSE(row(HookAgent::gemini).hasLights);
    EXPECT_TRUE(row(HookAgent::claude).asksForSummary);
    EXPECT_TRUE(row(HookAgent::cursor).instructionsFile.isEmpty());
    AgentStore later{home.places(), ports(scheduler, defaults)};
    EXPECT_TRUE(later.isHidden(AgentKind::aider));
    EXPECT_FALSE(later.drivesLights(AgentKind::gemini));
    EXPECT_EQ(later.watchedNames(), (std::vector<std::string>{"goose"}));
    EXPECT_EQ(later.hiddenProcesses(), (std::vector<std::string>{"next dev"}));

    settings.copyPrompt(Kind::Gemini);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), store.setupPrompt(HookAgent::gemini));
    EXPECT_NE(store.setupPrompt(HookAgent::gemini), "");
    settings.unwatch(u"goose"_qs);
    EXPECT_TRUE(settings.watched()->isEmpty());
}

TEST_F(AgentSettingsViewModelTest, SuggestionsAreTakenUpOrDeclined) {
    processes.table = {process(10, 1, 90, "goose session"), process(11, 1, 90, "crush")};
    store.refreshProcesses();
    ASSERT_EQ(settings.suggestions()->rowCount(), 2);
    settings.dismissSuggestion(u"crush"_qs);
    settings.watch(u"goose"_qs);
    EXPECT_TRUE(settings.suggestions()->isEmpty());
    EXPECT_EQ(settings.watched()->rowCount(), 1);
}

TEST_F(AgentSettingsViewModelTest, ListsSendRowDifferences) {
    for (QAbstractItemModel* model :
         std::initializer_list<QAbstractItemModel*>{settings.hookAgents(), settings.watched()}) {
        new QAbstractItemModelTester{model, QAbstractItemModelTester::FailureReportingMode::Fatal, model};
    }
    const QSignalSpy resets{settings.watched(), &QAbstractItemModel::modelReset};
    for (const std::vector<std::string>& names :
         {std::vector<std::string>{"a", "b", "c"}, {"c", "a", "d"}, {"d"}, {"d", "a"}, {}}) {
        defaults.set("watchedAgentNames", names);
        std::vector<std::string> shown;
        for (const NameRow& row : settings.watched()->rows()) {
            shown.push_back(row.name.toStdString());
        }
        EXPECT_EQ(shown, names);
    }
    EXPECT_EQ(resets.count(), 0);
}

} // namespace
} // namespace kippo
