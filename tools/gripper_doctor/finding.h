#ifndef TOOLS_GRIPPER_DOCTOR_FINDING_H
#define TOOLS_GRIPPER_DOCTOR_FINDING_H

#include <string>

namespace gripper_doctor {

// What a check found: nothing wrong, or a problem in plain words with a hint what to do.
struct Finding {
    // Short stable name for scripts, for example "permission_denied"; empty when all is well.
    std::string code;
    std::string problem;
    std::string hint;

    bool ok() const { return code.empty(); }
};

inline Finding make_finding(const std::string& code, const std::string& problem,
                            const std::string& hint) {
    Finding finding;
    finding.code = code;
    finding.problem = problem;
    finding.hint = hint;
    return finding;
}

}  // namespace gripper_doctor

#endif
