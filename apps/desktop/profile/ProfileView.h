// The altitude profile of the chosen track. Its cursor follows the mouse, or the arrow keys.
#pragma once

#include <QtCharts/QChartView>
#include <optional>

#include "desktop/profile/Profile.h"
#include "marlune/qt/Units.h"

class QAreaSeries;
class QLineSeries;
class QValueAxis;

namespace marlune::desktop {

class ProfileView : public QChartView {
    Q_OBJECT

public:
    explicit ProfileView(QWidget* parent = nullptr);

    // Nothing for no track. An empty profile says that there are no altitudes.
    void setTrack(const TrackRecord* track);
    void setUnits(qt::Units units);
    [[nodiscard]] const Profile& profile() const { return profile_; }
    // The mark under the cursor; -1 for none.
    [[nodiscard]] int cursorMark() const { return cursor_; }
    void setCursorMark(int mark);

Q_SIGNALS:
    // The number of the track's point under the cursor; -1 for none.
    void cursorMoved(int point);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;
    [[nodiscard]] QSize sizeHint() const override { return {480, 200}; }

private:
    void takePalette();
    void rebuild();
    [[nodiscard]] QString cursorText() const;

    QLineSeries* line_;
    QLineSeries* floor_;
    QAreaSeries* area_;
    QValueAxis* distance_;
    QValueAxis* altitude_;
    bool hasTrack_ = false;
    Profile profile_;
    qt::Units units_ = qt::Units::metric;
    int cursor_ = -1;
};

}  // namespace marlune::desktop
