#include "nmea/SentenceStage.h"

#include <cstdio>
#include <sstream>

namespace marlune {
namespace {

std::string boxLine(const FakeHost::Box& box) {
    const bool critical = box.icon == BoxIcon::critical;
    return std::string("box ") + (critical ? "critical: " : "information: ") + box.text;
}

FakeHost& withTraceFolder(FakeHost& host) {
    host.createTraceFolder();
    return host;
}

ScriptedPort::Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

SentenceStage::SentenceStage()
    : events([this](const std::string& text) { log_.push_back(text); }),
      trace(withTraceFolder(host).documentsFolder()),
      services{host, events, trace} {
    auto scripted = std::make_unique<ScriptedPort>(host);
    line = scripted.get();
    line->observer.open = [this](const auto& opening) {
        log_.push_back("open " + opening.settings);
    };
    line->observer.close = [this] { log_.push_back("close"); };
    line->observer.write = [this](auto bytes) {
        log_.push_back("> " + std::string(bytes.begin(), bytes.end()));
    };
    host.onMessageBox = [this](const FakeHost::Box& box) { log_.push_back(boxLine(box)); };
    port = std::make_unique<ComPort>(host, std::move(scripted));
    port->setNumber(1);
    port->open();
    trace.setDebug(true);
    trace.openEmpty();
    takeLog();
}

void SentenceStage::expect(std::string_view sent, std::string_view answer, double delay) const {
    line->play({{.write = bytesOf(sent), .answer = bytesOf(answer), .delay = delay}});
}

void SentenceStage::speak(std::string_view text, double delay) const {
    line->play({{.answer = bytesOf(text), .delay = delay}});
}

Log SentenceStage::traced() {
    // A traced sentence may hold a line end of its own: only numbered lines begin a new one.
    Log lines;
    std::istringstream text(host.traceText());
    for (std::string row; std::getline(text, row);) {
        if (!row.empty() && row.back() == '\r') {
            row.pop_back();
        }
        const std::size_t colon = row.find_first_not_of("0123456789");
        if (colon != std::string::npos && colon > 0 && row[colon] == ':') {
            lines.push_back(row.substr(colon + 1));
        }
    }
    return lines;
}

std::string sentence(const std::string& body) {
    unsigned sum = 0;
    for (const char c : body.substr(1)) {
        sum ^= static_cast<unsigned char>(c);
    }
    char digits[8];
    (void)std::snprintf(digits, sizeof digits, "*%02X", sum);
    return body + digits + "\r\n";
}

}  // namespace marlune
