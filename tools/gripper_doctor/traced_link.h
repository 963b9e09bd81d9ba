#ifndef TOOLS_GRIPPER_DOCTOR_TRACED_LINK_H
#define TOOLS_GRIPPER_DOCTOR_TRACED_LINK_H

#include <cstdint>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"
#include "tools/gripper_doctor/frame_recorder.h"

namespace gripper_doctor {

// One of the plug-in's links (serial or TCP) with every frame it writes and reads shown to a
// recorder. The link's own exchange, retries and handshake run unchanged; only the byte
// transfers are watched, and once the probe's time limit has passed a write is refused, which
// ends the exchange the way a broken link does.
template <typename Link>
class TracedLink : public Link {
public:
    explicit TracedLink(FrameRecorder& recorder) : recorder_(recorder) {}

    bool write(const std::vector<uint8_t>& write_stream) override {
        if (recorder_.refuse(write_stream)) {
            return false;
        }
        const bool written = Link::write(write_stream);
        recorder_.sent(write_stream, written);
        return written;
    }

    // A read the driver makes to throw bytes away (it counts those) is no answer.
    std::vector<uint8_t> read(int length) override {
        const bool dropping = this->drop_count_ != drops_seen_;
        drops_seen_ = this->drop_count_;
        const std::vector<uint8_t> bytes = Link::read(length);
        if (recorder_.received(bytes, dropping)) {
            learn_id(bytes);
        }
        return bytes;
    }

    // 1 Modbus RTU, 0 frames, -1 none chosen yet.
    int protocol_type() const {
        return nullptr == this->gripper_protocol_ ? -1
                                                  : this->gripper_protocol_->get_protocol_type();
    }

private:
    // The id as the handshake takes it from an answer to the id request: checked and decoded by
    // the protocol itself.
    void learn_id(const std::vector<uint8_t>& answer) {
        GripperProtocol* protocol = this->gripper_protocol_;
        if (nullptr == protocol || answer.empty() ||
            recorder_.last_request() != protocol->build_id_protocol() ||
            !protocol->compare_package(false, recorder_.last_request(), answer)) {
            return;
        }
        const AbstractPackageData data = protocol->parse_get_normal_package(
            GripperLogicControl::INVALID_ID, GripperProtocol::PT_ID, answer);
        if (GripperProtocol::PT_UNDEFINE != data.package_type_) {
            recorder_.learnt_id(data.id_, protocol->get_protocol_type());
        }
    }

    FrameRecorder& recorder_;
    int32_t drops_seen_ = 0;
};

}  // namespace gripper_doctor

#endif
