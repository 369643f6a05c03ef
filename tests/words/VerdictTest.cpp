// What users are told of a transfer.
#include <gtest/gtest.h>

#include "words/Verdict.h"

namespace marlune::words {
namespace {

TransferReport report(TransferKind kind, Ending ending, std::optional<int> announced,
                      int transferred) {
    TransferReport report;
    report.kind = kind;
    report.ending = ending;
    report.announced = announced;
    report.transferred = transferred;
    return report;
}

TransferReport upload(int announced, int sent, int acknowledged, int unacknowledged) {
    TransferReport upload = report(TransferKind::waypoints, Ending::complete, announced, sent);
    upload.direction = TransferDirection::upload;
    upload.acknowledged = acknowledged;
    upload.unacknowledged = unacknowledged;
    return upload;
}

TEST(Verdict, FollowsTheReport) {
    using Kind = TransferKind;
    TransferReport gaps = report(Kind::tracks, Ending::complete, 39, 37);
    gaps.positionless = 2;
    TransferReport misread = report(Kind::routes, Ending::complete, 5, 4);
    misread.undecodable = 1;
    TransferReport cut = upload(1, 1, 1, 0);
    cut.leftOut = 2;
    cut.firstLeftOut = 2;
    TransferReport missing = upload(0, 0, 0, 0);
    missing.ending = Ending::fileError;
    const struct {
        TransferReport report;
        Success success;
        const char* text;
    } cases[] = {
        {report(Kind::tracks, Ending::complete, 39, 39), Success::whole,
         "39 of 39 track points received"},
        {gaps, Success::whole, "39 of 39 track points received"},
        {report(Kind::waypoints, Ending::complete, {}, 7), Success::whole, "7 waypoints received"},
        {report(Kind::waypoints, Ending::nothingThere, 0, 0), Success::whole,
         "no waypoints received: there is nothing"},
        {report(Kind::tracks, Ending::interrupted, 39, 12), Success::partly,
         "12 of 39 track points received: the receiver fell silent"},
        {report(Kind::tracks, Ending::interrupted, 39, 0), Success::none,
         "0 of 39 track points received: the receiver fell silent"},
        {report(Kind::waypoints, Ending::complete, 8, 7), Success::partly,
         "7 of 8 waypoints received: fewer came than were announced"},
        {misread, Success::partly, "4 of 5 route records received: 1 could not be decoded"},
        {report(Kind::waypoints, Ending::refused, {}, 0), Success::none,
         "no waypoints received: the receiver refused"},
        {report(Kind::realTime, Ending::cancelled, {}, 9), Success::whole,
         "9 positions received: stopped"},
        {upload(8, 8, 8, 0), Success::whole, "8 of 8 waypoints sent"},
        {upload(8, 8, 0, 0), Success::whole, "8 of 8 waypoints sent"},  // nobody acknowledges
        {upload(8, 8, 0, 8), Success::none,
         "0 of 8 waypoints sent: the receiver did not acknowledge 8"},
        {cut, Success::partly,
         "1 of 3 waypoints sent: line 2 of the file cannot be read, which left out 2"},
        {missing, Success::none, "no waypoints sent: the file holds none that can be read"},
    };
    for (const auto& c : cases) {
        const Verdict verdict = judge(c.report, Speech());
        EXPECT_EQ(verdict.text, c.text);
        EXPECT_EQ(verdict.success, c.success) << c.text;
    }
    EXPECT_EQ(judge(cases[4].report, Speech(Language::french)).text,
              "12 points de trace reçus sur 39 : le récepteur s'est tu");
}

}  // namespace
}  // namespace marlune::words
