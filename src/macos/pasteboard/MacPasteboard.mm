#include "macos/pasteboard/MacPasteboard.h"

#include "macos/pasteboard/PasteboardAccess.h"
#include "macos/pasteboard/TypeNames.h"
#include "platform/WorkQueue.h"
#include "qt/QtWorkQueues.h"

#include <QFuture>
#include <QLoggingCategory>
#include <QPromise>

#include <AppKit/AppKit.h>

using namespace Qt::StringLiterals;

/// Gives the picture of one object when a program asks for it. It has been read by then, as a rule.
@interface NimbarrowPictureProvider : NSObject <NSPasteboardItemDataProvider> {
@public
    QFuture<QByteArray> _png;
}
@end

@implementation NimbarrowPictureProvider

- (void)pasteboard:(nullable NSPasteboard*)pasteboard
                  item:(NSPasteboardItem*)item
    provideDataForType:(NSPasteboardType)type
{
    Q_UNUSED(pasteboard);
    if (const auto bytes = _png.result(); !bytes.isEmpty())
        [item setData:bytes.toNSData() forType:type];
}

@end

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(logPasteboard, "ua.tessak.Nimbarrow.pasteboard")

NSPasteboard* general()
{
    return NSPasteboard.generalPasteboard;
}

QStringList names()
{
    QStringList names;
    for (NSPasteboardType type in general().types)
        names << QString::fromNSString(type);
    return names;
}

/// Some programs give a file by its number on the volume, which nobody else can follow.
QUrl urlOf(NSURL* url)
{
    NSURL* const named = url.fileURL ? url.filePathURL : nil;
    return QUrl::fromNSURL(named ? named : url);
}

/// Reads the picture away from the main thread, once.
NimbarrowPictureProvider* providerOf(const std::function<QByteArray()>& png, WorkQueue& queue)
{
    const auto bytes = std::make_shared<QPromise<QByteArray>>();
    bytes->start();
    auto* const provider = [[NimbarrowPictureProvider alloc] init];
    provider->_png = bytes->future();
    queue.run([bytes, png] {
        bytes->addResult(png());
        bytes->finish();
    });
    return provider;
}

NSPasteboardItem* itemOf(const PasteboardObject& object, WorkQueue& queue)
{
    auto* const item = [[NSPasteboardItem alloc] init];
    if (object.url) {
        [item
            setString:QString::fromUtf8(object.url->toEncoded()).toNSString()
              forType:PasteboardContent::isFile(*object.url) ? NSPasteboardTypeFileURL : NSPasteboardTypeURL];
    }
    if (object.string)
        [item setString:object.string->toNSString() forType:NSPasteboardTypeString];
    if (object.png)
        [item setDataProvider:providerOf(object.png, queue) forTypes:@[ NSPasteboardTypePNG ]];
    return item;
}

} // namespace

MacPasteboard::MacPasteboard()
    : m_reading(QtWorkQueues().serial(u"ua.tessak.Nimbarrow.copies"_s))
{
}

MacPasteboard::~MacPasteboard() = default;

Pasteboard::Access MacPasteboard::access() const
{
    if (@available(macOS 15.4, *))
        return pasteboardAccess(static_cast<int>(general().accessBehavior));
    // Before, no program was kept from it.
    return Access::Granted;
}

int MacPasteboard::changeCount() const
{
    return static_cast<int>(general().changeCount);
}

QStringList MacPasteboard::types() const
{
    // Not even tried: the system would tell the user of an attempt.
    if (access() == Access::Denied) {
        qCWarning(logPasteboard, "The user lets the program read nothing that others copy");
        return {};
    }
    return typenames::identifiersOf(names());
}

QByteArray MacPasteboard::data(QStringView type) const
{
    const auto name = typenames::nameOf(type, names());
    return name.isEmpty() ? QByteArray() : QByteArray::fromNSData([general() dataForType:name.toNSString()]);
}

std::optional<QString> MacPasteboard::string() const
{
    auto* const string = [general() stringForType:NSPasteboardTypeString];
    if (!string)
        return {};
    return QString::fromNSString(string);
}

QList<QUrl> MacPasteboard::urls() const
{
    QList<QUrl> urls;
    for (NSURL* url in [general() readObjectsForClasses:@[ NSURL.class ] options:nil])
        urls << urlOf(url);
    return urls;
}

void MacPasteboard::write(const QList<PasteboardObject>& objects)
{
    auto* const items = [NSMutableArray<NSPasteboardItem*> array];
    for (const auto& object : objects)
        [items addObject:itemOf(object, *m_reading)];
    [general() clearContents];
    [general() writeObjects:items];
    m_written = changeCount();
}

void MacPasteboard::handOver()
{
    // The system keeps what it was given; the picture it was only promised, and asking for it gives it.
    if (m_written == changeCount())
        [general() dataForType:NSPasteboardTypePNG];
}

} // namespace nimbarrow
