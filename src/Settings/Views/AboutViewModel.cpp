#include "Settings/Views/AboutViewModel.h"

#include "Settings/Licences.h"
#include "Theme/Texts.h"

#include <utility>

namespace kippo {

AboutViewModel::AboutViewModel(std::string_view version, ReportActions report, Desktop& desktop, QObject* parent)
    : QObject(parent), version_(oneLine(version)), report_(std::move(report)), desktop_(desktop) {}

QVariantList AboutViewModel::components() {
    QVariantList all;
    for (const Component& component : kippo::components()) {
        all.append(QVariant::fromValue(ComponentLine{QString::fromLatin1(component.name),
                                                     QString::fromLatin1(component.purpose),
                                                     QString::fromLatin1(component.licence)}));
    }
    return all;
}

QString AboutViewModel::reportText() const {
    return report_.text ? QString::fromStdString(report_.text()).trimmed() : QString{};
}

bool AboutViewModel::sendReport() {
    setProblem(report_.send ? oneLine(report_.send()) : QString{});
    return problem_.isEmpty();
}

void AboutViewModel::copyReport() {
    if (report_.text) {
        desktop_.copy(report_.text());
    }
}

void AboutViewModel::clearProblem() { setProblem({}); }

void AboutViewModel::setProblem(const QString& problem) {
    if (problem_ != problem) {
        problem_ = problem;
        emit problemChanged();
    }
}

} // namespace kippo
