#pragma once

#include "App/Terminal/Arguments.h"

#include <string_view>

/// The commands that the running application carries out.
namespace kippo::Terminal {

/// What `kippo open --help` prints.
inline constexpr std::string_view openHelp =
    "Shows something of the running Kippo; to bind to a key.\n"
    "\n"
    "  kippo open agents|focus         the panel, on that page\n"
    "  kippo open settings [PAGE]      the settings, on the page that was shown last or the one named\n";

/// What `kippo focus --help` prints.
inline constexpr std::string_view focusHelp =
    "The focus timer of the running Kippo. Each command prints what then stands.\n"
    "\n"
    "  kippo focus                     what runs, and how long it has to go\n"
    "  kippo focus start [MINUTES]     begin a focus, or go on with one that is paused; with MINUTES, begin anew\n"
    "  kippo focus break               begin the break that is due\n"
    "  kippo focus toggle              start, pause or resume; to bind to a key\n"
    "  kippo focus pause               stop the clock\n"
    "  kippo focus resume              let it go on\n"
    "  kippo focus skip                end what runs as if its time were over\n"
    "  kippo focus reset               stop, and count nothing\n"
    "  kippo focus … --json            print one JSON object\n";

/// `kippo open PAGE` and `kippo open settings [PAGE]`. Gives the exit status.
int open(const Request& request);

/// `kippo focus …`: the timer. Gives the exit status.
int focus(const Request& request);

} // namespace kippo::Terminal
