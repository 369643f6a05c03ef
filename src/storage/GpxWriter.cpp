#include "marlune/Gpx.h"
#include "storage/formats/Readers.h"

namespace marlune {

struct GpxWriter::Impl {
    RecordCollector records;
    LineTaker lines{records};
    std::size_t leftOut = 0;
};

GpxWriter::GpxWriter() : impl_(std::make_unique<Impl>()) {}
GpxWriter::~GpxWriter() = default;

void GpxWriter::addLine(std::string_view line) {
    impl_->leftOut += impl_->lines.take(line) ? 0 : 1;
}

std::size_t GpxWriter::leftOut() const {
    return impl_->leftOut;
}

void GpxWriter::save(const std::string& path) const {
    impl_->lines.finish();
    saveRecords(impl_->records.records, FileFormat::gpx, path);
}

}  // namespace marlune
