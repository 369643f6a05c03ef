#include "storage/formats/XmlWriter.h"

namespace marlune {
namespace {

void writeEscaped(std::ostream& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
            case '&':
                out << "&amp;";
                break;
            case '<':
                out << "&lt;";
                break;
            case '>':
                out << "&gt;";
                break;
            case '"':
                out << "&quot;";
                break;
            default:
                out << c;
        }
    }
}

}  // namespace

XmlWriter::XmlWriter(std::ostream& out) : out_(out) {
    out_ << R"(<?xml version="1.0" encoding="UTF-8"?>)";
}

void XmlWriter::open(const char* name) {
    endTag();
    indent();
    out_ << '<' << name;
    open_.emplace_back(name);
    inTag_ = true;
}

void XmlWriter::attribute(std::string_view name, std::string_view value) {
    out_ << ' ' << name << "=\"";
    writeEscaped(out_, value);
    out_ << '"';
}

void XmlWriter::text(std::string_view value) {
    endTag();
    inText_ = true;
    writeEscaped(out_, value);
}

void XmlWriter::close() {
    const std::string name = std::move(open_.back());
    open_.pop_back();
    if (inTag_) {
        out_ << " />";
    } else {
        if (!inText_) {
            indent();
        }
        out_ << "</" << name << '>';
    }
    inTag_ = inText_ = false;
    if (open_.empty()) {
        out_ << '\n';
    }
}

void XmlWriter::closeTo(std::size_t depth) {
    while (open_.size() > depth) {
        close();
    }
}

void XmlWriter::element(const char* name, std::string_view value) {
    if (!value.empty()) {
        open(name);
        text(value);
        close();
    }
}

void XmlWriter::endTag() {
    if (inTag_) {
        out_ << '>';
        inTag_ = false;
    }
}

void XmlWriter::indent() {
    out_ << '\n';
    for (std::size_t i = 0; i < open_.size(); ++i) {
        out_ << "  ";
    }
}

}  // namespace marlune
