#include "nmea/SentenceStage.h"

#include <cstdio>

namespace marlune {
namespace {

ScriptedPort::Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

SentenceStage::SentenceStage()
    : events([this](const std::string& text) { log_.push_back(text); }), traced_(events) {
    line->observer.open = [this](const auto& opening) {
        log_.push_back("open " + opening.settings);
    };
    line->observer.close = [this] { log_.push_back("close"); };
    line->observer.write = [this](auto bytes) {
        log_.push_back(writes({bytes.begin(), bytes.end()}));
    };
    host.onMessageBox = [this](const FakeHost::Box& box) {
        log_.push_back("box " + boxText(box.icon, box.text));
    };
    port->setNumber(1);
    port->open();
    takeLog();
}

void SentenceStage::expect(std::string_view sent, std::string_view answer, double delay) const {
    line->play({{.write = bytesOf(sent), .answer = bytesOf(answer), .delay = delay}});
}

void SentenceStage::speak(std::string_view text, double delay) const {
    line->play({{.answer = bytesOf(text), .delay = delay}});
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
