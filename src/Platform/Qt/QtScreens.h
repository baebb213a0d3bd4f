#pragma once

#include "Notch/Screens.h"

#include <QObject>
#include <QTimer>

class QScreen;

namespace kippo {

/// The screens as Qt knows them. Laptops' own screens are told by their outputs' names.
class QtScreens final : public QObject, public Screens {
public:
    QtScreens();

    std::vector<Screen> screens() const override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

private:
    void follow(QScreen* screen);

    QTimer changed_; ///< joins the many signals of one change, and lets a screen that leaves be gone
    Observers observers_;
};

} // namespace kippo
