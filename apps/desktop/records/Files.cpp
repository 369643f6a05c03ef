#include "desktop/records/Files.h"

#include <QtCore/QDateTime>
#include <array>
#include <exception>
#include <optional>
#include <system_error>
#include <utility>

namespace marlune::desktop {
namespace {

struct FormatName {
    FileFormat format;
    const char* text;
    const char* suffix;
    bool isRead;
};
constexpr std::array kFormats = {
    FormatName{FileFormat::gpx, "GPX (*.gpx)", ".gpx", true},
    FormatName{FileFormat::kml, "KML (*.kml)", ".kml", false},
    FormatName{FileFormat::csv, "CSV (*.csv)", ".csv", true},
    FormatName{FileFormat::geojson, "GeoJSON (*.geojson)", ".geojson", false},
    FormatName{FileFormat::lines, "Text (*.txt)", ".txt", true},
};

class Reading : public RecordCollector {
public:
    QStringList remarks;

    void remark(const std::string& text) override { remarks.append(QString::fromStdString(text)); }
};

FileFormat formatToRead(const QString& path) {
    const auto format = fileFormatOf(path.toStdString());
    return format.value_or(FileFormat::lines);
}

}  // namespace

QString openFilter() {
    QStringList patterns;
    for (const FormatName& each : kFormats) {
        if (each.isRead) {
            patterns.append(QLatin1Char('*') + QLatin1String(each.suffix));
        }
    }
    return QObject::tr("GPS files (%1)").arg(patterns.join(QLatin1Char(' '))) +
           QStringLiteral(";;") + QObject::tr("All files (*)");
}

QString saveFilter() {
    QStringList entries;
    for (const FormatName& each : kFormats) {
        entries.append(QLatin1String(each.text));
    }
    return entries.join(QStringLiteral(";;"));
}

QString withSuffix(const QString& path, const QString& filter) {
    if (fileFormatOf(path.toStdString())) {
        return path;
    }
    for (const FormatName& each : kFormats) {
        if (filter == QLatin1String(each.text)) {
            return path + QLatin1String(each.suffix);
        }
    }
    return path + QLatin1String(kFormats.front().suffix);
}

std::size_t saveFile(const Records& records, const QString& path, const QString& source) {
    const auto format = fileFormatOf(path.toStdString());
    FileHead head;
    head.source = source.toStdString();
    head.time = static_cast<double>(QDateTime::currentSecsSinceEpoch());
    return saveRecords(records, format.value_or(FileFormat::gpx), path.toStdString(), head);
}

struct FileReader::Outcome {
    QString path;
    std::shared_ptr<Records> records;  // none: it failed
    QStringList remarks;
    QString reason;
};

FileReader::~FileReader() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void FileReader::read(const QString& path) {
    if (isReading()) {
        next_ = path;
        return;
    }
    thread_ = std::thread([this, path] {
        Outcome outcome{path, nullptr, {}, {}};
        Reading reading;
        try {
            readRecords(path.toStdString(), formatToRead(path), reading);
            outcome.records = std::make_shared<Records>(std::move(reading.records));
            outcome.remarks = reading.remarks;
        } catch (const FileParseError& error) {
            outcome.reason =
                tr("line %1: %2").arg(error.place().line).arg(QString::fromUtf8(error.what()));
        } catch (const std::system_error& error) {
            outcome.reason = QString::fromStdString(error.code().message());
        } catch (const std::exception& error) {
            outcome.reason = tr("files of this kind are written only, not read");
        }
        QMetaObject::invokeMethod(this, [this, outcome] { take(outcome); });
    });
}

void FileReader::take(const Outcome& outcome) {
    thread_.join();
    if (const QString next = std::exchange(next_, {}); !next.isEmpty()) {
        read(next);
    } else if (outcome.records) {
        Q_EMIT finished(outcome.path, outcome.records, outcome.remarks);
    } else {
        Q_EMIT failed(outcome.path, outcome.reason);
    }
}

}  // namespace marlune::desktop
