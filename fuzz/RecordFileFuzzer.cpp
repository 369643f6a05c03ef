// Files of records of every format that is read, and the way back: what a reader gives can be
// written in all formats, and read again from those that are read.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string_view>

#include "Require.h"
#include "base/CodePage.h"
#include "marlune/RecordFiles.h"

namespace {

using namespace marlune;

std::string write(const Records& records, FileFormat format) {
    std::ostringstream out;
    const auto writer = makeRecordWriter(format, out);
    forEachRecord(records, *writer);
    writer->finish();
    require(writer->leftOut() == 0);
    return out.str();
}

void tryFormat(std::string_view content, FileFormat format) {
    RecordCollector read;
    readRecordText(content, format, read);
    for (const FileFormat each : {FileFormat::kml, FileFormat::geojson, FileFormat::lines}) {
        require(isUtf8(write(read.records, each)));
    }
    for (const FileFormat each : {FileFormat::gpx, FileFormat::csv}) {
        const std::string text = write(read.records, each);
        RecordCollector again;
        readRecordText(text, each, again);
        require(write(again.records, each) == text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view content(reinterpret_cast<const char*>(bytes), size);
    for (const FileFormat format : {FileFormat::gpx, FileFormat::csv, FileFormat::lines}) {
        try {
            tryFormat(content, format);
        } catch (const FileParseError& error) {
            require(error.place().offset <= size && error.place().line > 0);
        }
    }
    return 0;
}
