#include "images/TiffLibrary.h"

namespace nimbarrow {

const TiffLibrary& TiffLibrary::loaded()
{
    static const TiffLibrary library;
    return library;
}

} // namespace nimbarrow
