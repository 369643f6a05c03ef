#include "storage/formats/Readers.h"

#include <stdexcept>

#include "resources/SymbolTable.h"

namespace marlune {
namespace {

void read(ByteSource source, FileFormat format, RecordSink& sink) {
    switch (format) {
        case FileFormat::gpx:
            return readGpx(source, sink);
        case FileFormat::csv:
            return readCsv(source, sink);
        case FileFormat::lines:
            return readLines(source, sink);
        case FileFormat::kml:
        case FileFormat::geojson:
            break;
    }
    throw std::invalid_argument("files of that format are not read");
}

}  // namespace

void readRecords(const std::string& path, FileFormat format, RecordSink& sink) {
    read(ByteSource::ofFile(path), format, sink);
}

void readRecordText(std::string_view content, FileFormat format, RecordSink& sink) {
    read(ByteSource::ofText(content), format, sink);
}

void LeftOutCount::tell(RecordSink& sink) const {
    if (count_ > 0) {
        sink.remark(std::to_string(count_) + " points without a position on earth were left out");
    }
}

std::int16_t SymbolNames::numberOf(const std::string& name, RecordSink& sink) {
    constexpr std::size_t kMostTold = 20;
    const auto symbol = symbolNamed(name);
    if (!symbol && unknown_.size() < kMostTold && unknown_.insert(name).second) {
        sink.remark("the symbol \"" + name + "\" is not known: " + symbolName(kDefaultSymbol) +
                    " takes its place");
    }
    return symbol.value_or(kDefaultSymbol);
}

}  // namespace marlune
