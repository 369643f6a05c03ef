#include "desktop/records/LivePanel.h"

#include <QtCore/QLocale>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <cmath>
#include <numbers>

namespace marlune::desktop {
namespace {

QLabel* addValue(QFormLayout& form, const QString& name) {
    auto* label = new QLabel;
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAccessibleName(name);
    form.addRow(name + QLatin1Char(':'), label);
    return label;
}

void makeLarge(QLabel& label) {
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    label.setFont(font);
}

}  // namespace

std::optional<double> speedOf(const FixRecord& fix) {
    if (!fix.eastSpeed || !fix.northSpeed) {
        return std::nullopt;
    }
    return std::hypot(*fix.eastSpeed, *fix.northSpeed);
}

std::optional<double> courseOf(const FixRecord& fix) {
    constexpr double kStanding = 0.1;
    const auto speed = speedOf(fix);
    if (!speed || *speed < kStanding) {
        return std::nullopt;
    }
    const double degrees = std::atan2(*fix.eastSpeed, *fix.northSpeed) * 180 / std::numbers::pi;
    return degrees < 0 ? degrees + 360 : degrees;
}

LivePanel::LivePanel(QWidget* parent)
    : QWidget(parent), start_(new QPushButton), follow_(new QCheckBox(tr("Follow on the ma&p"))) {
    auto* form = new QFormLayout(this);
    form->addRow(start_);
    form->addRow(follow_);
    position_ = addValue(*form, tr("Position"));
    speed_ = addValue(*form, tr("Speed"));
    course_ = addValue(*form, tr("Course"));
    altitude_ = addValue(*form, tr("Altitude"));
    time_ = addValue(*form, tr("Time"));
    quality_ = addValue(*form, tr("Quality"));
    makeLarge(*position_);
    makeLarge(*speed_);
    follow_->setChecked(true);
    setRunning(false);
    setAvailable(false);
    connect(start_, &QPushButton::clicked, this, [this] { running_ ? stopAsked() : startAsked(); });
    connect(follow_, &QCheckBox::toggled, this, &LivePanel::followingChanged);
}

void LivePanel::setAvailable(bool available) {
    start_->setEnabled(available || running_);
}

void LivePanel::setRunning(bool running) {
    running_ = running;
    start_->setText(running ? tr("&Stop receiving positions") : tr("&Start receiving positions"));
}

bool LivePanel::isFollowing() const {
    return follow_->isChecked();
}

QString LivePanel::positionShown() const {
    return position_->text();
}

void LivePanel::setUnits(qt::Units units) {
    units_ = units;
    if (fix_) {
        show(*fix_);
    }
}

void LivePanel::setFix(const FixRecord& fix) {
    fix_ = fix;
    show(fix);
}

void LivePanel::show(const FixRecord& fix) {
    const auto speed = speedOf(fix);
    const auto course = courseOf(fix);
    position_->setText(qt::positionText(fix.latitude, fix.longitude));
    speed_->setText(speed ? qt::speedText(*speed, units_) : QString());
    course_->setText(course ? QLocale().toString(*course, 'f', 0) + QStringLiteral("°")
                            : QString());
    altitude_->setText(fix.altitude ? qt::heightText(*fix.altitude, units_) : QString());
    time_->setText(fix.time ? qt::timeText(*fix.time) : QString());
    constexpr int kTwoDimensional = 2;
    QString quality;
    if (fix.quality) {
        quality = *fix.quality % 2 == kTwoDimensional % 2 ? tr("two-dimensional")
                                                          : tr("three-dimensional");
    }
    if (fix.error) {
        quality += tr(", within %1").arg(qt::heightText(*fix.error, units_));
    }
    quality_->setText(quality);
}

}  // namespace marlune::desktop
