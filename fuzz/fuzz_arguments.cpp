// Kinds, flags and arguments of all sorts on a plain machine, with and without memory.
#include "call_or_stop.h"
#include "stand_in/machine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int kind = input.ConsumeBool() ? input.ConsumeIntegralInRange(0, kLastKind + 1)
                                         : input.ConsumeIntegral<int>();
    const auto flags = input.ConsumeIntegral<unsigned>();
    const auto fault = input.ConsumeIntegralInRange<std::size_t>(0, 20);
    const bool lasts = input.ConsumeBool();
    const std::string argument = input.ConsumeRemainingBytesAsString();

    const stand_in::ScopedMachine scope;
    const auto text = CallOrStop(kind, flags, argument.c_str());
    Require(text == CallOrStop(kind, flags & 7, argument.c_str()), "other flags do nothing");
    Require(!text || (kind >= 1 && kind <= kLastKind), "other kinds fail");
    if (argument.c_str()[0] == '\0') {
        Require(text == CallOrStop(kind, flags, nullptr), "no argument is an empty one");
    }
    CallOrStop(kind, flags, argument.c_str(), {fault, lasts ? SIZE_MAX : fault});
    return 0;
}
