#include "desktop/NoticeBar.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolButton>

namespace marlune::desktop {
namespace {

QStyle::StandardPixmap pictureOf(Session::Tone tone) {
    switch (tone) {
        case Session::Tone::good:
            return QStyle::SP_MessageBoxInformation;
        case Session::Tone::partly:
            return QStyle::SP_MessageBoxWarning;
        case Session::Tone::bad:
            break;
    }
    return QStyle::SP_MessageBoxCritical;
}

}  // namespace

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent), icon_(new QLabel), text_(new QLabel) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text_->setAccessibleName(tr("Notice"));
    auto* close = new QToolButton;
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close this notice"));
    close->setAccessibleName(close->toolTip());
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 6, 3);
    row->addWidget(icon_);
    row->addWidget(text_, 1);
    row->addWidget(close);
    hide();
}

void NoticeBar::show(Session::Tone tone, const QString& text) {
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize) * 3 / 2;
    icon_->setPixmap(style()->standardIcon(pictureOf(tone)).pixmap(side, side));
    text_->setText(text);
    setVisible(true);
    QAccessibleEvent event(text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString NoticeBar::text() const {
    return text_->text();
}

}  // namespace marlune::desktop
