#pragma once

#include <QByteArrayView>

namespace nimbarrow {

/// Reads any bytes as a calendar and lays out one of its days, as the folder's store does. Returns how many
/// events there were; stops the program where one of them is not as the port promises.
qsizetype readAnyCalendar(QByteArrayView bytes);

} // namespace nimbarrow
