#include "desktop/log/LogPanel.h"

#include <QtCore/QTime>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

namespace marlune::desktop {
namespace {

constexpr int kLongestLog = 5000;  // lines

QPlainTextEdit* makeLog(const QString& name) {
    auto* text = new QPlainTextEdit;
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setMaximumBlockCount(kLongestLog);
    text->setAccessibleName(name);
    return text;
}

}  // namespace

LogPanel::LogPanel(QWidget* parent)
    : QWidget(parent),
      tabs_(new QTabWidget),
      messages_(makeLog(tr("Messages"))),
      trace_(makeLog(tr("Trace"))),
      tracing_(new QCheckBox(tr("Write down every &byte on the line"))) {
    constexpr int kLook = 500;  // milliseconds
    auto* tracePage = new QWidget;
    auto* traceColumn = new QVBoxLayout(tracePage);
    traceColumn->setContentsMargins(0, 0, 0, 0);
    traceColumn->addWidget(tracing_);
    traceColumn->addWidget(trace_);
    trace_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    trace_->setLineWrapMode(QPlainTextEdit::NoWrap);
    tabs_->addTab(messages_, tr("&Messages"));
    tabs_->addTab(tracePage, tr("Tr&ace"));
    tabs_->setTabPosition(QTabWidget::West);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(tabs_);
    timer_.setInterval(kLook);
    connect(&timer_, &QTimer::timeout, this, &LogPanel::readTrace);
    connect(tracing_, &QCheckBox::toggled, this, [this](bool on) {
        on ? timer_.start() : timer_.stop();
        Q_EMIT tracingChanged(on);
    });
}

void LogPanel::add(const QString& text) {
    messages_->appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text);
}

QString LogPanel::text() const {
    return messages_->toPlainText();
}

void LogPanel::setTraceFile(const QString& path) {
    tail_ = TraceTail(path);
}

QString LogPanel::traceText() const {
    return trace_->toPlainText();
}

void LogPanel::readTrace() {
    const QString lines = tail_.next();
    if (!lines.isEmpty()) {
        trace_->appendPlainText(lines.chopped(1));
    }
}

}  // namespace marlune::desktop
