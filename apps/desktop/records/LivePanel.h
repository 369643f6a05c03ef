// Where the receiver is now: position, altitude, speed and course, and how good they are.
#pragma once

#include <QtWidgets/QWidget>
#include <optional>

#include "marlune/Records.h"
#include "marlune/qt/Units.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace marlune::desktop {

class LivePanel : public QWidget {
    Q_OBJECT

public:
    explicit LivePanel(QWidget* parent = nullptr);

    void setUnits(qt::Units units);
    void setAvailable(bool available);
    // Whether positions are being received.
    void setRunning(bool running);
    void setFix(const FixRecord& fix);
    [[nodiscard]] bool isFollowing() const;
    [[nodiscard]] QString positionShown() const;

Q_SIGNALS:
    void startAsked();
    void stopAsked();
    void followingChanged(bool following);

private:
    void show(const FixRecord& fix);

    QPushButton* start_;
    QCheckBox* follow_;
    QLabel* position_;
    QLabel* altitude_;
    QLabel* speed_;
    QLabel* course_;
    QLabel* time_;
    QLabel* quality_;
    qt::Units units_ = qt::Units::metric;
    std::optional<FixRecord> fix_;
    bool running_ = false;
};

// Over ground; nothing when the receiver tells no speed.
std::optional<double> speedOf(const FixRecord& fix);
// Degrees from north, clockwise; nothing while it stands still.
std::optional<double> courseOf(const FixRecord& fix);

}  // namespace marlune::desktop
