#include "cli/host/LineReader.h"

#include <utility>

namespace marlune::cli {

void LineReader::feed(std::string_view bytes) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos;
         end = bytes.find('\n')) {
        append(bytes.substr(0, end));
        endLine();
        bytes.remove_prefix(end + 1);
    }
    append(bytes);
}

void LineReader::finish() {
    if (tooLong_ || !partial_.empty()) {
        endLine();
    }
}

std::optional<InputLine> LineReader::next() {
    if (lines_.empty()) {
        return std::nullopt;
    }
    InputLine line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

void LineReader::append(std::string_view piece) {
    tooLong_ = tooLong_ || piece.size() > longest_ - partial_.size();
    if (tooLong_) {
        partial_ = std::string();  // gives its memory back
    } else {
        partial_ += piece;
    }
}

void LineReader::endLine() {
    lines_.push_back({std::exchange(partial_, {}), std::exchange(tooLong_, false)});
}

}  // namespace marlune::cli
