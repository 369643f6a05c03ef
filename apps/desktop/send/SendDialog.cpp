#include "desktop/send/SendDialog.h"

#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTableView>
#include <QtWidgets/QVBoxLayout>
#include <utility>

namespace marlune::desktop {

SendDialog::SendDialog(const Question& question, QWidget* parent)
    : QDialog(parent),
      question_(question),
      kinds_(new QButtonGroup(this)),
      summary_(new QLabel),
      table_(new QTableView) {
    setWindowTitle(tr("Send to the receiver"));
    auto* column = new QVBoxLayout(this);
    auto* to = new QLabel(tr("To %1:").arg(question.receiver));
    to->setTextFormat(Qt::PlainText);
    column->addWidget(to);
    addKinds(question);
    summary_->setWordWrap(true);
    summary_->setAccessibleName(tr("What changes or is lost"));
    table_->setAccessibleName(tr("What the receiver keeps"));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setTabKeyNavigation(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    table_->setAlternatingRowColors(true);
    table_->horizontalHeader()->setStretchLastSection(true);
    column->addWidget(summary_);
    column->addWidget(table_, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    send_ = buttons->addButton(tr("&Send"), QDialogButtonBox::AcceptRole);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(kinds_, &QButtonGroup::idToggled, this, [this](int /*id*/, bool on) {
        if (on) {
            showKind();
        }
    });
    resize(620, 420);
    showKind();
}

void SendDialog::addKinds(const Question& question) {
    const std::pair<GpxKind, QString> kinds[] = {
        {GpxKind::waypoints, tr("&Waypoints (%1)")},
        {GpxKind::tracks, tr("&Tracks (%1)")},
        {GpxKind::routes, tr("&Routes (%1)")},
    };
    auto* row = new QHBoxLayout;
    QRadioButton* first = nullptr;
    for (const auto& [kind, text] : kinds) {
        const int count = countOf(question.records, kind);
        auto* button = new QRadioButton(text.arg(count));
        const bool taken = question.rehearsal.takes(kind);
        button->setEnabled(count > 0 && taken);
        button->setToolTip(taken ? QString() : tr("The receiver does not take them"));
        kinds_->addButton(button, static_cast<int>(kind));
        row->addWidget(button);
        if (button->isEnabled() && (first == nullptr || kind == question.kind)) {
            first = button;
        }
    }
    row->addStretch();
    static_cast<QBoxLayout*>(layout())->addLayout(row);
    if (first != nullptr) {
        first->setChecked(true);
    }
}

std::optional<GpxKind> SendDialog::kind() const {
    const int id = kinds_->checkedId();
    return id < 0 ? std::nullopt : std::optional(static_cast<GpxKind>(id));
}

void SendDialog::showKind() {
    const auto chosen = kind();
    send_->setEnabled(chosen.has_value());
    if (!chosen) {
        summary_->setText(tr("There is nothing that this receiver takes."));
        return;
    }
    auto preview = std::make_unique<SendPreview>(question_.records, *chosen, question_.rehearsal);
    table_->setModel(preview.get());
    preview_ = std::move(preview);
    table_->resizeColumnsToContents();
    QString text = preview_->summary();
    text = text.isEmpty() ? tr("The receiver keeps everything.") : text + QLatin1Char('.');
    if (question_.isGuess) {
        text = tr("The receiver did not tell what it understands. What is sent on a guess may "
                  "spoil what it holds.") +
               QLatin1Char('\n') + text;
    }
    summary_->setText(text);
}

}  // namespace marlune::desktop
