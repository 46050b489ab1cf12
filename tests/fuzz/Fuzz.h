#pragma once

#include <QtGlobal>

#include <cstddef>
#include <cstdint>

/// What each fuzzer defines: plays one input, which may be anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size); // NOLINT: libFuzzer's name

namespace nimbarrow::fuzz {

/// Stops the program where a promise is broken; libFuzzer then keeps the input that broke it.
inline void require(bool kept, const char* promise)
{
    if (!kept)
        qFatal("Broken promise: %s", promise);
}

} // namespace nimbarrow::fuzz
