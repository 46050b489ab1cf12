#include "mediaprotocol/DecimalText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace nimbarrow {

QString shortestDecimal(double finite)
{
    auto text = QString::number(finite, 'f', QLocale::FloatingPointShortest);
    if (!text.contains(u'.'))
        text += ".0"_L1;
    return text;
}

QString wholeVolume(double volume)
{
    return QString::number(std::lround(std::clamp(volume, 0.0, 100.0)));
}

} // namespace nimbarrow
