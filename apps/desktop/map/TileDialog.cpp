#include "desktop/map/TileDialog.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

namespace marlune::desktop {

TileDialog::TileDialog(const TileSource& source, QWidget* parent)
    : QDialog(parent),
      address_(new QLineEdit(source.address)),
      attribution_(new QLineEdit(source.attribution)) {
    setWindowTitle(tr("Background map"));
    auto* about = new QLabel(
        tr("Tiles of a map can be drawn below the tracks. They come from the server that you name "
           "here, which learns what you look at. Keep to its rules; most want to be named on the "
           "map. Without an address nothing is asked from the network."));
    about->setWordWrap(true);
    address_->setPlaceholderText(QStringLiteral("https://tiles.example.org/{z}/{x}/{y}.png"));
    address_->setMinimumWidth(380);
    attribution_->setPlaceholderText(tr("© the makers of the map"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* form = new QFormLayout(this);
    form->addRow(about);
    form->addRow(tr("&Address:"), address_);
    form->addRow(tr("&Named as:"), attribution_);
    form->addRow(buttons);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    const auto check = [this, ok] {
        ok->setEnabled(address_->text().trimmed().isEmpty() ||
                       (this->source().isUsable() && !this->source().attribution.isEmpty()));
    };
    connect(address_, &QLineEdit::textChanged, this, check);
    connect(attribution_, &QLineEdit::textChanged, this, check);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    check();
}

TileSource TileDialog::source() const {
    return {address_->text().trimmed(), attribution_->text().trimmed()};
}

}  // namespace marlune::desktop
