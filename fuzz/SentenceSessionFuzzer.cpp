// Sessions with a receiver that speaks sentences, and listening to one. Input: a byte for the
// family, then a session (ControlSession.h).
#include <iterator>

#include "ControlSession.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr const char* kMarks[] = {"MGN", "MLR", "MGN;9600"};
    marlune::FuzzInput input({bytes, size});
    const char* const mark = kMarks[input.byte() % std::size(kMarks)];
    marlune::ControlSession(input, mark).run();
    return 0;
}
