#pragma once

#include "Support/Time.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace kippo {

/// Counts the tokens that Claude Code records in its transcripts, and what they would cost at API prices. Reads each
/// byte of each transcript once. Owned by the agent store, used on one queue at a time.
class UsageScanner {
public:
    /// One counted record. There may be hundreds of thousands, so that texts are kept once, as indices among all names.
    struct Entry {
        static constexpr std::uint32_t none = UINT32_MAX;

        Date date;
        std::int64_t tokens = 0; ///< all four kinds
        double cost = 0;         ///< US dollars
        std::uint32_t session = none;
        std::uint32_t cwd = none; ///< the working folder
    };
    struct Totals {
        std::int64_t tokens = 0;
        double cost = 0; ///< US dollars

        void add(const Entry& entry);
        bool operator==(const Totals&) const = default;
    };
    struct Report {
        Totals today;               ///< since the start of the local day
        std::array<Totals, 7> week; ///< one per local day, the last is today
        std::map<std::string, Totals> bySessionToday;
        std::map<std::string, Totals> byProjectToday; ///< by working folder
        Totals fiveHours;                             ///< the last 5 hours, whatever the day
        std::set<std::string> projects;               ///< every working folder of the week

        bool operator==(const Report&) const = default;
    };

    /// Reads below `.claude/projects` of the home folder.
    explicit UsageScanner(const std::string& home);
    ~UsageScanner();

    /// Reads what is new and gives the full report. Blocking; a first call may read gigabytes.
    Report refresh(Date now);
    /// Makes a running `refresh` end soon, with what it has read so far, and later ones read nothing; from any thread.
    void cancel();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace kippo
