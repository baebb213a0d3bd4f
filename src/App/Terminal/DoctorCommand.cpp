#include "App/Terminal/DoctorCommand.h"

#include "App/Terminal/Doctor.h"
#include "App/Terminal/Output.h"
#include "Support/Places.h"

#include <algorithm>

namespace kippo::Terminal {

int doctor(const Request& request) {
    if (Places::fromEnvironment().home.empty()) {
        complain(noHome);
        return failed;
    }
    const auto checks = judge(gatherFacts());
    print(request.has("--json") ? doctorJson(checks) + "\n" : doctorText(checks, outputStyle()));
    return std::ranges::any_of(checks, [](const Check& check) { return check.state == Check::State::ill; }) ? failed
                                                                                                            : succeeded;
}

} // namespace kippo::Terminal
