#include "desktop/receivers/ReceiverPanel.h"

#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "desktop/Icons.h"
#include "marlune/qt/GpsControlWidget.h"

namespace marlune::desktop {
namespace {

QLabel* makeText(const QString& name) {
    auto* label = new QLabel;
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);  // it is a receiver's
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAccessibleName(name);
    return label;
}

}  // namespace

ReceiverPanel::ReceiverPanel(ReceiverModel& model, qt::GpsControlWidget& control, QWidget* parent)
    : QWidget(parent),
      model_(model),
      list_(new QListView),
      refresh_(new QPushButton(tr("Refr&esh"))),
      connect_(new QPushButton),
      identity_(makeText(tr("Connected receiver"))),
      protocols_(makeText(tr("Protocols of the receiver"))) {
    auto* title = new QLabel(tr("Re&ceivers"));
    title->setBuddy(list_);
    list_->setModel(&model_);
    list_->setAccessibleName(tr("Receivers"));
    list_->setWordWrap(true);
    list_->setAlternatingRowColors(true);
    list_->setSpacing(2);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setResizeMode(QListView::Adjust);
    refresh_->setIcon(iconNamed("refresh", palette()));
    refresh_->setToolTip(tr("Ask every port that something is plugged into (F5)"));
    connect_->setIcon(iconNamed("connect", palette()));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(refresh_);
    buttons->addWidget(connect_);
    auto* about = new QGroupBox(tr("Connected receiver"));
    auto* row = new QHBoxLayout;
    row->addWidget(&control, 0, Qt::AlignTop);
    row->addWidget(identity_, 1);
    auto* aboutColumn = new QVBoxLayout(about);
    aboutColumn->addLayout(row);
    aboutColumn->addWidget(protocols_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(title);
    column->addWidget(list_, 1);
    column->addLayout(buttons);
    column->addWidget(about);

    connect(refresh_, &QPushButton::clicked, this, &ReceiverPanel::refreshAsked);
    connect(connect_, &QPushButton::clicked, this, &ReceiverPanel::toggle);
    connect(list_, &QListView::activated, this, [this] {
        if (state_ == State::free) {
            toggle();
        }
    });
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ReceiverPanel::enable);
    connect(&model_, &QAbstractItemModel::modelReset, this, &ReceiverPanel::enable);
    setReceiver({}, {});
    setState(State::free);
}

std::optional<Receiver> ReceiverPanel::chosen() const {
    const QModelIndex index = list_->currentIndex();
    return index.isValid() ? std::optional(model_.receiver(index.row())) : std::nullopt;
}

bool ReceiverPanel::choose(const QString& path) {
    const int row = model_.rowOf(path);
    list_->setCurrentIndex(model_.index(row));
    return row >= 0;
}

void ReceiverPanel::setLooking(bool looking) {
    refresh_->setEnabled(!looking);
    refresh_->setText(looking ? tr("Looking …") : tr("Refr&esh"));
}

void ReceiverPanel::setState(State state) {
    state_ = state;
    connect_->setText(state == State::free         ? tr("Co&nnect")
                      : state == State::connecting ? tr("Stop co&nnecting")
                                                   : tr("Disco&nnect"));
    enable();
}

void ReceiverPanel::enable() {
    connect_->setEnabled(state_ != State::free || chosen().has_value());
    list_->setEnabled(state_ == State::free);
}

void ReceiverPanel::setReceiver(const QString& identity, const QString& protocols) {
    identity_->setText(identity.isEmpty() ? tr("none") : identity);
    protocols_->setText(protocols);
    protocols_->setVisible(!protocols.isEmpty());
}

QString ReceiverPanel::identityShown() const {
    return identity_->text();
}

void ReceiverPanel::toggle() {
    if (state_ != State::free) {
        Q_EMIT disconnectAsked();
    } else if (const auto receiver = chosen()) {
        Q_EMIT connectAsked(*receiver);
    }
}

}  // namespace marlune::desktop
