#include "desktop/Icons.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtGui/QIconEngine>
#include <QtGui/QImageReader>
#include <QtGui/QPainter>
#include <utility>

namespace marlune::desktop {
namespace {

// Draws at whatever size and pixel ratio is asked for.
class SvgEngine : public QIconEngine {
public:
    SvgEngine(QByteArray drawing, const QPalette& palette)
        : drawing_(std::move(drawing)), palette_(palette) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QByteArray coloured = drawing_;
        coloured.replace("currentColor",
                         palette_.color(group, QPalette::ButtonText).name().toLatin1());
        // Qt's plugin for such pictures draws them in the size that is asked for.
        QBuffer buffer(&coloured);
        QImageReader reader(&buffer, "svg");
        reader.setScaledSize(rect.size() * painter->device()->devicePixelRatioF());
        painter->drawImage(rect, reader.read());
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SvgEngine(*this); }

private:
    QByteArray drawing_;
    QPalette palette_;
};

}  // namespace

QIcon iconNamed(const char* name, const QPalette& palette) {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QIcon(new SvgEngine(file.readAll(), palette));
}

}  // namespace marlune::desktop
