"""The module against the built-in virtual receivers."""

import datetime
import os
import pty
import signal
import threading

import pytest

import marlune


@pytest.mark.parametrize("unit", ["map162", "etrex", "gps315", "sp24"])
def test_every_family_gives_its_records(unit):
    with marlune.open(f"virtual:{unit}") as gps:
        assert "Marlune Version" in gps.identity
        waypoints = gps.waypoints()
        assert waypoints and all(-90 <= each.latitude <= 90 for each in waypoints)
        assert gps.report.transferred == len(waypoints)
        assert gps.report.is_whole
        tracks = gps.tracks()
        assert sum(len(track.points) for track in tracks) > 10
        assert tracks[0].points[0].segment_start


def test_values_have_more_than_the_lines_tell():
    with marlune.open("virtual:map162") as gps:
        point = next(p for p in gps.tracks()[0].points if p.altitude is not None)
        assert point.time.tzinfo is datetime.timezone.utc
        assert gps.connection.capabilities == marlune.CapabilitySource.announced


def test_what_is_sent_comes_back():
    unit = marlune.virtual("etrex")
    sent = [marlune.Waypoint("UN", 45.5, 1.25, "été", 152.5, symbol=10),
            marlune.Waypoint("DEUX", -33.125, 151.0)]
    track = marlune.Track("Tour", [
        marlune.TrackPoint(45.0, 1.0, datetime.datetime(2007, 6, 1, 12, tzinfo=datetime.timezone.utc),
                           100.0, segment_start=True),
        marlune.TrackPoint(45.001, 1.001)])
    with marlune.open(unit) as gps:
        assert gps.send_waypoints(sent).transferred == 2
        assert gps.send_tracks([track]).is_whole
        back = {each.name: each for each in gps.waypoints()}
        assert back["UN"].comment == "été" and back["UN"].altitude == pytest.approx(152.5)
        assert back["DEUX"].longitude == pytest.approx(151.0, abs=1e-6)
        assert gps.tracks()[-1].points[-2].time == track.points[0].time
    with pytest.raises(ValueError):
        with marlune.open(unit) as gps:
            gps.send_waypoints([marlune.Waypoint("A;B", 0, 0)])


def test_magellan_routes_bring_their_waypoints():
    with marlune.open("virtual:gps315") as gps:
        assert gps.routes()[0].points


def test_a_port_that_nobody_answers_on_is_told():
    with pytest.raises(marlune.NotConnected) as caught:
        marlune.open("/dev/marlune-no-such-port")
    assert caught.value.connection.outcome == marlune.ConnectionOutcome.not_opened
    assert "/dev/marlune-no-such-port" in str(caught.value)


def test_what_a_unit_does_not_offer_is_incomplete():
    with marlune.open("virtual:sp24") as gps:
        with pytest.raises(marlune.Incomplete) as caught:
            gps.proximities()
        assert caught.value.report.ending == marlune.Ending.not_offered


def test_follow_gives_fixes_until_it_is_left():
    with marlune.open("virtual:map162") as gps:
        fixes = []
        for fix in gps.follow():
            fixes.append(fix)
            if len(fixes) == 2:
                break
        assert fixes[0].time < fixes[1].time
        assert gps.waypoints(), "the unit answers again"


def test_events_and_errors_of_handlers():
    with marlune.open("virtual:map162") as gps:
        names = []
        gps.on_event = lambda name, *parameters: names.append(name)
        gps.waypoints()
        assert names[0] == "StartDownload" and names[-1] == "EndDownload"

        def fail(name, *parameters):
            raise KeyError(name)

        gps.on_event = fail
        with pytest.raises(KeyError):
            gps.waypoints()


def test_an_interrupt_ends_a_wait_and_other_threads_go_on():
    device, line = pty.openpty()

    def interrupt_once_asked():
        os.read(device, 1)
        os.kill(os.getpid(), signal.SIGINT)

    try:
        threading.Thread(target=interrupt_once_asked, daemon=True).start()
        with pytest.raises(KeyboardInterrupt):
            marlune.open(os.ttyname(line), "MGN", patience=0)
    finally:
        os.close(device)
        os.close(line)
