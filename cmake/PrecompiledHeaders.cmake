# nimbarrow_precompile(<target> views|adapters|tests)
#
# The target's sources start from headers that are read once for all: those of Qt Quick for what has views, those of
# Qt Core and Gui for the adapters, and those with Qt Test for the tests' programs. A source still includes all that it uses.
function(nimbarrow_precompiled_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "PROGRAM" "" "LINK;HEADERS")
    set(source ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "int main() { return 0; }\n")
    # Programs compile otherwise than libraries, and headers are precompiled for one of the two.
    if(arg_PROGRAM)
        add_executable(precompiled_${name} EXCLUDE_FROM_ALL ${source})
    else()
        add_library(precompiled_${name} STATIC EXCLUDE_FROM_ALL ${source})
    endif()
    set_target_properties(precompiled_${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(precompiled_${name} PRIVATE ${arg_LINK} project_build)
    target_precompile_headers(precompiled_${name} PRIVATE ${arg_HEADERS})
endfunction()

nimbarrow_precompiled_headers(adapters
    LINK Qt6::Core Qt6::Gui
    HEADERS
        <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QFile> <QFileInfo> <QGuiApplication> <QHash> <QImage> <QJsonDocument> <QJsonObject> <QList> <QObject>
        <QPointer> <QRegularExpression> <QString> <QUrl> <QVariant>
        <algorithm> <functional> <memory> <optional> <variant>
)
nimbarrow_precompiled_headers(views
    LINK Qt6::Core Qt6::Gui Qt6::Qml Qt6::Quick
    HEADERS
        <QAbstractListModel> <QDateTime> <QFile> <QFileInfo> <QHash> <QImage> <QJsonDocument> <QJsonObject> <QList>
        <QLoggingCategory> <QObject> <QPainter> <QPointer> <QQmlEngine> <QQuickItem> <QQuickPaintedItem> <QString>
        <QUrl> <QUuid> <QVariant>
        <algorithm> <functional> <memory> <optional> <variant>
)

function(nimbarrow_precompile target kind)
    target_precompile_headers(${target} REUSE_FROM precompiled_${kind})
endfunction()
