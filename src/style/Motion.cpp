#include "style/Motion.h"

#include <QJSEngine>

namespace nimbarrow {

Motion& Motion::instance()
{
    static Motion motion;
    return motion;
}

Motion* Motion::create(QQmlEngine* /*engine*/, QJSEngine* /*script*/)
{
    QJSEngine::setObjectOwnership(&instance(), QJSEngine::CppOwnership);
    return &instance();
}

void Motion::setReduced(bool reduced)
{
    if (m_reduced == reduced)
        return;
    m_reduced = reduced;
    Q_EMIT reducedChanged();
}

} // namespace nimbarrow
