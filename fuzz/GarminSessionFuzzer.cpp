// Sessions with a Garmin unit (ControlSession.h).
#include "ControlSession.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    marlune::FuzzInput input({bytes, size});
    marlune::ControlSession(input, "GRM").run();
    return 0;
}
