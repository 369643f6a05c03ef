// A line above the records that says how the last thing went, until the user closes it.
#pragma once

#include <QtWidgets/QFrame>

#include "desktop/session/Session.h"

class QLabel;

namespace marlune::desktop {

class NoticeBar : public QFrame {
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent = nullptr);

    void show(Session::Tone tone, const QString& text);
    [[nodiscard]] QString text() const;

private:
    QLabel* icon_;
    QLabel* text_;
};

}  // namespace marlune::desktop
