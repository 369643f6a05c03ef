#include "marlune/qt/GpsControlWidget.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <limits>

#include "Engine.h"

// A static library's pictures are asked for; outside of any namespace.
static void findPicture() {
    Q_INIT_RESOURCE(marlune_qt);
}

namespace marlune::qt {
namespace {

constexpr QSize kSize(32, 32);  // the picture's

QPixmap picture() {
    findPicture();
    return {":/marlune/qt/picture.bmp"};
}

}  // namespace

GpsControlWidget::GpsControlWidget(QWidget* parent)
    : QWidget(parent), engine_(std::make_unique<Engine>(*this)) {
    setFixedSize(kSize);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

GpsControlWidget::~GpsControlWidget() = default;

QString GpsControlWidget::gpsMark() const {
    return engine_->mark;
}

int GpsControlWidget::numPort() const {
    return engine_->port;
}

QString GpsControlWidget::device() const {
    return engine_->device;
}

bool GpsControlWidget::debug() const {
    return engine_->debug;
}

QString GpsControlWidget::decimalSeparator() const {
    return engine_->separator;
}

double GpsControlWidget::patience() const {
    return engine_->patience;
}

bool GpsControlWidget::isConnected() const {
    return engine_->connected;
}

bool GpsControlWidget::isBusy() const {
    return engine_->isBusy();
}

std::shared_ptr<const Records> GpsControlWidget::records() const {
    return engine_->records;
}

TransferReport GpsControlWidget::lastTransfer() const {
    return engine_->transfer;
}

ConnectionReport GpsControlWidget::lastConnection() const {
    return engine_->connection;
}

QString GpsControlWidget::ident() const {
    return engine_->ident;
}

QString GpsControlWidget::protocols() const {
    return engine_->protocols;
}

void GpsControlWidget::addDriveFolder(const QString& folder) {
    engine_->set([path = folder.toStdString()](Worker& worker) { worker.addDriveFolder(path); });
}

void GpsControlWidget::setDocumentsFolder(const QString& folder) {
    engine_->set(
        [path = folder.toStdString()](Worker& worker) { worker.setDocumentsFolder(path); });
}

void GpsControlWidget::setDateReference(std::optional<double> reference) {
    engine_->set([reference](Worker& worker) { worker.control().setDateReference(reference); });
}

QSize GpsControlWidget::sizeHint() const {
    return kSize;
}

QSize GpsControlWidget::minimumSizeHint() const {
    return kSize;
}

void GpsControlWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(QPoint(0, 0), kSize), picture());
}

void GpsControlWidget::GetTime() {
    engine_->call(__func__);
}

void GpsControlWidget::SetDebug(const QString& value) {
    engine_->change(engine_->debug, value.compare("ON", Qt::CaseInsensitive) == 0,
                    &GpsControlWidget::debugChanged);
    engine_->call(__func__, value.toStdString());
}

void GpsControlWidget::SetGpsMark(const QString& value) {
    engine_->change(engine_->mark, value, &GpsControlWidget::gpsMarkChanged);
    engine_->call(__func__, value.toStdString());
}

void GpsControlWidget::StartPvtData() {
    engine_->call(__func__);
}

void GpsControlWidget::gpsConnect() {
    engine_->call(__func__);
}

void GpsControlWidget::gpsDisconnect() {
    engine_->call(__func__);
}

void GpsControlWidget::getTracks() {
    engine_->call(__func__);
}

void GpsControlWidget::getWaypts() {
    engine_->call(__func__);
}

void GpsControlWidget::GetRoutes() {
    engine_->call(__func__);
}

void GpsControlWidget::getIdent() {
    engine_->call(__func__);
}

void GpsControlWidget::getProximites() {
    engine_->call(__func__);
}

void GpsControlWidget::getPosition() {
    engine_->call(__func__);
}

void GpsControlWidget::setNumPort(int value) {
    if (value < static_cast<int>(marlune::numPort::Comm1) ||
        value > static_cast<int>(marlune::numPort::Comm40)) {
        return;
    }
    engine_->change(engine_->port, value, &GpsControlWidget::numPortChanged);
    engine_->call(__func__, static_cast<marlune::numPort>(value));
}

void GpsControlWidget::StopPvtData() {
    engine_->call(__func__);
}

void GpsControlWidget::StopTransfert() {
    engine_->call(__func__);
}

void GpsControlWidget::SendWaypts(const QString& Fic) {
    engine_->call(__func__, Fic.toStdString());
}

void GpsControlWidget::getProtocoles() {
    engine_->call(__func__);
}

void GpsControlWidget::SendRoutes(const QString& Fic) {
    engine_->call(__func__, Fic.toStdString());
}

void GpsControlWidget::SendTraces(const QString& Fic) {
    engine_->call(__func__, Fic.toStdString());
}

void GpsControlWidget::StartNMEA(const QString& NMEACode, int Delai) {
    using Seconds = std::numeric_limits<std::int16_t>;
    const int seconds = std::clamp(Delai, int{Seconds::min()}, int{Seconds::max()});
    engine_->call(__func__, NMEACode.toStdString(), static_cast<std::int16_t>(seconds));
}

void GpsControlWidget::StopNMEA() {
    engine_->call(__func__);
}

void GpsControlWidget::ResetComBuffers() {
    engine_->call(__func__);
}

void GpsControlWidget::setDevice(const QString& device) {
    engine_->change(engine_->device, device, &GpsControlWidget::deviceChanged);
    engine_->set([path = device.toStdString()](Worker& worker) { worker.setDevice(path); });
}

void GpsControlWidget::setDebug(bool on) {
    SetDebug(on ? "ON" : "OFF");
}

void GpsControlWidget::setDecimalSeparator(const QString& separator) {
    if (!separator.isEmpty() && separator != "." && separator != ",") {
        return;
    }
    engine_->change(engine_->separator, separator, &GpsControlWidget::decimalSeparatorChanged);
    const char character = separator.isEmpty() ? '\0' : separator[0].toLatin1();
    engine_->set([character](Worker& worker) { worker.setSeparator(character); });
}

void GpsControlWidget::setPatience(double seconds) {
    if (seconds >= 0) {
        engine_->change(engine_->patience, seconds, &GpsControlWidget::patienceChanged);
        engine_->set([seconds](Worker& worker) { worker.setMembersPatience(seconds); });
    }
}

void GpsControlWidget::stop() {
    engine_->stop();
}

}  // namespace marlune::qt
