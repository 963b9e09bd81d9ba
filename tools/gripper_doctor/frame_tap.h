#ifndef TOOLS_GRIPPER_DOCTOR_FRAME_TAP_H
#define TOOLS_GRIPPER_DOCTOR_FRAME_TAP_H

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "tools/gripper_doctor/frame_recorder.h"

namespace gripper_doctor {

// Shows every frame one of the plug-in's links (serial or TCP) writes and reads to a recorder,
// from the creation of the tap to its end. The link's own exchange, retries and handshake run
// unchanged; once the probe's time limit has passed a write is refused, which ends the exchange
// the way a broken link does.
class FrameTap : public GripperCommunication::TrafficObserver {
public:
    FrameTap(GripperLogicControl& link, FrameRecorder& recorder);
    ~FrameTap() override;
    FrameTap(const FrameTap&) = delete;
    FrameTap& operator=(const FrameTap&) = delete;

    bool refuse_write(const Bytes& bytes) override;
    void on_written(const Bytes& bytes, bool ok) override;
    void on_read(const Bytes& bytes, bool discarded_as_stale) override;

private:
    void learn_id(const Bytes& answer);

    GripperLogicControl& link_;
    FrameRecorder& recorder_;
};

}  // namespace gripper_doctor

#endif
