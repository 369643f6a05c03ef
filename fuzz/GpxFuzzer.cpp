// GPX files of every kind, and the way back: what a file gives as lines can be written, and read
// again.
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "base/CodePage.h"
#include "marlune/Gpx.h"
#include "support/TempFolder.h"

namespace {

using namespace marlune;

void tryKind(std::string_view content, GpxKind kind) {
    static const TempFolder folder;
    const auto lines = GpxReader(kind).readText(content);
    GpxWriter writer;
    for (const std::string& line : lines) {
        require(isUtf8(line) && line.find_first_of("\r\n") == std::string::npos);
        writer.addLine(line);
    }
    require(writer.leftOut() == 0);
    const std::string path = (folder.path() / "out.gpx").string();
    writer.save(path);
    require(GpxReader(kind).readFile(path).size() == lines.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view content(reinterpret_cast<const char*>(bytes), size);
    for (const GpxKind kind : {GpxKind::waypoints, GpxKind::routes, GpxKind::tracks}) {
        try {
            tryKind(content, kind);
        } catch (const GpxParseError& error) {
            require(error.place().offset <= size && error.place().line > 0);
        }
    }
    // A file's bytes as lines: the writer takes any.
    GpxWriter writer;
    for (std::string_view rest = content; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
        writer.addLine(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    return 0;
}
