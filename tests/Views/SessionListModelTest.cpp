#include "Agents/Views/SessionListModel.h"
#include "Fakes/Each.h"
#include "Samples.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kippo {
namespace {

SessionRow row(const QString& id, const QString& sentence = {}) {
    SessionRow made;
    made.id = id;
    made.title = QStringLiteral("Codex");
    made.sentence = sentence;
    return made;
}

std::vector<SessionRow> rows(const QString& ids) {
    return each(ids, [](QChar id) { return row(id); });
}

} // namespace

TEST(SessionListModel, BecomesTheNewListByRowDifferences) {
    constexpr struct {
        const char *from, *to;
        int insertions, removals, moves;
    } transitions[] = {{"", "", 0, 0, 0},        {"", "abc", 3, 0, 0},    {"abc", "abc", 0, 0, 0},
                       {"abc", "", 0, 3, 0},     {"abc", "cab", 0, 0, 1}, {"abc", "xabc", 1, 0, 0},
                       {"abc", "abxc", 1, 0, 0}, {"abc", "ac", 0, 1, 0},  {"abc", "cba", 0, 0, 2},
                       {"abcd", "dxb", 1, 2, 1}, {"ab", "xy", 2, 2, 0}};
    for (const auto& [from, to, insertions, removals, moves] : transitions) {
        SCOPED_TRACE(std::string{from} + " to " + to);
        SessionListModel model;
        const QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
        model.show(rows(from));
        const QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
        const QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
        const QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
        const QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
        const QSignalSpy reset{&model, &QAbstractItemModel::modelReset};
        model.show(rows(to));
        EXPECT_EQ(column(model, "sessionId").join(""), to);
        EXPECT_EQ(inserted.count(), insertions);
        EXPECT_EQ(removed.count(), removals);
        EXPECT_EQ(moved.count(), moves);
        EXPECT_EQ(changed.count() + reset.count(), 0);
    }
}

TEST(SessionListModel, NameOnlyTheRolesThatDiffer) {
    SessionListModel model;
    model.show(std::vector{row("a", "Working"), row("b", "Working")});
    const QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};

    SessionRow finished = row("b", "Finished");
    finished.status = AgentLook::Status::Done;
    model.show(std::vector{row("a", "Working"), finished});

    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][2].value<QList<int>>(),
              (QList<int>{model.roleNames().key("status"), model.roleNames().key("sentence")}));
}

TEST(SessionListModel, ARowThatMovesIsStillItself) {
    SessionListModel model;
    model.show(std::vector{row("a", "Working"), row("b", "Working")});
    const QPersistentModelIndex kept{model.index(1)};

    model.show(std::vector{row("b", "Needs you"), row("a", "Working")});

    EXPECT_EQ(kept.row(), 0);
    EXPECT_EQ(model.data(kept, model.roleNames().key("sentence")).toString(), "Needs you");
}

TEST(SessionListModel, OfRowsWithOneIdTheFirstCounts) {
    SessionListModel model;
    model.show(std::vector{row("a", "first"), row("a", "second"), row("b")});
    EXPECT_EQ(column(model, "sessionId").join(""), "ab");
    EXPECT_EQ(column(model, "sentence")[0], "first");
}

} // namespace kippo
