// Shows the gripper driver stack at work against two grippers simulated in this process: the
// connection manager connects them, the registry holds them, the drivers are commanded and
// report what happens, two faults are met, and everything is taken down again.

#include <cstdlib>
#include <string>

#include "tools/gripper_demo/console.h"
#include "tools/gripper_demo/demo_observer.h"
#include "tools/gripper_demo/gripper_story.h"
#include "tools/gripper_demo/log_collector.h"

namespace {

void print_header(Console& console) {
    console.plain("Gripper driver stack against two simulated grippers");
    console.plain(
        "  \"gripper N: ...\" a driver's notification as it arrives (force or speed 0, "
        "\"not known\", is not shown)");
    console.plain(
        "  \"> ...\" a call of the demo, \"simulator: ...\" what the simulator does, "
        "\"log\" the driver's log");
}

}  // namespace

int main() {
    Console console;
    LogCollector log;
    DemoObserver observer(console);
    print_header(console);
    GripperStory story(console, observer, log);
    try {
        story.run();
    } catch (const DemoFailure& failure) {
        console.timed(std::string("FAILED: expected ") + failure.what());
        // Leaves at once: taking down drivers and grippers that missed a deadline might block.
        std::_Exit(1);
    }
    return 0;
}
