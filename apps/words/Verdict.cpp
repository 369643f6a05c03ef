#include "words/Verdict.h"

#include <algorithm>

#include "words/Phrases.h"

namespace marlune::words {
namespace {

const Phrase& nameOf(TransferKind kind) {
    switch (kind) {
        case TransferKind::tracks:
            return phrase::kTrackPoints;
        case TransferKind::routes:
            return phrase::kRouteRecords;
        case TransferKind::proximities:
            return phrase::kProximities;
        case TransferKind::time:
            return phrase::kTimes;
        case TransferKind::position:
        case TransferKind::realTime:
            return phrase::kPositions;
        case TransferKind::sentences:
            return phrase::kSentences;
        case TransferKind::none:
        case TransferKind::waypoints:
            break;
    }
    return phrase::kWaypoints;
}

std::string reason(const TransferReport& report, const Speech& say) {
    switch (report.ending) {
        case Ending::complete:
            return {};
        case Ending::nothingThere:
            return say(phrase::kNothingThere);
        case Ending::interrupted:
            return say(phrase::kInterrupted);
        case Ending::endMissing:
            return say(phrase::kEndMissing);
        case Ending::cancelled:
            return say(phrase::kCancelled);
        case Ending::disconnected:
            return say(phrase::kDisconnected);
        case Ending::deviceGone:
            return say(phrase::kDeviceGone);
        case Ending::refused:
            return say(phrase::kRefused);
        case Ending::protocolError:
            return say(phrase::kProtocolError, {std::to_string(report.pid)});
        case Ending::notOffered:
            return say(phrase::kNotOffered);
        case Ending::fileError:
            return report.detail.empty() ? say(phrase::kNothingInFile)
                                         : say(phrase::kFileError, {report.detail});
        case Ending::unsendable:
            return say(phrase::kUnsendable);
        case Ending::noSession:
            return say(phrase::kNoSession);
        case Ending::needsWaypoints:
            return say(phrase::kNeedsWaypoints);
    }
    return {};
}

void append(std::string& text, const std::string& more) {
    text += text.empty() || more.empty() ? more : ", " + more;
}

// Why the transfer ended and what did not make it.
std::string reasons(const TransferReport& report, const Speech& say, bool linesSent) {
    std::string text = reason(report, say);
    const auto count = [&](const Phrase& phrase, int number) {
        if (number > 0) {
            append(text, say(phrase, {std::to_string(number)}));
        }
    };
    count(phrase::kUndecodable, report.undecodable);
    count(phrase::kWrongChecksum, report.wrongChecksum);
    count(phrase::kUnknown, report.unknown);
    count(phrase::kOversized, report.oversized);
    if (report.unacknowledged > 0 && report.ending == Ending::complete) {
        count(phrase::kUnacknowledged, report.unacknowledged);
    }
    if (report.leftOut > 0) {
        append(text, say(linesSent ? phrase::kLeftOutLines : phrase::kLeftOutRecords,
                         {std::to_string(report.firstLeftOut), std::to_string(report.leftOut)}));
    }
    count(phrase::kDamaged, report.damaged);
    count(phrase::kDuplicates, report.duplicates);
    return text;
}

// What surely arrived: where records are acknowledged, those.
int arrived(const TransferReport& report) {
    const bool answered = report.acknowledged + report.unacknowledged > 0;
    return answered ? report.acknowledged : report.transferred + report.positionless;
}

bool lastsUntilStopped(TransferKind kind) {
    return kind == TransferKind::realTime || kind == TransferKind::sentences;
}

Success successOf(const TransferReport& report) {
    // Real time has no end but the user's.
    if (report.isWhole() ||
        (lastsUntilStopped(report.kind) && report.ending == Ending::cancelled)) {
        return Success::whole;
    }
    return arrived(report) > 0 ? Success::partly : Success::none;
}

std::string counts(const TransferReport& report, const Speech& say) {
    const bool sent = report.direction == TransferDirection::upload;
    const int done = arrived(report);
    const int all = std::max(report.announced.value_or(done) + report.leftOut, done);
    const auto tell = [&](const Phrase& phrase) {
        return say(phrase, {std::to_string(done), std::to_string(all), say(nameOf(report.kind))});
    };
    if (all == 0) {
        return tell(sent ? phrase::kNothingSent : phrase::kNothingReceived);
    }
    if (sent) {
        return tell(phrase::kSent);
    }
    return tell(report.announced ? phrase::kReceived : phrase::kCameUnannounced);
}

}  // namespace

Verdict judge(const TransferReport& report, const Speech& say, bool linesSent) {
    const std::string how = counts(report, say);
    std::string why = reasons(report, say, linesSent);
    if (why.empty() && !report.isWhole()) {
        why = say(phrase::kFewer);
    }
    return {successOf(report), why.empty() ? how : say(phrase::kColon, {how, why}),
            report.damaged > 0};
}

}  // namespace marlune::words
