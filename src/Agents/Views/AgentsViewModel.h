#pragma once

#include "Agents/Views/SessionListModel.h"
#include "Support/Scheduler.h"

#include <QObject>
#include <span>

namespace kippo {

/// The agents page for QML: the rows, and what sums them up.
class AgentsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(kippo::SessionListModel* sessions READ sessions CONSTANT)
    Q_PROPERTY(QString needsYouText READ needsYouText NOTIFY summaryChanged)
    Q_PROPERTY(QString workingText READ workingText NOTIFY summaryChanged)
    Q_PROPERTY(QString restText READ restText NOTIFY summaryChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY summaryChanged)
    Q_PROPERTY(bool isVisible READ isVisible WRITE setVisible NOTIFY visibleChanged)

public:
    explicit AgentsViewModel(Scheduler& scheduler, QObject* parent = nullptr);

    SessionListModel* sessions() { return &sessions_; }
    /// "1 needs you"; empty when none does.
    const QString& needsYouText() const { return needsYouText_; }
    /// "2 working"; empty when none is.
    const QString& workingText() const { return workingText_; }
    /// "3 sessions" when all of them rest; empty otherwise, and without any.
    const QString& restText() const { return restText_; }
    bool isEmpty() const { return current_.empty(); }
    bool isVisible() const { return isVisible_; }

    /// The store's list, in its order.
    void show(std::span<const AgentSession> sessions);
    /// While the page is on screen its times are kept current.
    void setVisible(bool visible);

signals:
    void summaryChanged();
    void visibleChanged();

private:
    void format();
    void sumUp();

    Scheduler& scheduler_;
    std::vector<AgentSession> current_;
    SessionListModel sessions_;
    QString needsYouText_;
    QString workingText_;
    QString restText_;
    bool isVisible_ = false;
    Timer clock_;
};

} // namespace kippo
