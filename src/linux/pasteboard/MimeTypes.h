#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QUrl>

/// The names by which Linux programs offer content (MIME types and X selection targets), and the forms that
/// stand behind them.
namespace nimbarrow::mimetypes {

enum class Form { FileList, Link, Image, Text, Mark, Other };

inline constexpr QStringView uriList = u"text/uri-list";
inline constexpr QStringView gnomeFiles = u"x-special/gnome-copied-files";
inline constexpr QStringView mateFiles = u"x-special/mate-copied-files";
inline constexpr QStringView kdeFiles = u"application/x-kde4-urilist";
inline constexpr QStringView mozillaUrl = u"text/x-moz-url";
inline constexpr QStringView utf8String = u"UTF8_STRING";
inline constexpr QStringView utf8Text = u"text/plain;charset=utf-8";
inline constexpr QStringView plainText = u"text/plain";
inline constexpr QStringView latin1String = u"STRING";
inline constexpr QStringView png = u"image/png";

[[nodiscard]] Form formOf(QStringView target);

/// The program's identifier, or the target itself where the program has none.
[[nodiscard]] QString pasteboardTypeOf(QStringView target);

/// Whether the program's identifier is one of an image.
[[nodiscard]] bool isImageType(QStringView type);

/// The identifiers of everything that is offered, each once, in the owner's order.
[[nodiscard]] QStringList pasteboardTypesOf(const QStringList& targets);

/// Those of the known targets of one form that are offered, the best first.
[[nodiscard]] QStringList bestFirst(const QStringList& targets, Form form);

/// The URLs in the bytes of a target of the form FileList or Link. Those of files on this machine name no
/// machine, and keep the bytes of names that are not UTF-8.
[[nodiscard]] QList<QUrl> urlsFrom(QStringView target, const QByteArray& bytes);

/// The text in the bytes of a target of the form Text. The bytes may have been cut inside a character.
[[nodiscard]] QString textFrom(QStringView target, QByteArray bytes);

} // namespace nimbarrow::mimetypes
