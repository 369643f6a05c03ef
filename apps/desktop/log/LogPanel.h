// What happened: the control's boxes and texts, what the program says, and the trace of what went
// over the line when that is switched on.
#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>
#include <memory>

#include "desktop/log/TraceTail.h"

class QCheckBox;
class QPlainTextEdit;
class QTabWidget;

namespace marlune::desktop {

class LogPanel : public QWidget {
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);

    // With the time of day in front of it.
    void add(const QString& text);
    [[nodiscard]] QString text() const;
    // The file that the trace goes to; its end is shown while tracing is on.
    void setTraceFile(const QString& path);
    [[nodiscard]] QString traceText() const;

Q_SIGNALS:
    void tracingChanged(bool on);

private:
    void readTrace();

    QTabWidget* tabs_;
    QPlainTextEdit* messages_;
    QPlainTextEdit* trace_;
    QCheckBox* tracing_;
    QTimer timer_;
    TraceTail tail_;
};

}  // namespace marlune::desktop
