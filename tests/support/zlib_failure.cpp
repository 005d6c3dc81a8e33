#include "zlib_failure.h"

#include <dlfcn.h>
#include <zlib.h>

namespace {

thread_local ZlibFailure::Of failing = ZlibFailure::Of::None;
thread_local int failure = Z_OK;

/// zlib's own function.
template <class Function>
Function* real(Function*, char const* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

ZlibFailure::ZlibFailure(Of function, int result) noexcept
{
    failing = function;
    failure = result;
}

ZlibFailure::~ZlibFailure()
{
    failing = Of::None;
}

extern "C" {

int compress(Bytef* to, uLongf* toLength, Bytef const* from, uLong length)
{
    return failing == ZlibFailure::Of::Compress ? failure
                                                : real(&compress, "compress")(to, toLength, from, length);
}

int inflateInit_(z_streamp stream, char const* version, int size)
{
    return failing == ZlibFailure::Of::InflateInit
               ? failure
               : real(&inflateInit_, "inflateInit_")(stream, version, size);
}

int inflate(z_streamp stream, int flush)
{
    return failing == ZlibFailure::Of::Inflate ? failure : real(&inflate, "inflate")(stream, flush);
}
}
