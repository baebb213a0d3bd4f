#pragma once

#include "Agents/LiveSummary.h"
#include "Agents/Views/SessionDetail.h"
#include "Agents/Views/SessionListModel.h"
#include "Agents/Views/StopConfirmation.h"
#include "Support/Scheduler.h"

#include <QObject>
#include <functional>
#include <span>

namespace kippo {

/// The agents page for QML: its sections, the sessions' rows, the one that is expanded, and what sums them up.
class AgentsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(kippo::AgentsViewModel::Section section READ section WRITE setSection NOTIFY sectionChanged)
    Q_PROPERTY(kippo::SessionListModel* sessions READ sessions CONSTANT)
    Q_PROPERTY(QString expandedId READ expandedId NOTIFY expandedIdChanged)
    Q_PROPERTY(kippo::SessionDetail* detail READ detail CONSTANT)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(QString clearText READ clearText NOTIFY summaryChanged)
    Q_PROPERTY(QString needsYouText READ needsYouText NOTIFY summaryChanged)
    Q_PROPERTY(QString workingText READ workingText NOTIFY summaryChanged)
    Q_PROPERTY(QString restText READ restText NOTIFY summaryChanged)
    Q_PROPERTY(int needsYou READ needsYou NOTIFY summaryChanged)
    Q_PROPERTY(int working READ working NOTIFY summaryChanged)
    Q_PROPERTY(int resting READ resting NOTIFY summaryChanged)
    Q_PROPERTY(QString spoken READ spoken NOTIFY summaryChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY summaryChanged)
    Q_PROPERTY(bool hasLights READ hasLights NOTIFY lightsChanged)
    Q_PROPERTY(bool isVisible READ isVisible WRITE setVisible NOTIFY visibleChanged)

public:
    // NOLINTNEXTLINE(readability-identifier-naming): QML knows enumerators only by names that begin with a capital
    enum class Section { Sessions, Usage, LeftBehind };
    Q_ENUM(Section)

    /// Whoever opens the page again within this time finds it as it was left; later it begins anew.
    static constexpr Seconds memory{20};

    explicit AgentsViewModel(Scheduler& scheduler, QObject* parent = nullptr);

    /// What the actions do; set by the application.
    std::function<void(const AgentSession&)> onDismiss;
    std::function<void()> onClear;
    std::function<void(Pid)> onStop;
    std::function<void(const std::string& address)> onOpenAddress;
    std::function<void(const std::string& path)> onOpenFolder;
    std::function<void(const std::string& text)> onCopy;

    /// Expands a row in place of another, or folds it up again.
    Q_INVOKABLE void toggle(const QString& id);
    /// These act on the expanded session.
    Q_INVOKABLE void dismiss() const;
    Q_INVOKABLE void stop();
    Q_INVOKABLE void openFolder() const;
    Q_INVOKABLE void copySessionId() const;
    Q_INVOKABLE void openPort(int port) const;
    Q_INVOKABLE void clearFinished() const;

    Section section() const { return section_; }
    void setSection(Section section);
    SessionListModel* sessions() { return &sessions_; }
    SessionDetail* detail() { return &detail_; }
    /// Empty when none is expanded.
    const QString& expandedId() const { return expandedId_; }
    /// Why the last action could not be done; empty when it could.
    const QString& problem() const { return problem_; }
    void showProblem(std::string_view sentence);
    /// "Clear 2 finished"; empty when there is nothing to clear.
    const QString& clearText() const { return clearText_; }
    /// "1 needs you"; empty when none does.
    const QString& needsYouText() const { return needsYouText_; }
    /// "2 working"; empty when none is.
    const QString& workingText() const { return workingText_; }
    /// "3 sessions" when all of them rest; empty otherwise, and without any.
    const QString& restText() const { return restText_; }
    /// The numbers in those texts; 0 where a text is empty.
    int needsYou() const { return live_.needsYou; }
    int working() const { return live_.working; }
    int resting() const { return restText_.isEmpty() ? 0 : static_cast<int>(current_.size()); }
    /// "Agents, 1 needs you, 2 working", for a screen reader.
    QString spoken() const;
    bool isEmpty() const { return current_.empty(); }
    /// Whether each row has a light for its status beside the words.
    bool hasLights() const { return hasLights_; }
    void setLights(bool shown);
    bool isVisible() const { return isVisible_; }

    /// The store's list, in its order, and how many of them could be cleared.
    void show(std::span<const AgentSession> sessions, std::size_t clearable = 0);
    /// While the page is on screen its times are kept current.
    void setVisible(bool visible);

signals:
    void sectionChanged();
    void expandedIdChanged();
    void problemChanged();
    void summaryChanged();
    void lightsChanged();
    void visibleChanged();
    /// The page is to be shown from its top.
    void begunAnew();

private:
    void format();
    void sumUp(std::size_t clearable);
    void expand(const QString& id);
    void showStop();
    void beginAnew();
    /// Nothing when none is expanded.
    const AgentSession* expanded() const;

    Scheduler& scheduler_;
    std::vector<AgentSession> current_;
    Section section_ = Section::Sessions;
    SessionListModel sessions_;
    QString expandedId_;
    SessionDetail detail_;
    StopConfirmation stopping_;
    QString problem_;
    QString clearText_;
    LiveSummary live_;
    QString needsYouText_;
    QString workingText_;
    QString restText_;
    bool hasLights_ = true;
    bool isVisible_ = false;
    Date hiddenAt_ = distantPast;
    Timer clock_;
};

} // namespace kippo
