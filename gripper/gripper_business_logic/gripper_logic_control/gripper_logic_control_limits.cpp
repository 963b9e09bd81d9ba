// Capabilities and limits of a gripper, by model series (0 while not yet known).
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const int32_t MODEL_SERIES_ANGLE = 2;
const int32_t MODEL_SERIES_SPEED = 3;

bool is_angle_series(int32_t model_series) {
    return MODEL_SERIES_ANGLE == model_series;
}

}  // namespace

float GripperLogicControl::get_position_min() const {
    return 0.0f;
}

float GripperLogicControl::get_position_max() const {
    return is_angle_series(private_->model_series_) ? 95.0f : 100.0f;
}

float GripperLogicControl::position_step() const {
    if (1 == private_->model_series_ && private_->uses_custom_protocol()) {
        return 1.0f;
    }
    return 0.1f;
}

int GripperLogicControl::get_force_min() {
    return is_angle_series(private_->model_series_) ? 15 : 20;
}

int GripperLogicControl::get_force_max() {
    return is_angle_series(private_->model_series_) ? 90 : 100;
}

int GripperLogicControl::get_speed_min() {
    return 20;
}

int GripperLogicControl::get_speed_max() {
    return 100;
}

bool GripperLogicControl::support_unify_force() const {
    return private_->support_unify_force();
}

bool GripperLogicControl::support_speed() const {
    return private_->support_speed();
}

bool GripperLogicControl::support_angle() const {
    return private_->support_angle();
}

bool GripperLogicControlPrivate::support_unify_force() const {
    return !is_angle_series(model_series_);
}

bool GripperLogicControlPrivate::support_speed() const {
    return MODEL_SERIES_SPEED == model_series_;
}

bool GripperLogicControlPrivate::support_angle() const {
    return is_angle_series(model_series_);
}

bool GripperLogicControlPrivate::uses_custom_protocol() const {
    return nullptr != parent_->gripper_protocol_ &&
           0 == parent_->gripper_protocol_->get_protocol_type();
}

int GripperLogicControlPrivate::get_int_position_min() const {
    return 0;
}

int GripperLogicControlPrivate::get_int_position_max() const {
    switch (model_series_) {
        case 1:
            return uses_custom_protocol() ? 100 : 1000;
        case 2:
            return 100;
        case 3:
            return 1000;
        default:
            GRIPPER_LOG("E", "%s", "");
            return 1000;
    }
}
