// The left side of the window: which receivers there are, which is connected and what it can do.
#pragma once

#include <QtWidgets/QWidget>
#include <optional>

#include "desktop/receivers/ReceiverModel.h"

class QLabel;
class QListView;
class QPushButton;

namespace marlune::qt {
class GpsControlWidget;
}

namespace marlune::desktop {

class ReceiverPanel : public QWidget {
    Q_OBJECT

public:
    // Places the control on itself; it stays the caller's to use.
    ReceiverPanel(ReceiverModel& model, qt::GpsControlWidget& control, QWidget* parent = nullptr);

    [[nodiscard]] std::optional<Receiver> chosen() const;
    // False when it is not in the list.
    bool choose(const QString& path);

    void setLooking(bool looking);
    enum class State { free, connecting, connected };
    void setState(State state);
    // Of the connected receiver; empty texts for none.
    void setReceiver(const QString& identity, const QString& protocols);
    [[nodiscard]] QString identityShown() const;

Q_SIGNALS:
    void refreshAsked();
    void connectAsked(const marlune::desktop::Receiver& receiver);
    void disconnectAsked();

private:
    void toggle();
    void enable();

    ReceiverModel& model_;
    QListView* list_;
    QPushButton* refresh_;
    QPushButton* connect_;
    QLabel* identity_;
    QLabel* protocols_;
    State state_ = State::free;
};

}  // namespace marlune::desktop
