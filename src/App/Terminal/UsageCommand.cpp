#include "App/Terminal/UsageCommand.h"

#include "App/Terminal/Output.h"
#include "App/Terminal/UsageText.h"
#include "Support/Places.h"

#include <chrono>

namespace kippo::Terminal {

int usage(const Request& request) {
    const auto places = Places::fromEnvironment();
    if (places.home.empty()) {
        complain(noHome);
        return failed;
    }
    const Date now = std::chrono::system_clock::now();
    UsageScanner::Report report;
    {
        const Progress progress{"Reading the transcripts of the week …"};
        report = UsageScanner{places.home}.refresh(now);
    }
    print(request.has("--json") ? usageJson(report, now) + "\n" : usageText(report, places.home, now, outputStyle()));
    return succeeded;
}

} // namespace kippo::Terminal
