#include "desktop/map/TileLayer.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkDiskCache>
#include <QtNetwork/QNetworkReply>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace marlune::desktop {
namespace {

constexpr qint64 kDiskBytes = qint64{100} << 20;
constexpr int kTilesInMemory = 400;
constexpr int kTilesUnderWay = 64;

QNetworkRequest tileRequest(const QUrl& url) {
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, QCoreApplication::applicationName() +
                                                            QLatin1Char('/') +
                                                            QCoreApplication::applicationVersion());
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
    request.setTransferTimeout();
    return request;
}

}  // namespace

size_t qHash(const TileId& tile, size_t seed) {
    return qHashMulti(seed, tile.z, tile.x, tile.y);
}

std::vector<PlacedTile> tilesOf(const Viewport& view, double pixelRatio, int deepest) {
    const double level = std::round(view.zoom() + std::log2(pixelRatio));
    const int z = std::clamp(static_cast<int>(level), 0, deepest);
    const int count = 1 << z;
    const WorldArea area = view.area();
    const auto tileAt = [=](double world) { return static_cast<int>(std::floor(world * count)); };
    std::vector<PlacedTile> tiles;
    const int last = std::min(tileAt(area.bottom), count - 1);
    for (int y = std::max(tileAt(area.top), 0); y <= last; ++y) {
        for (int x = tileAt(area.left); x <= tileAt(area.right); ++x) {
            const double side = 1.0 / count;
            const QPointF first = view.screenOf(WorldPoint{x * side, y * side});
            const QPointF end = view.screenOf(WorldPoint{(x + 1) * side, (y + 1) * side});
            tiles.push_back({{z, ((x % count) + count) % count, y}, QRectF(first, end)});
        }
    }
    return tiles;
}

bool TileSource::isUsable() const {
    const QString scheme = QUrl(address).scheme();
    const bool known = scheme == QLatin1String("http") || scheme == QLatin1String("https") ||
                       scheme == QLatin1String("file");
    return known && address.contains(QLatin1String("{z}")) &&
           address.contains(QLatin1String("{x}")) && address.contains(QLatin1String("{y}"));
}

QUrl TileSource::urlOf(const TileId& tile) const {
    QString text = address;
    text.replace(QLatin1String("{z}"), QString::number(tile.z));
    text.replace(QLatin1String("{x}"), QString::number(tile.x));
    text.replace(QLatin1String("{y}"), QString::number(tile.y));
    return QUrl(text);
}

TileLayer::TileLayer(const QString& folder, QObject* parent)
    : QObject(parent), network_(new QNetworkAccessManager(this)), tiles_(kTilesInMemory) {
    auto* disk = new QNetworkDiskCache(network_);
    disk->setCacheDirectory(folder);
    disk->setMaximumCacheSize(kDiskBytes);
    network_->setCache(disk);
}

void TileLayer::setSource(TileSource source) {
    source_ = source.isUsable() ? std::move(source) : TileSource();
    tiles_.clear();
    asked_.clear();
    Q_EMIT changed();
}

void TileLayer::paint(QPainter& painter, const Viewport& view, double pixelRatio) {
    if (source_.address.isEmpty()) {
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const PlacedTile& placed : tilesOf(view, pixelRatio)) {
        paintTile(painter, placed);
    }
}

// A tile that is not there yet is stood in for by the part of a coarser one that is.
void TileLayer::paintTile(QPainter& painter, const PlacedTile& placed) {
    constexpr int kCoarser = 4;
    if (!tiles_.contains(placed.tile)) {
        ask(placed.tile);
    }
    for (int up = 0; up <= std::min(kCoarser, placed.tile.z); ++up) {
        const TileId tile{placed.tile.z - up, placed.tile.x >> up, placed.tile.y >> up};
        if (const QPixmap* pixmap = tiles_.object(tile)) {
            const double side = static_cast<double>(pixmap->width()) / (1 << up);
            const QRectF part(side * (placed.tile.x - (tile.x << up)),
                              side * (placed.tile.y - (tile.y << up)), side, side);
            painter.drawPixmap(placed.at, *pixmap, part);
            return;
        }
    }
}

void TileLayer::ask(const TileId& tile) {
    if (asked_.contains(tile) || asked_.size() - tiles_.size() > kTilesUnderWay) {
        return;
    }
    asked_.insert(tile);
    QNetworkReply* reply = network_->get(tileRequest(source_.urlOf(tile)));
    connect(reply, &QNetworkReply::finished, this, [this, tile, reply] { take(tile, *reply); });
}

void TileLayer::take(const TileId& tile, QNetworkReply& reply) {
    reply.deleteLater();
    const bool isOfThisSource = reply.request().url() == source_.urlOf(tile);
    auto pixmap = std::make_unique<QPixmap>();
    if (isOfThisSource && reply.error() == QNetworkReply::NoError &&
        pixmap->loadFromData(reply.readAll())) {
        tiles_.insert(tile, pixmap.release());
        Q_EMIT changed();
    }
}

}  // namespace marlune::desktop
