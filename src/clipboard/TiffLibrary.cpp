#include "clipboard/TiffLibrary.h"

namespace nimbarrow {

const TiffLibrary& TiffLibrary::loaded()
{
    static const TiffLibrary library;
    return library;
}

} // namespace nimbarrow
