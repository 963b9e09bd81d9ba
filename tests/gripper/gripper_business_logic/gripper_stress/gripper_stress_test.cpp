// Four grippers driven at once from several threads while their update threads run and one of
// them is connected and disconnected over and over.
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include "tests/gripper/gripper_business_logic/gripper_stress/stress_fixture.h"

namespace {

typedef GripperLogicControl GLC;

// Both kinds of work last several seconds, so that many update cycles run in between.
// ThreadSanitizer slows everything down several times: fewer rounds keep the run short.
#if defined(__SANITIZE_THREAD__)
const int COMMAND_ROUNDS = 30000;
const int RECONNECT_CYCLES = 150;
#else
const int COMMAND_ROUNDS = 100000;
const int RECONNECT_CYCLES = 400;
#endif

const int WORKER_COUNT = 4;
// Slots 0, 1 and 3 stay connected; slot 2 is connected and disconnected by its own thread.
const int STABLE[] = {0, 1, 3};
const int STABLE_COUNT = sizeof(STABLE) / sizeof(STABLE[0]);
const int CYCLING = 2;

// Update cycles that must have read each stable gripper's position back during the phase.
const long MINIMUM_UPDATE_CYCLES = 3;

const std::chrono::seconds PHASE_DEADLINE(300);
const std::chrono::seconds ARRIVAL_DEADLINE(30);

// Counts operations and the ones that failed, from any thread.
class Tally {
public:
    void add(bool succeeded) {
        ++issued_;
        failed_ += succeeded ? 0 : 1;
    }
    long issued() const { return issued_; }
    long failed() const { return failed_; }

private:
    std::atomic<long> issued_{0};
    std::atomic<long> failed_{0};
};

// Runs every job on a thread of its own and joins them all. A thread still running at the
// deadline has hung; it cannot be joined, so the process ends with a message.
void run_together(const std::vector<std::function<void()>>& jobs) {
    std::atomic<int> finished{0};
    std::vector<std::thread> threads;
    for (const std::function<void()>& job : jobs) {
        threads.emplace_back([&finished, job] {
            job();
            ++finished;
        });
    }
    if (!wait_until([&] { return static_cast<int>(jobs.size()) == finished; }, PHASE_DEADLINE)) {
        std::fprintf(stderr, "hang: %d of %d threads finished\n", finished.load(),
                     static_cast<int>(jobs.size()));
        std::abort();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace

class GripperStressTest : public StressFixture {
protected:
    // One command or one round of reads, chosen by the round number.
    void command(GripperLogicControl* control, int round) {
        switch (round % 4) {
            case 0:
                commands_.add(control->set_position(static_cast<float>(round % 101)));
                break;
            case 1:
                commands_.add(control->set_force(20 + round % 81));
                break;
            case 2:
                commands_.add(control->support_speed() ? control->set_speed(20 + round % 81)
                                                       : readings_sane(control));
                break;
            default:
                commands_.add(readings_sane(control));
                break;
        }
    }

    // The values a page would show are within their ranges and the gripper is usable.
    static bool readings_sane(GripperLogicControl* control) {
        const float position = control->get_position();
        const int force = control->get_force();
        const int speed = control->get_speed();
        const GLC::GripperStatus status = control->get_gripper_status();
        return position >= control->get_position_min() && position <= control->get_position_max() &&
               force >= 0 && force <= 100 && speed >= 0 && speed <= 100 &&
               (GLC::GS_ACTIVATED == status || GLC::GS_MOVING == status ||
                GLC::GS_ARRIVED == status) &&
               GripperCommunication::CS_CONNECTED == control->get_communication_status();
    }

    void work(int worker) {
        for (int round = 0; round < COMMAND_ROUNDS; ++round) {
            command(driver(STABLE[(worker + round) % STABLE_COUNT]), worker + round);
        }
    }

    // Disconnects and connects the cycling gripper again, moving it after every connection.
    void cycle() {
        for (int round = 0; round < RECONNECT_CYCLES; ++round) {
            cycles_.add(disconnect(CYCLING));
            cycles_.add(connect(CYCLING));
            GripperLogicControl* control = slots_[CYCLING]->gripper_abstract_control_;
            cycles_.add(nullptr != control && control->set_position(round % 2 ? 70.0f : 30.0f));
        }
    }

    void run_phase() {
        std::vector<std::function<void()>> jobs;
        for (int worker = 0; worker < WORKER_COUNT; ++worker) {
            jobs.push_back([this, worker] { work(worker); });
        }
        jobs.push_back([this] { cycle(); });
        run_together(jobs);
    }

    static float final_position(int index) { return 20.0f + 20.0f * static_cast<float>(index); }

    int final_register(int index) const {
        return static_cast<int>(
            std::lround(final_position(index) / 100.0f * plans_[index].position_max));
    }

    bool arrived_at_final_position(int index) {
        GripperLogicControl* control = driver(index);
        return GLC::GS_ARRIVED == control->get_gripper_status() &&
               std::fabs(control->get_position() - final_position(index)) < 0.05f &&
               final_register(index) == simulator_.snapshot(grippers_[index]).position;
    }

    void expect_final_arrivals() {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            GripperLogicControl* control = driver(index);
            ASSERT_NE(nullptr, control) << "slot " << index;
            EXPECT_TRUE(!control->support_speed() || control->set_speed(100)) << "slot " << index;
            EXPECT_TRUE(control->set_position(final_position(index))) << "slot " << index;
        }
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            EXPECT_TRUE(
                wait_until([&] { return arrived_at_final_position(index); }, ARRIVAL_DEADLINE))
                << "slot " << index << " status "
                << GLC::gripper_status_to_string(driver(index)->get_gripper_status());
        }
    }

    // Position notifications per slot. While the workers run, only update cycles read the
    // position back, so these count the cycles that got their turn.
    std::vector<long> position_notifications() {
        std::vector<long> counts;
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            long count = 0;
            for (const std::string& event : observers_[index].events()) {
                count += (0 == event.compare(0, 9, "position ")) ? 1 : 0;
            }
            counts.push_back(count);
        }
        return counts;
    }

    void expect_update_cycles_since(const std::vector<long>& before) {
        const std::vector<long> after = position_notifications();
        for (int index : STABLE) {
            EXPECT_GE(after[index] - before[index], MINIMUM_UPDATE_CYCLES) << "slot " << index;
        }
    }

    void expect_link_notifications() {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            const int connections = (CYCLING == index) ? RECONNECT_CYCLES + 1 : 1;
            EXPECT_EQ(connections, observers_[index].count("CS_CONNECTED")) << "slot " << index;
            EXPECT_EQ(connections - 1, observers_[index].count("CS_DISCONNECTED"))
                << "slot " << index;
            EXPECT_FALSE(observers_[index].seen("CS_READ_EXCEPTION")) << "slot " << index;
            EXPECT_FALSE(observers_[index].seen("CS_WRITE_EXCEPTION")) << "slot " << index;
        }
    }

    Tally commands_;
    Tally cycles_;
};

TEST_F(GripperStressTest, FourGrippersCommandedFromSeveralThreadsWhileOneReconnects) {
    ASSERT_TRUE(connect_all());
    ASSERT_TRUE(activate_all());
    // Once a gripper has been seen arrived, its update thread follows moves every 100 ms.
    ASSERT_TRUE(arrive_all(50.0f));

    const std::vector<long> positions_before = position_notifications();
    run_phase();
    expect_update_cycles_since(positions_before);

    EXPECT_EQ(WORKER_COUNT * COMMAND_ROUNDS, commands_.issued());
    EXPECT_EQ(0, commands_.failed());
    // Each reconnection round is a disconnection, a connection and a move.
    EXPECT_EQ(3 * RECONNECT_CYCLES, cycles_.issued());
    EXPECT_EQ(0, cycles_.failed());
    expect_final_arrivals();
    expect_link_notifications();

    EXPECT_TRUE(disconnect_all());
    EXPECT_EQ(GRIPPER_COUNT + RECONNECT_CYCLES, manager_events_.creates());
    EXPECT_EQ(GRIPPER_COUNT + RECONNECT_CYCLES, manager_events_.destroys());
    EXPECT_TRUE(manager_events_.alternate());
}
