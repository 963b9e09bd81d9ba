#include "tools/gripper_doctor/frame_tap.h"

#include <memory>

#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

namespace gripper_doctor {
namespace {

// The protocol of a type as the link tells it: 1 Modbus RTU, 0 frames; null for none.
std::unique_ptr<GripperProtocol> protocol_of(int type) {
    switch (type) {
        case 1:
            return std::unique_ptr<GripperProtocol>(new GripperModbusProtocol());
        case 0:
            return std::unique_ptr<GripperProtocol>(new GripperCustomProtocol());
        default:
            return nullptr;
    }
}

}  // namespace

FrameTap::FrameTap(GripperLogicControl& link, FrameRecorder& recorder)
    : link_(link), recorder_(recorder) {
    link_.set_traffic_observer(this);
}

FrameTap::~FrameTap() {
    link_.set_traffic_observer(nullptr);
}

bool FrameTap::refuse_write(const Bytes& bytes) {
    return recorder_.refuse(bytes);
}

void FrameTap::on_written(const Bytes& bytes, bool ok) {
    recorder_.sent(bytes, ok);
}

void FrameTap::on_read(const Bytes& bytes, bool discarded_as_stale) {
    if (recorder_.received(bytes, discarded_as_stale)) {
        learn_id(bytes);
    }
}

// The id as the handshake takes it from an answer to the id request: checked and decoded by the
// protocol the link is trying.
void FrameTap::learn_id(const Bytes& answer) {
    const int type = link_.protocol_type();
    const std::unique_ptr<GripperProtocol> protocol = protocol_of(type);
    if (nullptr == protocol || recorder_.last_request() != protocol->build_id_protocol() ||
        !protocol->compare_package(false, recorder_.last_request(), answer)) {
        return;
    }
    const AbstractPackageData data = protocol->parse_get_normal_package(
        GripperLogicControl::INVALID_ID, GripperProtocol::PT_ID, answer);
    if (GripperProtocol::PT_UNDEFINE != data.package_type_) {
        recorder_.learnt_id(data.id_, type);
    }
}

}  // namespace gripper_doctor
