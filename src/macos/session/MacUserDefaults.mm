#include "macos/session/MacUserDefaults.h"

#include <Foundation/Foundation.h>

namespace nimbarrow {

namespace {

NSString* nameOf(QStringView key)
{
    return key.toString().toNSString();
}

id objectOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<bool>())
        return [NSNumber numberWithBool:value.toBool()];
    if (value.metaType() == QMetaType::fromType<qint64>())
        return [NSNumber numberWithLongLong:value.toLongLong()];
    return value.toString().toNSString();
}

} // namespace

void MacUserDefaults::registerDefaults(const QVariantMap& defaults)
{
    auto* const values = [NSMutableDictionary<NSString*, id> dictionary];
    for (auto entry = defaults.cbegin(); entry != defaults.cend(); ++entry)
        [values setObject:objectOf(entry.value()) forKey:entry.key().toNSString()];
    [NSUserDefaults.standardUserDefaults registerDefaults:values];
}

bool MacUserDefaults::boolean(QStringView key) const
{
    return [NSUserDefaults.standardUserDefaults boolForKey:nameOf(key)];
}

qint64 MacUserDefaults::integer(QStringView key) const
{
    return [NSUserDefaults.standardUserDefaults integerForKey:nameOf(key)];
}

QString MacUserDefaults::string(QStringView key) const
{
    return QString::fromNSString([NSUserDefaults.standardUserDefaults stringForKey:nameOf(key)]);
}

void MacUserDefaults::set(QStringView key, const QVariant& value)
{
    [NSUserDefaults.standardUserDefaults setObject:objectOf(value) forKey:nameOf(key)];
}

} // namespace nimbarrow
