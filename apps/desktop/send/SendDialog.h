// Asks, once, whether records are to be sent: which kind, and what the receiver will keep of them.
#pragma once

#include <QtWidgets/QDialog>
#include <memory>
#include <optional>

#include "desktop/send/SendPreview.h"

class QButtonGroup;
class QLabel;
class QPushButton;
class QTableView;

namespace marlune::desktop {

class SendDialog : public QDialog {
    Q_OBJECT

public:
    struct Question {
        const Records& records;      // must outlive the dialog
        const Rehearsal& rehearsal;  // likewise
        QString receiver;
        bool isGuess = false;               // its protocols are a guess
        GpxKind kind = GpxKind::waypoints;  // chosen at first, when there are any
    };
    explicit SendDialog(const Question& question, QWidget* parent = nullptr);

    // Nothing when there is nothing that the receiver takes.
    [[nodiscard]] std::optional<GpxKind> kind() const;
    [[nodiscard]] const SendPreview* preview() const { return preview_.get(); }

private:
    void addKinds(const Question& question);
    void showKind();

    Question question_;
    QButtonGroup* kinds_;
    QLabel* summary_;
    QTableView* table_;
    QPushButton* send_;
    std::unique_ptr<SendPreview> preview_;
};

}  // namespace marlune::desktop
