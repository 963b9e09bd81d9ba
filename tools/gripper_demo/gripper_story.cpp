#include "tools/gripper_demo/gripper_story.h"

#include <cmath>
#include <cstdio>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tools/gripper_demo/driver_description.h"
#include "tools/gripper_demo/wait_until.h"

namespace {

typedef GripperLogicControl GLC;
typedef GripperCommunication GC;

// A slow update cycle (1 s), the move or the exchanges it watches, and room for a busy machine.
const std::chrono::milliseconds STATUS_TIMEOUT(5000);
// Longer than the slowest update cycle: a polling driver writes a request within it.
const std::chrono::milliseconds QUIET_PERIOD(1500);
// Warnings and errors of the driver's log shown after each step.
const std::size_t LOG_LINES_SHOWN = 1;
const int OBJECT_REGISTER = 600;
// The object on the Modbus gripper's stroke of 1000 register units.
const float OBJECT_PERCENT = OBJECT_REGISTER / 10.0f;
// Slower than the simulator's default stroke, so that positions on the way are seen.
const int STROKE_MS = 3000;
const float POSITION_TOLERANCE = 0.05f;

std::string name(int n) {
    return "gripper " + std::to_string(n);
}

gripper_sim::GripperOptions modbus_options() {
    gripper_sim::GripperOptions options;
    options.id = 1;
    options.model_code = 0x1000;
    options.object_at = OBJECT_REGISTER;
    options.full_stroke_ms = STROKE_MS;
    return options;
}

gripper_sim::GripperOptions tcp_options() {
    gripper_sim::GripperOptions options;
    options.id = 2;
    options.position_max = 100;
    options.full_stroke_ms = STROKE_MS;
    return options;
}

std::string percent_text(float percent) {
    char text[16];
    std::snprintf(text, sizeof(text), "%.1f %%", static_cast<double>(percent));
    return text;
}

std::string hex4(int value) {
    char text[8];
    std::snprintf(text, sizeof(text), "0x%04X", value);
    return text;
}

// A registry slot for a driver connected by hand, filled as the Setting page fills one.
GripperDevice* add_slot(GLC* driver, GC::CommunicationConnection link,
                        const std::vector<std::string>& parameters) {
    GripperDevice* slot = GripperGlobal::insert_device();
    slot->connection_type_ = link;
    slot->connection_state_ = GC::CS_CONNECTED;
    slot->map_connection_parameters_[link] = parameters;
    slot->connect_operate_ = MiscellaneousUtility::CO_MANUAL;
    slot->gripper_abstract_control_ = driver;
    GripperGlobal::instance().add_device(slot);
    return slot;
}

}  // namespace

GripperStory::GripperStory(Console& console, DemoObserver& observer, LogCollector& log)
    : console_(console),
      observer_(observer),
      log_(log),
      options_{modbus_options(), tcp_options()},
      slots_{nullptr, nullptr} {}

void GripperStory::run() {
    start_grippers();
    connect_grippers();
    activate_grippers();
    grip_and_lose_object();
    set_force_and_move();
    silence_gripper();
    vanish_port();
    disconnect_grippers();
}

void GripperStory::start_grippers() {
    begin("1. Two simulated grippers");
    require(1 == simulator_.add_modbus_pty(options_[0]), "the Modbus gripper's pty to open");
    require(2 == simulator_.add_custom_tcp(options_[1], 0), "the TCP gripper's port to open");
    console_.timed("simulator: gripper 1, Modbus RTU on " + simulator_.endpoint(1) + ", id " +
                   std::to_string(options_[0].id) + ", model code " + hex4(options_[0].model_code) +
                   ", object at register " + std::to_string(OBJECT_REGISTER));
    console_.timed("simulator: gripper 2, custom frames on " + simulator_.endpoint(2) + ", id " +
                   std::to_string(options_[1].id) + ", position_max " +
                   std::to_string(options_[1].position_max));
    end();
}

void GripperStory::connect_grippers() {
    begin("2. Connect both through the connection manager; registry slots 1 and 2");
    connect(1, GC::CC_USB_SERIALPORT, {"CO_MANUAL", simulator_.endpoint(1)});
    connect(2, GC::CC_TCP_CLIENT,
            {"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(2))});
    describe(1);
    describe(2);
    end();
}

void GripperStory::activate_grippers() {
    begin("3. Activate both");
    const std::size_t since = observer_.mark();
    order(1, "set_activate()", [this] { return driver(1)->set_activate(); });
    order(2, "set_activate()", [this] { return driver(2)->set_activate(); });
    await_motion(1, GLC::GS_ACTIVATED, since);
    await_motion(2, GLC::GS_ACTIVATED, since);
    end();
}

void GripperStory::grip_and_lose_object() {
    begin("4. Gripper 1 closes on the object at 60 %, loses it, opens to 20 %");
    std::size_t since = observer_.mark();
    order(1, "set_position(100)", [this] { return driver(1)->set_position(100.0f); });
    await_motion(1, GLC::GS_DETECTED, since);
    await_position(1, OBJECT_PERCENT);
    since = observer_.mark();
    console_.timed("simulator: gripper 1 drops the object");
    simulator_.drop(1);
    await_motion(1, GLC::GS_DROPPED, since);
    since = observer_.mark();
    order(1, "set_position(20)", [this] { return driver(1)->set_position(20.0f); });
    await_motion(1, GLC::GS_ARRIVED, since);
    await_position(1, 20.0f);
    end();
}

void GripperStory::set_force_and_move() {
    begin("5. Gripper 2: force 60, then to 80 %");
    order(2, "set_force(60)", [this] { return driver(2)->set_force(60); });
    const std::size_t since = observer_.mark();
    order(2, "set_position(80)", [this] { return driver(2)->set_position(80.0f); });
    await_motion(2, GLC::GS_ARRIVED, since);
    await_position(2, 80.0f);
    end();
}

void GripperStory::silence_gripper() {
    begin("6. Gripper 2 falls silent for a while");
    const std::size_t since = observer_.mark();
    console_.timed("simulator: gripper 2 stops answering");
    simulator_.set_fault(2, gripper_sim::Fault::silent);
    await_link(2, GC::CS_READ_EXCEPTION, since);
    const long heard = simulator_.snapshot(2).frames_received;
    // Exchanges run one after the other: the second request means the first went unanswered.
    await([&] { return simulator_.snapshot(2).frames_received >= heard + 2; }, STATUS_TIMEOUT,
          "gripper 2's driver to go on polling");
    require(1 == observer_.count(driver(2), StatusEvent::LINK, GC::CS_READ_EXCEPTION, since),
            "CS_READ_EXCEPTION to be reported once");
    console_.timed("gripper 2: polling goes on, unanswered; CS_READ_EXCEPTION was reported once");
    const long answered = simulator_.snapshot(2).answers_sent;
    console_.timed("simulator: gripper 2 answers again");
    simulator_.set_fault(2, gripper_sim::Fault::none);
    await([&] { return simulator_.snapshot(2).answers_sent > answered; }, STATUS_TIMEOUT,
          "gripper 2 to be polled again");
    console_.timed("gripper 2: polled and answered again; the link status stays " +
                   GC::communication_status_to_string(driver(2)->get_communication_status()));
    end();
}

void GripperStory::vanish_port() {
    begin("7. Gripper 1's port vanishes");
    const std::size_t since = observer_.mark();
    console_.timed("simulator: " + simulator_.endpoint(1) + " vanishes");
    simulator_.set_fault(1, gripper_sim::Fault::vanish);
    await_link(1, GC::CS_WRITE_EXCEPTION, since);
    const long written = log_.serial_requests();
    const bool polled = wait_until([&] { return log_.serial_requests() > written; }, QUIET_PERIOD);
    require(!polled, "gripper 1's polling to stop");
    console_.timed("gripper 1: polling stopped, no request written for " +
                   std::to_string(QUIET_PERIOD.count()) + " ms");
    end();
}

void GripperStory::disconnect_grippers() {
    begin("8. Disconnect both");
    disconnect(1);
    disconnect(2);
    end();
    console_.timed("done; the driver logged " + log_.totals() + " lines (D/I/W/E)");
}

void GripperStory::begin(const std::string& title) {
    console_.plain("");
    console_.plain(title);
}

void GripperStory::end() {
    log_.flush(console_, LOG_LINES_SHOWN);
}

void GripperStory::connect(int n, GC::CommunicationConnection link,
                           const std::vector<std::string>& parameters) {
    std::string call = "> " + name(n) + ": create(" + GC::communication_connection_to_string(link);
    for (const std::string& parameter : parameters) {
        call += ", \"" + parameter + "\"";
    }
    console_.timed(call + ")");
    observer_.expect(name(n));
    GLC* created = GripperConnectionManager::instance().create(&observer_, link, parameters);
    require(nullptr != created, name(n) + " to connect");
    slots_[n - 1] = add_slot(created, link, parameters);
}

// The driver keeps the id it learnt to itself; the gripper ignores requests for any other id,
// so a connected driver uses the gripper's own.
void GripperStory::describe(int n) {
    GLC& learnt = *driver(n);
    console_.timed(name(n) + " in registry slot " + std::to_string(n) + ": " +
                   protocol_name(learnt) + ", id " + std::to_string(options_[n - 1].id) + ", " +
                   identity_text(learnt));
    console_.indented(limits_text(learnt));
}

void GripperStory::disconnect(int n) {
    GLC* connected = driver(n);
    console_.timed("> " + name(n) + ": destroy(), delete, registry slot removed");
    slots_[n - 1]->gripper_abstract_control_ = nullptr;
    require(GripperConnectionManager::instance().destroy(connected), name(n) + " to go");
    delete connected;
    GripperGlobal::instance().remove_device(slots_[n - 1]);
    delete slots_[n - 1];
    slots_[n - 1] = nullptr;
}

void GripperStory::order(int n, const std::string& command, const std::function<bool()>& call) {
    console_.timed("> " + name(n) + ": " + command);
    require(call(), name(n) + " to accept " + command);
}

void GripperStory::await_motion(int n, GLC::GripperStatus status, std::size_t since) {
    require(observer_.wait_for(driver(n), StatusEvent::MOTION, status, since, STATUS_TIMEOUT),
            name(n) + ": " + GLC::gripper_status_to_string(status) + " within " +
                std::to_string(STATUS_TIMEOUT.count()) + " ms");
    settle(n);
}

void GripperStory::await_link(int n, GC::CommunicationStatus status, std::size_t since) {
    require(observer_.wait_for(driver(n), StatusEvent::LINK, status, since, STATUS_TIMEOUT),
            name(n) + ": " + GC::communication_status_to_string(status) + " within " +
                std::to_string(STATUS_TIMEOUT.count()) + " ms");
    settle(n);
}

// Takes the driver's lock once. The update cycle that made a report holds that lock to its end,
// so the cycle's other notifications are printed before the story goes on.
void GripperStory::settle(int n) {
    driver(n)->get_position();
}

void GripperStory::await_position(int n, float percent) {
    await([&] { return std::fabs(driver(n)->get_position() - percent) < POSITION_TOLERANCE; },
          STATUS_TIMEOUT, name(n) + " at " + percent_text(percent));
}

void GripperStory::await(const std::function<bool()>& condition, std::chrono::milliseconds timeout,
                         const std::string& expectation) {
    require(wait_until(condition, timeout),
            expectation + " within " + std::to_string(timeout.count()) + " ms");
}

void GripperStory::require(bool condition, const std::string& expectation) {
    if (!condition) {
        throw DemoFailure(expectation);
    }
}

GripperLogicControl* GripperStory::driver(int n) const {
    return slots_[n - 1]->gripper_abstract_control_;
}
