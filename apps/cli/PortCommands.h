// The commands that tell of ports: what there is, and who answers.
#pragma once

#include "cli/HostServices.h"
#include "cli/Options.h"
#include "cli/Output.h"

namespace marlune::cli {

// Prints a table of the ports. Nothing is written to them.
ExitStatus listPorts(HostServices& host, Output& out);

// Asks the ports of the options, or all that there are, and prints a line of options for each
// receiver that answers: kDone when one did, else kFailed.
ExitStatus findReceivers(const Options& options, HostServices& host, Output& out, Output& messages);

// The options with "--port auto" replaced by the port and the family of the only receiver that
// answers. Throws std::runtime_error, with a text for the user, when none or several do.
Options withFoundPort(Options options, HostServices& host, Output& messages);

}  // namespace marlune::cli
