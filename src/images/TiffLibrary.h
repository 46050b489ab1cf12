#pragma once

#include <QLibrary>

#include <tiffio.h>

namespace nimbarrow {

/// What is used of libtiff, which is loaded for the first TIFF: hardly anybody copies one, and it brings
/// seven other libraries with it. Qt's own reader stands on the same one. Any thread.
class TiffLibrary final {
public:
    [[nodiscard]] static const TiffLibrary& loaded();

private:
    QLibrary m_file { QStringLiteral("tiff"), 6 };

    template <typename Function>
    Function find(const char* name)
    {
        return reinterpret_cast<Function>(m_file.resolve(name));
    }

public:
    decltype(&TIFFOpenOptionsAlloc) makeOptions = find<decltype(makeOptions)>("TIFFOpenOptionsAlloc");
    decltype(&TIFFOpenOptionsFree) freeOptions = find<decltype(freeOptions)>("TIFFOpenOptionsFree");
    decltype(&TIFFOpenOptionsSetErrorHandlerExtR) onError
        = find<decltype(onError)>("TIFFOpenOptionsSetErrorHandlerExtR");
    decltype(&TIFFOpenOptionsSetWarningHandlerExtR) onWarning
        = find<decltype(onWarning)>("TIFFOpenOptionsSetWarningHandlerExtR");
    decltype(&TIFFClientOpenExt) open = find<decltype(open)>("TIFFClientOpenExt");
    decltype(&TIFFClose) close = find<decltype(close)>("TIFFClose");
    decltype(&TIFFIsTiled) isTiled = find<decltype(isTiled)>("TIFFIsTiled");
    decltype(&TIFFGetFieldDefaulted) field = find<decltype(field)>("TIFFGetFieldDefaulted");
    decltype(&TIFFRGBAImageOK) isReadable = find<decltype(isReadable)>("TIFFRGBAImageOK");
    decltype(&TIFFReadRGBAStrip) readStrip = find<decltype(readStrip)>("TIFFReadRGBAStrip");
    /// Without it nothing else may be called.
    bool isComplete = makeOptions && freeOptions && onError && onWarning && open && close && isTiled && field
        && isReadable && readStrip;
};

} // namespace nimbarrow
