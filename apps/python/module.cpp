// The Python module's native half: the control, its values, and a host whose boxes and stop Python
// sees. What a user of the module meets is marlune/__init__.py; this is the plain binding below it.
//
// The interpreter's lock is released while a member of the control runs and taken again for every
// event and question, so other Python threads go on and an interrupt is noticed.
#include <pybind11/functional.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <atomic>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>

#include "control/Surface.h"
#include "finder/Finder.h"
#include "marlune/GpsControl.h"
#include "marlune/Records.h"
#include "marlune/Report.h"
#include "marlune/SystemHost.h"
#include "marlune/Version.h"
#include "receivers/BuiltIn.h"
#include "receivers/Families.h"

namespace py = pybind11;

namespace {

using marlune::GpsControl;

const char* iconName(marlune::BoxIcon icon) {
    switch (icon) {
        case marlune::BoxIcon::critical:
            return "critical";
        case marlune::BoxIcon::exclamation:
            return "exclamation";
        case marlune::BoxIcon::information:
            return "information";
        case marlune::BoxIcon::none:
            break;
    }
    return "none";
}

class PythonHost : public marlune::SystemHost {
public:
    std::function<void(const std::string&, const std::string&)> onBox;

    void messageBox(const std::string& text, marlune::BoxIcon icon) override {
        const py::gil_scoped_acquire lock;
        if (onBox) {
            guarded([&] { onBox(text, iconName(icon)); });
        }
    }
    // Asked every 50 ms: here Ctrl-C is noticed, as is what a handler raised.
    bool stopRequested() override {
        if (!stop_) {
            const py::gil_scoped_acquire lock;
            guarded([] {
                if (PyErr_CheckSignals() != 0) {
                    throw py::error_already_set();
                }
            });
        }
        return stop_ || SystemHost::stopRequested();
    }

    void requestStop() { stop_ = true; }

    // Runs Python code inside a member of the control. What it raises ends the member, and is
    // raised again behind it: an exception must not fly through the control.
    template <class Action>
    void guarded(Action&& action) {
        try {
            action();
        } catch (py::error_already_set& error) {
            if (!raised_) {
                raised_ = std::make_unique<py::error_already_set>(std::move(error));
            }
            stop_ = true;
        }
    }

    // With the lock: begins a member afresh, and raises behind it what it kept.
    void begin() {
        stop_ = false;
        raised_.reset();
    }
    void end() {
        stop_ = false;
        if (raised_) {
            const std::unique_ptr<py::error_already_set> raised = std::move(raised_);
            throw std::move(*raised);
        }
    }

private:
    std::atomic<bool> stop_{false};
    std::unique_ptr<py::error_already_set> raised_;
};

// Every event as its name and its parameters.
class PythonEvents : public marlune::NamedEvents {
public:
    explicit PythonEvents(PythonHost& host) : host_(host) {}

    py::object handler = py::none();

private:
    void raise(const marlune::surface::Event& event,
               std::span<const marlune::surface::EventValue> values) override {
        const py::gil_scoped_acquire lock;
        if (handler.is_none()) {
            return;
        }
        host_.guarded([&] {
            py::list parameters;
            for (const auto& value : values) {
                std::visit([&](const auto& each) { parameters.append(py::cast(each)); }, value);
            }
            handler(std::string(event.name), *parameters);
        });
    }

    PythonHost& host_;
};

// A control with its host and its events. The members carry the control's own names.
class Control {
public:
    Control() : control_(host_, events_) { host_.setDecimalSeparator('.'); }

    PythonHost& host() { return host_; }
    PythonEvents& events() { return events_; }
    GpsControl& control() { return control_; }

    // Calls a member without the interpreter's lock.
    template <class Result, class... Parameters>
    static auto wrap(Result (GpsControl::*member)(Parameters...)) {
        return [member](Control& self, std::decay_t<Parameters>... arguments) {
            self.host_.begin();
            if constexpr (std::is_void_v<Result>) {
                self.unlocked([&] { (self.control_.*member)(arguments...); });
                self.host_.end();
            } else {
                Result result{};
                self.unlocked([&] { result = (self.control_.*member)(arguments...); });
                self.host_.end();
                return result;
            }
        };
    }

private:
    template <class Call>
    void unlocked(Call&& call) {
        const py::gil_scoped_release unlock;
        call();
    }

    PythonHost host_;
    PythonEvents events_{host_};
    GpsControl control_;
};

template <class Enumeration>
void enumerate(py::module_& module, const char* name,
               std::initializer_list<std::pair<const char*, Enumeration>> values) {
    py::enum_<Enumeration> type(module, name);
    for (const auto& [valueName, value] : values) {
        type.value(valueName, value);
    }
}

void bindRecords(py::module_& module) {
    using namespace marlune;
    py::class_<WaypointRecord>(module, "WaypointRecord")
        .def(py::init<>())
        .def_readwrite("name", &WaypointRecord::name)
        .def_readwrite("comment", &WaypointRecord::comment)
        .def_readwrite("latitude", &WaypointRecord::latitude)
        .def_readwrite("longitude", &WaypointRecord::longitude)
        .def_readwrite("altitude", &WaypointRecord::altitude)
        .def_readwrite("depth", &WaypointRecord::depth)
        .def_readwrite("temperature", &WaypointRecord::temperature)
        .def_readwrite("proximity", &WaypointRecord::proximity)
        .def_readwrite("time", &WaypointRecord::time)
        .def_readwrite("symbol", &WaypointRecord::symbol)
        .def_readwrite("display", &WaypointRecord::display);
    py::class_<TrackPointRecord>(module, "TrackPointRecord")
        .def(py::init<>())
        .def_readwrite("latitude", &TrackPointRecord::latitude)
        .def_readwrite("longitude", &TrackPointRecord::longitude)
        .def_readwrite("time", &TrackPointRecord::time)
        .def_readwrite("altitude", &TrackPointRecord::altitude)
        .def_readwrite("depth", &TrackPointRecord::depth)
        .def_readwrite("temperature", &TrackPointRecord::temperature)
        .def_readwrite("segment_start", &TrackPointRecord::segmentStart);
    py::class_<TrackRecord>(module, "TrackRecord")
        .def(py::init<>())
        .def_readwrite("name", &TrackRecord::name)
        .def_readwrite("display", &TrackRecord::display)
        .def_readwrite("colour", &TrackRecord::colour)
        .def_readwrite("points", &TrackRecord::points);
    py::class_<RoutePointRecord>(module, "RoutePointRecord")
        .def_readwrite("point", &RoutePointRecord::point);
    py::class_<RouteRecord>(module, "RouteRecord")
        .def_readwrite("number", &RouteRecord::number)
        .def_readwrite("name", &RouteRecord::name)
        .def_readwrite("points", &RouteRecord::points);
    py::class_<FixRecord>(module, "FixRecord")
        .def_readonly("latitude", &FixRecord::latitude)
        .def_readonly("longitude", &FixRecord::longitude)
        .def_readonly("altitude", &FixRecord::altitude)
        .def_readonly("time", &FixRecord::time)
        .def_readonly("quality", &FixRecord::quality)
        .def_readonly("error", &FixRecord::error)
        .def_readonly("horizontal_error", &FixRecord::horizontalError)
        .def_readonly("vertical_error", &FixRecord::verticalError)
        .def_readonly("east_speed", &FixRecord::eastSpeed)
        .def_readonly("north_speed", &FixRecord::northSpeed)
        .def_readonly("up_speed", &FixRecord::upSpeed);
    // Copies: what the control keeps changes with its next transfer.
    py::class_<Records>(module, "Records")
        .def_readonly("waypoints", &Records::waypoints)
        .def_readonly("tracks", &Records::tracks)
        .def_readonly("routes", &Records::routes)
        .def_readonly("proximities", &Records::proximities)
        .def_readonly("fix", &Records::fix);
}

void bindReports(py::module_& module) {
    using namespace marlune;
    enumerate<TransferKind>(module, "TransferKind",
                            {{"none", TransferKind::none},
                             {"waypoints", TransferKind::waypoints},
                             {"tracks", TransferKind::tracks},
                             {"routes", TransferKind::routes},
                             {"proximities", TransferKind::proximities},
                             {"time", TransferKind::time},
                             {"position", TransferKind::position},
                             {"real_time", TransferKind::realTime},
                             {"sentences", TransferKind::sentences}});
    enumerate<Ending>(module, "Ending",
                      {{"complete", Ending::complete},
                       {"nothing_there", Ending::nothingThere},
                       {"interrupted", Ending::interrupted},
                       {"end_missing", Ending::endMissing},
                       {"cancelled", Ending::cancelled},
                       {"disconnected", Ending::disconnected},
                       {"device_gone", Ending::deviceGone},
                       {"refused", Ending::refused},
                       {"protocol_error", Ending::protocolError},
                       {"not_offered", Ending::notOffered},
                       {"file_error", Ending::fileError},
                       {"unsendable", Ending::unsendable},
                       {"no_session", Ending::noSession},
                       {"needs_waypoints", Ending::needsWaypoints}});
    enumerate<ConnectionOutcome>(module, "ConnectionOutcome",
                                 {{"none", ConnectionOutcome::none},
                                  {"identified", ConnectionOutcome::identified},
                                  {"opened", ConnectionOutcome::opened},
                                  {"not_opened", ConnectionOutcome::notOpened},
                                  {"silent", ConnectionOutcome::silent},
                                  {"other_language", ConnectionOutcome::otherLanguage},
                                  {"protocol_error", ConnectionOutcome::protocolError},
                                  {"abandoned", ConnectionOutcome::abandoned}});
    enumerate<CapabilitySource>(module, "CapabilitySource",
                                {{"none", CapabilitySource::none},
                                 {"announced", CapabilitySource::announced},
                                 {"table", CapabilitySource::table},
                                 {"generic", CapabilitySource::generic}});
    py::class_<TransferReport>(module, "TransferReport")
        .def_readonly("kind", &TransferReport::kind)
        .def_readonly("ending", &TransferReport::ending)
        .def_readonly("pid", &TransferReport::pid)
        .def_readonly("detail", &TransferReport::detail)
        .def_readonly("announced", &TransferReport::announced)
        .def_readonly("transferred", &TransferReport::transferred)
        .def_readonly("undecodable", &TransferReport::undecodable)
        .def_readonly("wrong_checksum", &TransferReport::wrongChecksum)
        .def_readonly("unknown", &TransferReport::unknown)
        .def_readonly("positionless", &TransferReport::positionless)
        .def_readonly("duplicates", &TransferReport::duplicates)
        .def_readonly("oversized", &TransferReport::oversized)
        .def_readonly("damaged", &TransferReport::damaged)
        .def_readonly("acknowledged", &TransferReport::acknowledged)
        .def_readonly("unacknowledged", &TransferReport::unacknowledged)
        .def_readonly("left_out", &TransferReport::leftOut)
        .def_readonly("first_left_out", &TransferReport::firstLeftOut)
        .def_property_readonly("is_whole", &TransferReport::isWhole);
    py::class_<ConnectionReport>(module, "ConnectionReport")
        .def_readonly("outcome", &ConnectionReport::outcome)
        .def_readonly("protocol_code", &ConnectionReport::protocolCode)
        .def_readonly("device", &ConnectionReport::device)
        .def_readonly("system_error", &ConnectionReport::systemError)
        .def_readonly("detail", &ConnectionReport::detail)
        .def_readonly("pid", &ConnectionReport::pid)
        .def_readonly("damaged", &ConnectionReport::damaged)
        .def_readonly("capabilities", &ConnectionReport::capabilities)
        .def_property_readonly("is_connected", &ConnectionReport::isConnected);
}

void bindControl(py::module_& module) {
    py::class_<Control>(module, "Control")
        .def(py::init<>())
        .def("bind_port",
             [](Control& self, const std::string& device) {
                 self.host().bindPort(1, device);
                 self.control().setNumPort(marlune::numPort::Comm1);
             })
        .def("bind_drive",
             [](Control& self, const std::string& folder) { self.host().addDriveFolder(folder); })
        .def("set_patience",
             [](Control& self, double seconds) { self.host().setPatience(seconds); })
        .def("on_box",
             [](Control& self, std::function<void(std::string, std::string)> handler) {
                 self.host().onBox = std::move(handler);
             })
        .def("on_event",
             [](Control& self, py::object handler) { self.events().handler = std::move(handler); })
        .def("request_stop", [](Control& self) { self.host().requestStop(); })
        .def("SetGpsMark", Control::wrap(&GpsControl::SetGpsMark))
        .def("gpsConnect", Control::wrap(&GpsControl::gpsConnect))
        .def("gpsDisconnect", Control::wrap(&GpsControl::gpsDisconnect))
        .def("getWaypts", Control::wrap(&GpsControl::getWaypts))
        .def("getTracks", Control::wrap(&GpsControl::getTracks))
        .def("GetRoutes", Control::wrap(&GpsControl::GetRoutes))
        .def("getProximites", Control::wrap(&GpsControl::getProximites))
        .def("SendWaypts", Control::wrap(&GpsControl::SendWaypts))
        .def("SendRoutes", Control::wrap(&GpsControl::SendRoutes))
        .def("SendTraces", Control::wrap(&GpsControl::SendTraces))
        .def("StartPvtData", Control::wrap(&GpsControl::StartPvtData))
        .def("StartNMEA", Control::wrap(&GpsControl::StartNMEA))
        .def("GetTime", Control::wrap(&GpsControl::GetTime))
        .def("getIdent", Control::wrap(&GpsControl::getIdent))
        .def("getProtocoles", Control::wrap(&GpsControl::getProtocoles))
        .def("getPosition", Control::wrap(&GpsControl::getPosition))
        // The flags, which a handler sets while a member runs.
        .def("StopPvtData", [](Control& self) { self.control().StopPvtData(); })
        .def("StopNMEA", [](Control& self) { self.control().StopNMEA(); })
        .def("StopTransfert", [](Control& self) { self.control().StopTransfert(); })
        .def_property_readonly("records", [](Control& self) { return self.control().records(); })
        .def_property_readonly("fix", [](Control& self) { return self.control().records().fix; })
        .def_property_readonly("last_transfer",
                               [](Control& self) { return self.control().lastTransfer(); })
        .def_property_readonly("last_connection",
                               [](Control& self) { return self.control().lastConnection(); });
}

// The name of the family that plays a unit, and the control's code for it.
std::pair<std::string, std::string> familyOfUnit(const std::string& unit) {
    for (const auto& family : marlune::receivers::receiverFamilies()) {
        for (const auto& each : family.units()) {
            if (each.name == unit) {
                return {std::string(family.name), std::string(family.code)};
            }
        }
    }
    throw py::value_error("no virtual receiver is called \"" + unit + "\"");
}

// The receivers that answer: path and mark of each.
std::vector<std::pair<std::string, std::string>> findReceivers() {
    PythonHost host;
    std::vector<std::pair<std::string, std::string>> found;
    {
        const py::gil_scoped_release unlock;
        marlune::finder::Finder finder(host);
        for (const auto& each : finder.find(marlune::finder::listPorts(host))) {
            found.emplace_back(each.port.path, each.mark);
        }
    }
    host.end();
    return found;
}

}  // namespace

PYBIND11_MODULE(_marlune, module) {
    module.doc() = "The native half of marlune.";
    module.def("version", &marlune::version);
    bindRecords(module);
    bindReports(module);
    bindControl(module);
    module.def("family_of_unit", &familyOfUnit);
    module.def("find", &findReceivers);
    using marlune::receivers::BuiltIn;
    py::class_<BuiltIn>(module, "VirtualReceiver")
        .def(py::init<std::string_view, const std::string&>(), py::arg("family"), py::arg("unit"))
        .def_property_readonly("path", &BuiltIn::path)
        .def_property_readonly("lines", &BuiltIn::lines)
        .def_property_readonly("complaints", &BuiltIn::complaints);
}
